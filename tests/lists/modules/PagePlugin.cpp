// A plug-in with a settings page, copied into several bundles: all copies give their pages the same class name.
#include <lumora/SettingsController.h>

#include "tests/lists/modules/TestPlugin.h"

namespace {

class TestPage final : public lumora::SettingsPage {
  public:
    TestPage() : SettingsPage(lumora::sessionOf<TestPage>()) {}

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        return {make.header(ownName()), make.specifier(make.toggle("On", "test." + ownName() + ".on"), "icon")};
    }
};

LUMORA_SETTINGS_CONTROLLER(TestPage, settingsController)

const char* identifier() {
    return "test.same";
}
const char* name() {
    static const std::string text = ownName();
    return text.c_str();
}
const LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, name, identifier, settingsController};
const LumoraAppView* sharedInstance() {
    return &view;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
