/* An App View plug-in, as the Settings application sees it. This header stands alone: it needs C11 or C++ and the
 * language's own headers.
 *
 * A plug-in is a folder "Name.bundle" in /Library/Nevo/Lumora/Plugins with an Info.plist, a shared object and its
 * resources. The Info.plist names the shared object (CFBundleExecutable) and the principal class (NSPrincipalClass).
 * The principal class is a table that the shared object exports under the name
 *
 *     LumoraPrincipalClass_ followed by NSPrincipalClass
 *
 *     static const char *identifier(void) { return "com.example.clock"; }
 *     static const char *name(void) { return "Clock"; }
 *     static const char *app_id(void) { return "org.example.Clock"; }
 *     static const LumoraAppView clock_view = {LUMORA_APP_VIEW_VERSION, identifier, name, app_id, NULL};
 *     static const LumoraAppView *shared_instance(void) { return &clock_view; }
 *     LUMORA_PRINCIPAL_CLASS(Clock, shared_instance)
 *
 * A null entry of a table means "does not answer". The Settings application calls all functions on its main thread,
 * more than once: answer the same each time. Texts are UTF-8, belong to the plug-in and stay valid until its next
 * answer. The shared object is never unmapped.
 */
#ifndef LUMORA_APP_VIEW_H
#define LUMORA_APP_VIEW_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of both tables. A table of another version is not used. */
#define LUMORA_APP_VIEW_VERSION 1u

/* The plug-in's settings page, made in C++ by LUMORA_SETTINGS_CONTROLLER of <lumora/SettingsController.h>. */
typedef struct LumoraSettingsController LumoraSettingsController;

/* The plug-in object. */
typedef struct LumoraAppView {
    uint32_t version; /* LUMORA_APP_VIEW_VERSION */
    /* The first three are required, and answer with a text that is not empty. */
    const char* (*identifier)(void); /* tells plug-ins apart, in reverse-domain style; saved in the user's settings */
    const char* (*name)(void);       /* what the user reads */
    const char* (*appID)(void);      /* the application that the view belongs to */
    /* The page that the plug-in's settings link opens. A plug-in without settings has null here, or answers null. */
    const LumoraSettingsController* (*settingsController)(void);
} LumoraAppView;

/* The principal class. */
typedef struct LumoraPrincipalClass {
    uint32_t version; /* LUMORA_APP_VIEW_VERSION */
    const LumoraAppView* (*sharedInstance)(void);
} LumoraPrincipalClass;

#define LUMORA_PRINCIPAL_CLASS_SYMBOL "LumoraPrincipalClass_"

/* Marks what the plug-in exports. */
#ifdef __cplusplus
#define LUMORA_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define LUMORA_PLUGIN_EXPORT extern __attribute__((visibility("default")))
#endif

/* Exports the principal class under its name. Stands once in a source file, outside of any function or namespace. */
#define LUMORA_PRINCIPAL_CLASS(name, sharedInstance)                                                                   \
    LUMORA_PLUGIN_EXPORT const LumoraPrincipalClass LumoraPrincipalClass_##name;                                       \
    const LumoraPrincipalClass LumoraPrincipalClass_##name = {LUMORA_APP_VIEW_VERSION, sharedInstance};

#ifdef __cplusplus
}
#endif

#endif
