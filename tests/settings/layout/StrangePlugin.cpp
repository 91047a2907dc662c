// A plug-in whose texts are those of the file "name.txt" beside it, whatever they are: its own name, and every text
// that a row of its page can have.
#include <lumora/SettingsController.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

const std::string& text() {
    static const std::string text = [] {
        Dl_info where{};
        static const char here = 0;
        ::dladdr(&here, &where);
        std::ifstream file(std::filesystem::path(where.dli_fname).parent_path() / "name.txt", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }();
    return text;
}

class StrangePage final : public lumora::SettingsPage {
  public:
    StrangePage() : SettingsPage(lumora::sessionOf<StrangePage>()) {}

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        return {
            make.header(text(), text()),
            make.toggle(text(), "kTweakEnabled"),
            make.specifier(make.toggle(text(), "kTweakEnabled"), "icon"),
            make.link(text(), platform::PSDetail("NoSuchPage")),
            make.static_(text()),
            make.slider("kLSDateOffset", -1e9F, 1e30F),
            make.field(text(), "kLSDateSubtitle"),
            make.field(text(), "kNoSuchText"),
            make.field(text(), "kAutoUnlockPasscode", true),
            make.link(text(), "kSleepTime", {text(), "Short"}, {platform::Value(20), platform::Value(30)}),
            make.button(text(), {}),
            make.footer(text()),
        };
    }
};

LUMORA_SETTINGS_CONTROLLER(StrangePage, settingsController)

const char* identifier() {
    return text().c_str();
}
const LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, identifier, identifier, settingsController, 0, nullptr};
const LumoraAppView* sharedInstance() {
    return &view;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(Strange, sharedInstance)
