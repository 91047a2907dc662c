/* The application-list library, as its users see it: the installed applications with their names and icons. This header
 * stands alone, so that you can put a library of your own in this place:
 *
 *     /Library/MobileSubstrate/DynamicLibraries/AppList.dylib
 *
 * The library exports one table, the class, under the name ALApplicationList. Its users load the library, look the
 * table up by that name, and use no version later than those they know. A null entry means "does not answer".
 *
 * Users may call from any thread, one at a time. Texts are UTF-8.
 */
#ifndef LUMORA_APPLIST_H
#define LUMORA_APPLIST_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define AL_APPLICATION_LIST_VERSION 2u
#define AL_APPLICATION_LIST_SYMBOL "ALApplicationList"

/* The one shared application list; only the library knows what is in it. */
typedef struct ALSharedList ALSharedList;

/* Called once for each application. Both texts are valid during the call only. */
typedef void (*ALApplicationVisitor)(const char* displayIdentifier, const char* displayName, void* context);

/* Called once, with an encoded PNG file, which is valid during the call only. */
typedef void (*ALIconVisitor)(const uint8_t* bytes, size_t length, void* context);

/* Called once, with the path of a file, which is valid during the call only. */
typedef void (*ALFileVisitor)(const char* path, void* context);

typedef struct ALApplicationListClass {
    uint32_t version; /* AL_APPLICATION_LIST_VERSION */
    /* The shared application list; null when there is none. */
    ALSharedList* (*sharedApplicationList)(void);
    /* Visits every installed application, in no particular order. An identifier is visited once. */
    void (*applications)(ALSharedList* list, ALApplicationVisitor visit, void* context);
    /* Hands over the application's icon: `size` points wide and high, drawn for a screen of `scale` pixels a point, so
     * a picture of size × scale pixels each way. Does not call back if the application is unknown or has no icon, or if
     * the size or scale makes no sense. */
    void (*iconOfSize)(ALSharedList* list, double size, double scale, const char* displayIdentifier,
                       ALIconVisitor visit, void* context);
    /* What follows is there since version 2. A table of version 1 ends above and still serves. */

    /* Names the file from which to draw that icon: PNG, SVG, XPM or JPEG, of any size. Users of the library ask for it
     * first and have another process draw it, so that a foreign picture can neither hurt them nor make them wait. If it
     * does not call back, they ask iconOfSize. */
    void (*iconFileOfSize)(ALSharedList* list, double size, double scale, const char* displayIdentifier,
                           ALFileVisitor visit, void* context);
} ALApplicationListClass;

#ifdef __cplusplus
}
#endif

#endif
