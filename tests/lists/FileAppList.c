/* An application-list library for tests: lists what stands in the file "applications.txt" beside it, a line each, an
 * identifier, a tab and a name. Every application but those whose identifier begins with "plain." has an icon. How
 * often icons were asked for is exported, and at which sizes. */
#include "applist/AppList.h"

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

EXPORT int FileAppList_iconsAsked;
int FileAppList_iconsAsked = 0;
EXPORT double FileAppList_lastSize;
double FileAppList_lastSize = 0;

/* A picture of one black pixel. */
static const uint8_t png[] = {0x89, 'P',  'N',  'G',  0x0d, 0x0a, 0x1a, 0x0a, 0,    0,    0,    0x0d, 'I',  'H',
                              'D',  'R',  0,    0,    0,    1,    0,    0,    0,    1,    8,    0,    0,    0,
                              0,    0x3a, 0x7e, 0x9b, 0x55, 0,    0,    0,    0x0a, 'I',  'D',  'A',  'T',  0x78,
                              0x9c, 0x63, 0x60, 0,    0,    0,    2,    0,    1,    0x48, 0xaf, 0xa4, 0x71, 0,
                              0,    0,    0,    'I',  'E',  'N',  'D',  0xae, 0x42, 0x60, 0x82};

static ALSharedList* shared(void) {
    static int list;
    return (ALSharedList*)&list;
}

/* The file's text, read once and kept; null when there is none. */
static const char* list_text(void) {
    static char* text;
    char path[4096];
    Dl_info where;
    if (text || !dladdr((void*)&FileAppList_iconsAsked, &where)) return text;
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
    char identifier[256];
    char name[256];
    const char* line = list_text();
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

static void icon_of_size(ALSharedList* list, double size, double scale, const char* identifier, ALIconVisitor visit,
                         void* context) {
    (void)list;
    (void)scale;
    ++FileAppList_iconsAsked;
    FileAppList_lastSize = size;
    if (strncmp(identifier, "plain.", 6) != 0) visit(png, sizeof png, context);
}

/* Of version 1, as libraries have it that were made before there was another: the table ends here. */
struct first_version {
    uint32_t version;
    ALSharedList* (*sharedApplicationList)(void);
    void (*applications)(ALSharedList* list, ALApplicationVisitor visit, void* context);
    void (*iconOfSize)(ALSharedList* list, double size, double scale, const char* identifier, ALIconVisitor visit,
                       void* context);
};
EXPORT const struct first_version ALApplicationList;
const struct first_version ALApplicationList = {1, shared, applications, icon_of_size};
