// A plug-in with a settings page, copied into several bundles: all copies give their pages the same class name. In a
// bundle of the name "BundlePage" it gives a page of the settings bundle instead, in one of the name "faulty-PLACE" a
// page that fails there: in its "constructor", its "rows", or a "row".
#include <lumora/SettingsController.h>

#include "tests/lists/modules/TestPlugin.h"

#include <stdexcept>

namespace {

bool isFaultyIn(const std::string& place) {
    return ownName() == "faulty-" + place;
}

void mayFailIn(const std::string& place) {
    if (isFaultyIn(place)) throw std::runtime_error("no page today");
}

class TestPage final : public lumora::SettingsPage {
  public:
    TestPage() : SettingsPage(lumora::sessionOf<TestPage>()) { mayFailIn("constructor"); }

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        mayFailIn("rows");
        if (isFaultyIn("row")) return {nullptr};
        return {make.header(ownName()), make.specifier(make.toggle("On", "test." + ownName() + ".on"), "icon")};
    }
};

LUMORA_SETTINGS_CONTROLLER(TestPage, testPage)

const LumoraSettingsController* settingsController() {
    // What is found under the name of a class may be anybody's.
    static const LumoraSettingsController bundlePage{LUMORA_KIT_TAG,
                                                     platform::NSClassFromString("AutoUnlockController")};
    return ownName() == "BundlePage" ? &bundlePage : testPage();
}

const char* identifier() {
    return "test.same";
}
const char* name() {
    static const std::string text = ownName();
    return text.c_str();
}
const LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, name, identifier, settingsController, 0, nullptr};
const LumoraAppView* sharedInstance() {
    return &view;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
