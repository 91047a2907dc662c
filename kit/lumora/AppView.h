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
 *     static const LumoraAppView clock_view = {LUMORA_APP_VIEW_VERSION, identifier, name, app_id, NULL, 0, NULL};
 *     static const LumoraAppView *shared_instance(void) { return &clock_view; }
 *     LUMORA_PRINCIPAL_CLASS(Clock, shared_instance)
 *
 * A null entry of a table means "does not answer". The Settings application calls all functions on its main thread,
 * more than once: answer the same each time. Texts are UTF-8, belong to the plug-in and stay valid until its next
 * answer. The shared object is never unmapped.
 *
 * What the view shows on the lock screen, the plug-in draws, in a process of its own:
 *
 *     static double draw(const LumoraCanvas *canvas, const LumoraDrawing *drawing) {
 *         canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_ACCENT, 1));
 *         canvas->rectangle(canvas, 0, 0, drawing->width, drawing->height, 12);
 *         return 0;
 *     }
 */
#ifndef LUMORA_APP_VIEW_H
#define LUMORA_APP_VIEW_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of all tables. One of version 1, which ends where version 2 begins, is used as well; one of any other is
 * not. */
#define LUMORA_APP_VIEW_VERSION 2u

/* A flag of a plug-in object: the view shows what is private. On a locked phone it is drawn only if the user's settings
 * have the phone's passcode for App Views. */
#define LUMORA_APP_VIEW_SECURE 1u

/* -- drawing: what the plug-in is given -- */

/* What is to be drawn. Valid during the call. Lengths are points, of which an upright phone is 390 wide. */
typedef struct LumoraDrawing LumoraDrawing;
struct LumoraDrawing {
    uint32_t version; /* LUMORA_APP_VIEW_VERSION of the one who asks */
    uint32_t dark;    /* 1: texts are light, on a dark ground; else 0 */
    double width;     /* of the view below its head: the drawing goes from (0, 0) to (width, height) */
    double height;
    double textScale; /* how large the user wants texts: 1 is usual, and sizes of texts are to be multiplied by it */
    /* The phone's time, which may stand still. */
    int32_t year;
    int32_t month;   /* 1 to 12 */
    int32_t day;     /* 1 to 31 */
    int32_t weekday; /* days since Sunday */
    int32_t hour;    /* 0 to 23 */
    int32_t minute;
    int32_t second;
    /* A setting of the plug-in's own: one whose key begins with the plug-in's identifier and a dot. `otherwise` is the
     * answer where it was never set, or is of another kind; a switch is the number 0 or 1. Texts are UTF-8. */
    double (*number)(const LumoraDrawing* drawing, const char* key, double otherwise);
    const char* (*text)(const LumoraDrawing* drawing, const char* key, const char* otherwise);
};

/* Colours that fit the ground, light or dark. */
#define LUMORA_ROLE_NONE 0u
#define LUMORA_ROLE_TEXT 1u
#define LUMORA_ROLE_SECONDARY 2u /* of texts that matter less */
#define LUMORA_ROLE_ACCENT 3u
#define LUMORA_ROLE_SEPARATOR 4u /* of hairlines, and of what is empty */

typedef struct LumoraColor {
    uint32_t role; /* LUMORA_ROLE_NONE for the sRGB colour that follows, each part from 0 to 1 */
    double red;
    double green;
    double blue;
    double opacity; /* also of a role's colour */
} LumoraColor;

static inline __attribute__((unused)) LumoraColor lumora_role(uint32_t role, double opacity) {
    LumoraColor color;
    color.role = role;
    color.red = color.green = color.blue = 0;
    color.opacity = opacity;
    return color;
}

/* A colour as 0xRRGGBB. */
static inline __attribute__((unused)) LumoraColor lumora_rgb(uint32_t rgb, double opacity) {
    LumoraColor color;
    color.role = LUMORA_ROLE_NONE;
    color.red = ((rgb >> 16) & 0xFFu) / 255.0;
    color.green = ((rgb >> 8) & 0xFFu) / 255.0;
    color.blue = (rgb & 0xFFu) / 255.0;
    color.opacity = opacity;
    return color;
}

/* A part of a path: to go to (x, y), 'M'; a line there, 'L'; a curve there by way of two control points, 'C'; back to the
 * last 'M', 'Z'. */
typedef struct LumoraPathPart {
    char kind;
    double x;
    double y;
    double x1;
    double y1;
    double x2;
    double y2;
} LumoraPathPart;

#define LUMORA_ALIGN_LEFT 0u
#define LUMORA_ALIGN_CENTER 1u
#define LUMORA_ALIGN_RIGHT 2u

/* A text in the screen's own font. Breaks between words where it may have several lines; what is too long for its
 * width is cut, with an ellipsis. */
typedef struct LumoraText {
    const char* text; /* UTF-8 */
    double x;         /* of the box's upper left corner */
    double y;
    double width; /* of the box; 0 for no limit, and then x is where the text begins, has its middle or ends */
    double size;
    uint32_t weight; /* 100 to 900; 400 is regular */
    uint32_t align;
    uint32_t lines; /* at the most; 0 counts as 1 */
} LumoraText;

/* How much room a text takes. */
typedef struct LumoraExtent {
    double width;
    double height;
} LumoraExtent;

/* What is drawn upon. Each function records a step; a later one covers an earlier one. A drawing has up to 4,096 steps,
 * 4,096 parts in a path and 1 MB, or else is not shown. What is further than 10,000 points from 0 is moved there. A step
 * with what is no number is left out, and so is a path that does not begin with 'M'. Valid during the call. */
typedef struct LumoraCanvas LumoraCanvas;
struct LumoraCanvas {
    uint32_t version; /* LUMORA_APP_VIEW_VERSION of the one who asks */
    /* What all that follows is filled or drawn with. At first the colour of texts. */
    void (*fillColor)(const LumoraCanvas* canvas, LumoraColor color);
    void (*fillGradient)(const LumoraCanvas* canvas, double x1, double y1, LumoraColor from, double x2, double y2,
                         LumoraColor to);
    /* A filled rectangle with round corners. */
    void (*rectangle)(const LumoraCanvas* canvas, double x, double y, double width, double height, double radius);
    void (*line)(const LumoraCanvas* canvas, double x1, double y1, double x2, double y2, double thickness);
    /* A part of a circle around (x, y), in degrees: clockwise from `from`, which is 0 at the top. Of no thickness, it is
     * filled, like a piece of a pie. Lines have round ends. */
    void (*arc)(const LumoraCanvas* canvas, double x, double y, double radius, double from, double sweep,
                double thickness);
    /* Of no thickness, it is filled. */
    void (*path)(const LumoraCanvas* canvas, const LumoraPathPart* parts, size_t count, double thickness);
    LumoraExtent (*text)(const LumoraCanvas* canvas, const LumoraText* text);
    /* A picture of the bundle by its name, as for icons: "NAME.svg", "NAME@2x.png" or "NAME.png". It is fitted into a
     * square. */
    void (*picture)(const LumoraCanvas* canvas, const char* name, double x, double y, double edge);
    /* Only within this rectangle with round corners all that follows is seen. Of no width: everywhere. */
    void (*clip)(const LumoraCanvas* canvas, double x, double y, double width, double height, double radius);
    /* A few words in the view's head, beside its name. */
    void (*caption)(const LumoraCanvas* canvas, const char* text);
};

/* -- what the plug-in is -- */

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
    /* Here begins version 2. */
    uint32_t flags; /* 0, or LUMORA_APP_VIEW_SECURE */
    /* Draws the view, whenever something of `drawing` has changed. Answers how many seconds later to draw again, 1 at the
     * least, or 0 for not before a change. Takes up to 100 ms of the processor and 8 MB of memory. A plug-in that does
     * not draw has null here: its view shows the application's icon. */
    double (*draw)(const LumoraCanvas* canvas, const LumoraDrawing* drawing);
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
