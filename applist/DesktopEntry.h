#pragma once

#include "applist/FileStamp.h"
#include "applist/GLibPointer.h"

#include <string>
#include <vector>

namespace applist {

/// What a desktop entry says about its application.
struct DesktopEntry {
    std::filesystem::path file;
    FileStamp stamp;
    bool readable = false;                       ///< true for an application whose programs are installed
    std::vector<std::filesystem::path> programs; ///< the programs that it needs
    bool shown = false;                          ///< true for an application that users are meant to see
    std::string name;                            ///< in the user's language
    GObjectPointer<GIcon> icon;                  ///< null if the entry names none

    /// True while the programs are installed.
    [[nodiscard]] bool hasPrograms() const;
};

/// Reads the file as GIO would; a broken file gives an entry that is not readable. Kept on purpose: GIO itself does not
/// read it, since it begins by looking through all folders of applications along every link, and two links to their own
/// folder are enough to keep it busy for ever.
[[nodiscard]] DesktopEntry readDesktopEntry(const std::filesystem::path& file, const FileStamp& stamp);

} // namespace applist
