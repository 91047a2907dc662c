#include "applist/AppList.h"

#include "applist/ApplicationList.h"
#include "applist/IconThemeName.h"
#include "applist/QuietLog.h"

#include <dlfcn.h>

/// What the users of the library hold without knowing what is in it.
struct ALSharedList {
    applist::ApplicationList applications;
};

extern "C" {
__attribute__((visibility("default"))) extern const ALApplicationListClass ALApplicationList;
}

namespace {

applist::DataFolders dataFolders() {
    Dl_info library{};
    if (!dladdr(&ALApplicationList, &library) || !library.dli_fname)
        return applist::DataFolders::ofDesktopAndDevice({});
    return applist::DataFolders::ofDesktopAndDevice(applist::deviceRootOfLibrary(library.dli_fname));
}

std::string quietThemeName() {
    const applist::QuietLog quiet;
    return applist::iconThemeName();
}

ALSharedList* sharedApplicationList() {
    // Never destroyed: the library stays until the process ends.
    static auto& list = *new ALSharedList{applist::ApplicationList(dataFolders(), quietThemeName())};
    return &list;
}

void visitApplications(ALSharedList* list, ALApplicationVisitor visit, void* context) {
    for (const auto& [identifier, name] : list->applications.applications())
        visit(identifier.c_str(), name.c_str(), context);
}

void visitIconFile(ALSharedList* list, double size, double scale, const char* displayIdentifier, ALFileVisitor visit,
                   void* context) {
    if (!displayIdentifier) return;
    const std::filesystem::path file = list->applications.iconFile(size, scale, displayIdentifier);
    if (!file.empty()) visit(file.c_str(), context);
}

} // namespace

const ALApplicationListClass ALApplicationList = {AL_APPLICATION_LIST_VERSION, sharedApplicationList, visitApplications,
                                                  nullptr, visitIconFile};
