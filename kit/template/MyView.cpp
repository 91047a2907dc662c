// An App View plug-in with a settings page. Change the texts, the identifiers and the rows; leave the rest.
#include <lumora/SettingsController.h>

namespace {

class MyPage final : public lumora::SettingsPage {
  public:
    MyPage() : SettingsPage(lumora::sessionOf<MyPage>()) {}

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        return {
            make.header("My View", "This stands beneath the group."),
            make.specifier(make.toggle("Show Pictures", "com.example.myview.pictures"), "icon"),
            make.link("Size", "com.example.myview.size", {"Small", "Large"}, {"small", "large"}),
            make.static_("Brightness"),
            make.slider("com.example.myview.brightness", 0, 1),
        };
    }
};

LUMORA_SETTINGS_CONTROLLER(MyPage, settingsController)

const char* identifier() {
    return "com.example.myview";
}

const char* name() {
    return "My View";
}

/// The application that the view belongs to.
const char* appID() {
    return "org.example.Application";
}

const LumoraAppView myView{LUMORA_APP_VIEW_VERSION, identifier, name, appID, settingsController, 0, nullptr};

const LumoraAppView* sharedInstance() {
    return &myView;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(MyView, sharedInstance)
