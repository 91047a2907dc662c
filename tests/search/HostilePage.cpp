// A plug-in whose settings page does harm while its rows are made: that which the name of its bundle says.
#include <lumora/SettingsController.h>

#include "tests/lists/modules/TestPlugin.h"

#include <cstdlib>
#include <iostream>
#include <thread>
#include <unistd.h>

namespace {

void flood(lumora::SettingsPage& /*page*/, std::vector<platform::PSSpecifierRef>& rows,
           lumora::PreferenceHelper& make) {
    for (int i = 0; i < 100'000; ++i)
        rows.push_back(make.toggle("Row " + std::to_string(i), "test.flood"));
}

class HostilePage final : public lumora::SettingsPage {
  public:
    HostilePage() : SettingsPage(lumora::sessionOf<HostilePage>()) {}

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        const std::string harm = ownName();
        Rows rows{make.toggle("Switch of " + harm, "test." + harm)};
        if (harm == "crash") std::abort();
        if (harm == "exit") std::exit(0);
        if (harm == "hang") ::pause();
        for (volatile bool spins = harm == "spin"; spins;)
            continue;
        if (harm == "flood") flood(*this, rows, make);
        if (harm == "print") std::cout << "end\nend\n" << std::flush;
        if (harm == "change") setValue(true, *rows.front());
        if (harm == "lurk") // until others are at it
            std::thread([] {
                ::usleep(50'000);
                std::abort();
            }).detach();
        if (harm == "wait") ::usleep(200'000);
        return rows;
    }
};

LUMORA_SETTINGS_CONTROLLER(HostilePage, settingsController)

const char* name() {
    static const std::string text = ownName();
    return text.c_str();
}
const LumoraAppView view{LUMORA_APP_VIEW_VERSION, name, name, name, settingsController, 0, nullptr};
const LumoraAppView* sharedInstance() {
    return &view;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
