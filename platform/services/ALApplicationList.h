#pragma once

#include "platform/services/LibraryHandle.h"
#include "platform/services/PictureDecoder.h"
#include "platform/ui/UIImage.h"

#include <functional>
#include <string>
#include <unordered_map>

struct ALApplicationListClass;
struct ALSharedList;

namespace platform {

/// The library's place on the device.
inline constexpr const char* kApplicationListLibrary = "/Library/MobileSubstrate/DynamicLibraries/AppList.dylib";

/// The installed applications, as the application-list library knows them. The class is that library's, so it exists
/// only while a handle holds the library open:
///
///     LibraryHandle library = openLibrary(kApplicationListLibrary);
///     if (auto* list = ALApplicationList::sharedApplicationList()) names = list->applications();
///
/// Main thread.
class PLATFORM_EXPORT ALApplicationList {
  public:
    /// Null while no library with the class is open. Valid for the life of the process.
    [[nodiscard]] static ALApplicationList* sharedApplicationList();

    /// The display name of each installed application by its display identifier; both are UTF-8.
    [[nodiscard]] std::unordered_map<std::string, std::string> applications() const;

    /// The application's icon, `size` points wide and high, in both resolutions; null when it has none.
    [[nodiscard]] UIImageRef iconOfSize(double size, const std::string& forDisplayIdentifier) const;

    /// The same for a view that does not wait for all of its icons: null as well when patience ends first. Then `later`
    /// is called once, with the icon, if `order` is still held.
    [[nodiscard]] UIImageRef iconOfSize(double size, const std::string& forDisplayIdentifier, PicturePatience& patience,
                                        PictureOrderRef& order, std::function<void(UIImageRef)> later) const;

    ALApplicationList(const ALApplicationListClass& table, ALSharedList& list) : table_(&table), list_(&list) {}

  private:
    [[nodiscard]] std::vector<PictureWanted> iconFiles(double size, const std::string& identifier) const;
    [[nodiscard]] UIImageRef drawnByTheLibrary(double size, const std::string& identifier) const;

    const ALApplicationListClass* table_;
    ALSharedList* list_;
};

} // namespace platform
