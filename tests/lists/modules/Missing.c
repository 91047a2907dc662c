/* The library that is not there when it is needed. */
#include <lumora/AppView.h>

LUMORA_PLUGIN_EXPORT const LumoraAppView* test_plugin_missing(void);
const LumoraAppView* test_plugin_missing(void) {
    return NULL;
}
