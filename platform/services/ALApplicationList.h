#pragma once

#include "platform/services/LibraryHandle.h"
#include "platform/ui/UIImage.h"

#include <string>
#include <unordered_map>

struct ALApplicationListClass;
struct ALSharedList;

namespace platform {

/// The installed applications, as the application-list library knows them. The class is that library's, so it is there
/// only while somebody has the library open:
///
///     LibraryHandle library = openLibrary("/Library/MobileSubstrate/DynamicLibraries/AppList.dylib");
///     if (auto* list = ALApplicationList::sharedApplicationList()) names = list->applications();
///
/// Main thread.
class PLATFORM_EXPORT ALApplicationList {
  public:
    /// Null while no library that has the class is open. Stays valid for the life of the process.
    [[nodiscard]] static ALApplicationList* sharedApplicationList();

    /// Display identifier → display name, of all installed applications; both are UTF-8.
    [[nodiscard]] std::unordered_map<std::string, std::string> applications() const;

    /// The application's icon, `size` points wide and high, once and twice as sharp; null when it has none.
    [[nodiscard]] UIImageRef iconOfSize(double size, const std::string& forDisplayIdentifier) const;

    ALApplicationList(const ALApplicationListClass& table, ALSharedList& list) : table_(&table), list_(&list) {}

  private:
    const ALApplicationListClass* table_;
    ALSharedList* list_;
};

} // namespace platform
