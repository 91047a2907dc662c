/* A library that stands on an application-list library and brings no class of its own. */
extern unsigned fakeAppListApplicationsCalls;
__attribute__((visibility("default"))) unsigned callsOfTheOther(void);

unsigned callsOfTheOther(void) {
    return fakeAppListApplicationsCalls;
}
