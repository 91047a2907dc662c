// Needs another plug-in's code as a library and brings no principal class of its own.
#include <lumora/AppView.h>

LUMORA_PLUGIN_EXPORT const char* testPluginAsked();
LUMORA_PLUGIN_EXPORT const char* testPluginBorrows();

const char* testPluginBorrows() {
    return testPluginAsked();
}
