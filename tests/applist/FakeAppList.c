/* An application-list library of what stands in the file "applications.txt" beside it: a line each, an identifier, a tab
 * and a name. Every identifier has an icon but the empty one and those that begin with "plain.". */
#define _GNU_SOURCE /* for dladdr() */
#include "applist/AppList.h"

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

/* How often the two operations were called and the last size of an icon, for tests to look up by these names. */
EXPORT extern unsigned fakeAppListApplicationsCalls;
EXPORT extern unsigned fakeAppListIconCalls;
EXPORT extern double fakeAppListLastSize;

unsigned fakeAppListApplicationsCalls = 0;
unsigned fakeAppListIconCalls = 0;
double fakeAppListLastSize = 0;

struct ALSharedList {
    char nothing;
};

/* White squares of 29 and 58 pixels, as PNG files. */
static const uint8_t once[] = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44,
                               0x52, 0x00, 0x00, 0x00, 0x1D, 0x00, 0x00, 0x00, 0x1D, 0x01, 0x00, 0x00, 0x00, 0x00, 0x7E,
                               0xE8, 0x5A, 0xA2, 0x00, 0x00, 0x00, 0x0F, 0x49, 0x44, 0x41, 0x54, 0x78, 0xDA, 0x63, 0xF8,
                               0x0F, 0x04, 0x0C, 0x83, 0x88, 0x00, 0x00, 0xBB, 0x97, 0x73, 0x8D, 0xCF, 0x92, 0xC0, 0x5F,
                               0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
static const uint8_t twice[] = {
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00,
    0x3A, 0x00, 0x00, 0x00, 0x3A, 0x01, 0x00, 0x00, 0x00, 0x00, 0xC9, 0xC0, 0x77, 0x85, 0x00, 0x00, 0x00, 0x11, 0x49,
    0x44, 0x41, 0x54, 0x78, 0xDA, 0x63, 0xF8, 0x0F, 0x05, 0x0C, 0xA3, 0x8C, 0x91, 0xCD, 0x00, 0x00, 0x54, 0x93, 0xCE,
    0x40, 0x3B, 0xB9, 0xB0, 0xCA, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};

static ALSharedList* sharedApplicationList(void) {
    static ALSharedList list;
    return &list;
}

/* The file's text, read once and kept; null when there is none. */
static const char* fileText(void) {
    static char* text;
    char path[4096];
    Dl_info where;
    if (text || !dladdr((void*)&fakeAppListIconCalls, &where)) return text;
    const char* slash = strrchr(where.dli_fname, '/');
    snprintf(path, sizeof path, "%.*s/applications.txt", slash ? (int)(slash - where.dli_fname) : 0, where.dli_fname);
    FILE* file = fopen(path, "r");
    size_t length = 0;
    if (!file || getdelim(&text, &length, 0, file) < 0) text = NULL;
    if (file) fclose(file);
    return text;
}

static void applications(ALSharedList* list, ALApplicationVisitor visit, void* context) {
    (void)list;
    ++fakeAppListApplicationsCalls;
    char identifier[256];
    char name[256];
    const char* line = fileText();
    while (line && *line) {
        const size_t tab = strcspn(line, "\t");
        const size_t end = strcspn(line, "\n");
        if (tab < end && tab < sizeof identifier && end - tab <= sizeof name) {
            snprintf(identifier, sizeof identifier, "%.*s", (int)tab, line);
            snprintf(name, sizeof name, "%.*s", (int)(end - tab - 1), line + tab + 1);
            visit(identifier, name, context);
        }
        line += end + (line[end] ? 1 : 0);
    }
}

static void iconOfSize(ALSharedList* list, double size, double scale, const char* identifier, ALIconVisitor visit,
                       void* context) {
    (void)list;
    ++fakeAppListIconCalls;
    fakeAppListLastSize = size;
    if (!*identifier || strncmp(identifier, "plain.", 6) == 0) return;
    if (scale > 1)
        visit(twice, sizeof twice, context);
    else
        visit(once, sizeof once, context);
}

/* Of version 1, as libraries have it that were made before there was another: the table ends here. */
struct FirstVersion {
    uint32_t version;
    ALSharedList* (*sharedApplicationList)(void);
    void (*applications)(ALSharedList* list, ALApplicationVisitor visit, void* context);
    void (*iconOfSize)(ALSharedList* list, double size, double scale, const char* identifier, ALIconVisitor visit,
                       void* context);
};
EXPORT extern const struct FirstVersion ALApplicationList;
const struct FirstVersion ALApplicationList = {1, sharedApplicationList, applications, iconOfSize};
