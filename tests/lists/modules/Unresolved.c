/* Stands on a function that no library has, or on a library that is not there: see CMakeLists.txt. */
#include <lumora/AppView.h>

const LumoraAppView* test_plugin_missing(void);

LUMORA_PRINCIPAL_CLASS(TestPlugin, test_plugin_missing)
