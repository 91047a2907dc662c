/* An application-list library of as many applications as FAKE_APPLIST_COUNT says, for tests of lists: identifiers
 * "fake.00000", "fake.00001", … with the names "Application 00000", "Application 00001", …, visited from the last to
 * the first. Every one has an icon of 29 points at the scales 1 and 2, and none of another size. */
#include "applist/AppList.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

/* How often the two operations were called, for tests to look up by these names and to set to 0. */
EXPORT extern unsigned fakeAppListApplicationsCalls;
EXPORT extern unsigned fakeAppListIconCalls;
EXPORT extern const ALApplicationListClass ALApplicationList;

unsigned fakeAppListApplicationsCalls = 0;
unsigned fakeAppListIconCalls = 0;

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

static long count(void) {
    const char* fromEnvironment = getenv("FAKE_APPLIST_COUNT");
    return fromEnvironment ? strtol(fromEnvironment, NULL, 10) : 0;
}

static ALSharedList* sharedApplicationList(void) {
    static ALSharedList list;
    return &list;
}

static void applications(ALSharedList* list, ALApplicationVisitor visit, void* context) {
    (void)list;
    ++fakeAppListApplicationsCalls;
    for (long i = count(); i-- > 0;) {
        char identifier[64];
        char name[64];
        snprintf(identifier, sizeof identifier, "fake.%05ld", i);
        snprintf(name, sizeof name, "Application %05ld", i);
        visit(identifier, name, context);
    }
}

static void iconOfSize(ALSharedList* list, double size, double scale, const char* displayIdentifier,
                       ALIconVisitor visit, void* context) {
    static const char prefix[] = "fake.";
    (void)list;
    ++fakeAppListIconCalls;
    if (strncmp(displayIdentifier, prefix, sizeof prefix - 1) != 0 ||
        strtol(displayIdentifier + sizeof prefix - 1, NULL, 10) >= count() || size < 29 || size > 29)
        return;
    if (scale > 1)
        visit(twice, sizeof twice, context);
    else
        visit(once, sizeof once, context);
}

const ALApplicationListClass ALApplicationList = {AL_APPLICATION_LIST_VERSION, sharedApplicationList, applications,
                                                  iconOfSize, NULL};
