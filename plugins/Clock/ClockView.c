/* The Clock's App View: the smallest plug-in there is, in C, without a settings page. */
#include <lumora/AppView.h>

static const char* identifier(void) {
    return "org.lumora.plugins.clock";
}

static const char* name(void) {
    return "Clock";
}

static const char* app_id(void) {
    return "org.lumora.samples.Clock";
}

static const LumoraAppView* shared_instance(void) {
    static const LumoraAppView clock_view = {LUMORA_APP_VIEW_VERSION, identifier, name, app_id, NULL, 0, NULL};
    return &clock_view;
}

LUMORA_PRINCIPAL_CLASS(ClockView, shared_instance)
