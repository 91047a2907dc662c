// A plug-in with a page, without fault but for the one that the name of its bundle says: "FAULT.bundle", or
// "FAULT-NUMBER.bundle" for several that call themselves the same. Compiled with EXPORTS_MORE, it exports more than it
// should.
#include <lumora/SettingsController.h>

#include "tests/lists/modules/TestPlugin.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <unistd.h>

#ifdef EXPORTS_MORE
LUMORA_PLUGIN_EXPORT int handy();
int handy() {
    return 1;
}
#endif

namespace {

std::string fault() {
    const std::string name = ownName();
    return name.substr(0, name.find('-'));
}
bool has(const char* one) {
    return fault() == one;
}

std::string key(const std::string& name) {
    return "org.example." + fault() + "." + name;
}

class FaultyPage final : public lumora::SettingsPage {
  public:
    FaultyPage() : SettingsPage(lumora::sessionOf<FaultyPage>()) {}

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        static int count = 0;
        ++count;
        if (has("page")) throw std::runtime_error("no page today");
        if (has("null")) return {nullptr};
        if (has("crash")) std::abort();
        if (has("leave")) ::_exit(0);
        if (has("hang"))
            for (volatile bool spins = true; spins;)
                continue;
        if (has("differing")) return {make.toggle("Switch " + std::to_string(count), key("switch"))};
        if (has("growing")) return Rows(std::size_t(count), make.static_("One more"));
        if (has("keyless")) return {make.toggle("Switch", "")};
        if (has("twice")) return {make.toggle("Switch", key("switch")), make.field("Field", key("switch"))};
        if (has("options")) return {make.link("Size", key("size"), {"Small", "Large"}, {"small"})};
        if (has("empty")) return {make.link("Size", key("size"), {}, {})};
        if (has("slider")) return {make.slider(key("bright"), 1, 0)};
        if (has("endless")) return {make.slider(key("bright"), 0, std::numeric_limits<float>::infinity())};
        if (has("link")) return {make.link("Further", "NoSuchPage")};
        if (has("button")) return {make.button("Press", nullptr)};
        if (has("icon")) return {make.specifier(make.toggle("Switch", key("switch")), "icon")};
        if (has("foreign")) return {make.toggle("Switch", "switch")};
        if (has("settings")) {
            const platform::Value size = session().value(key("size"));
            if (!size.isNil() && !size.text()) std::abort();
            return {make.field("Size", key("size"))};
        }
        return {make.toggle("Switch", key("switch")), make.slider(key("bright"), 0, 1)};
    }
};

LUMORA_SETTINGS_CONTROLLER(FaultyPage, ownPage)

const LumoraSettingsController* settingsController() {
    static const LumoraSettingsController other{"kit 1, gcc 1, libstdc++ abi 0", ownPage()->pageClass};
    return has("tag") ? &other : ownPage();
}

const char* identifier() {
    static const std::string text = has("identifier") ? "clock" : "org.example." + fault();
    return text.c_str();
}

const char* name() {
    static int asked = 0;
    const bool isLate = ++asked > 50; // discovery does not ask so often
    if (has("prints")) std::puts("hello");
    if (has("scribbling") && isLate) std::ignore = ::write(7, "hello", 5);
    return has("unstable") && isLate ? "Another" : "Faulty";
}

const char* appID() {
    return "org.example.Application";
}

const LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, name, appID, settingsController, 0, nullptr};
const LumoraAppView* sharedInstance() {
    return &view;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
