/* An application-list library that is not as it should be: its texts and icons are bad, and it would call a function
 * that no library has. ODD_APPLIST, when it is loaded, adds a fault to the class: it may have another "version", no
 * "list", or no function for that ("class") or for anything else ("entries"), or end its process when it is
 * loaded ("load"), asked for its list ("shared"), applications ("applications") or an icon ("icon"), or hang or loop
 * then ("hanging-load", "looping-load"). */
#include "applist/AppList.h"

#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#define EXPORT __attribute__((visibility("default")))

EXPORT extern ALApplicationListClass ALApplicationList;
extern void functionThatNoLibraryHas(void);

struct ALSharedList {
    char nothing;
};

static ALSharedList list;

static void misbehave(const char* moment) {
    const char* oddity = getenv("ODD_APPLIST");
    if (!oddity) return;
    const char* dash = strchr(oddity, '-');
    if (strcmp(dash ? dash + 1 : oddity, moment) != 0) return;
    volatile int forever = 1;
    while (strncmp(oddity, "looping-", 8) == 0 && forever) {
    }
    while (strncmp(oddity, "hanging-", 8) == 0 && forever)
        pause();
    abort();
}

static ALSharedList* sharedList(void) {
    misbehave("shared");
    return &list;
}

static ALSharedList* noList(void) {
    return NULL;
}

static void applications(ALSharedList* self, ALApplicationVisitor visit, void* context) {
    (void)self;
    misbehave("applications");
    visit(NULL, "no identifier", context);
    visit("", "an empty identifier", context);
    visit("no.name", NULL, context);
    visit("not.utf8.\xFF", "a byte that is no character", context);
    visit("not.utf8", "\xC3(", context);
    visit("empty.name", "", context);
    visit("good", "G\xC3\xBCte", context);
    visit("good", "said twice", context);
}

static void icon(ALSharedList* self, double size, double scale, const char* identifier, ALIconVisitor visit,
                 void* context) {
    static const uint8_t text[] = "this is no picture";
    (void)self;
    (void)size;
    (void)scale;
    misbehave("icon");
    if (strcmp(identifier, "null") == 0) visit(NULL, 100, context);
    if (strcmp(identifier, "empty") == 0) visit(text, 0, context);
    if (strcmp(identifier, "text") == 0) visit(text, sizeof text, context);
    if (strcmp(identifier, "missing function") == 0) functionThatNoLibraryHas();
}

static void iconFile(ALSharedList* self, double size, double scale, const char* identifier, ALFileVisitor visit,
                     void* context) {
    (void)self;
    (void)size;
    if (strcmp(identifier, "null") == 0) visit(NULL, context);
    if (strcmp(identifier, "empty") == 0) visit("", context);
    if (strcmp(identifier, "nowhere") == 0) visit("/no/such/picture.png", context);
    if (strcmp(identifier, "half") == 0 && scale < 2) visit("/no/such/picture.png", context);
}

ALApplicationListClass ALApplicationList = {AL_APPLICATION_LIST_VERSION, sharedList, applications, icon, iconFile};

__attribute__((constructor)) static void takeOddity(void) {
    const char* oddity = getenv("ODD_APPLIST");
    if (!oddity) return;
    misbehave("load");
    if (strcmp(oddity, "version") == 0) ALApplicationList.version = AL_APPLICATION_LIST_VERSION + 1;
    if (strcmp(oddity, "list") == 0) ALApplicationList.sharedApplicationList = noList;
    if (strcmp(oddity, "class") == 0) ALApplicationList.sharedApplicationList = NULL;
    if (strcmp(oddity, "entries") == 0) {
        ALApplicationList.applications = NULL;
        ALApplicationList.iconOfSize = NULL;
        ALApplicationList.iconFileOfSize = NULL;
    }
}
