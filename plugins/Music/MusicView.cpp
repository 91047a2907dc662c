// The Music application's App View, in C++ and without a settings page.
#include <lumora/AppView.h>

namespace {

const LumoraAppView musicView{
    .version = LUMORA_APP_VIEW_VERSION,
    .identifier = [] { return "org.lumora.plugins.music"; },
    .name = [] { return "Music"; },
    .appID = [] { return "org.lumora.samples.Music"; },
    .settingsController = nullptr,
    .flags = 0,
    .draw = nullptr,
};

const LumoraAppView* sharedInstance() {
    return &musicView;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(MusicView, sharedInstance)
