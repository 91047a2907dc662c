#pragma once

#include "applist/FileStamp.h"
#include "applist/GLibPointer.h"

#include <string>
#include <vector>

namespace applist {

/// What a desktop entry says of its application.
struct DesktopEntry {
    std::filesystem::path file;
    FileStamp stamp;
    bool readable = false;                       ///< names an application whose program is there
    std::vector<std::filesystem::path> programs; ///< what has to be there for that
    bool shown = false;                          ///< is one that users are meant to see
    std::string name;                            ///< in the user's language
    GObjectPointer<GIcon> icon;                  ///< null when the entry names none

    [[nodiscard]] bool hasPrograms() const;
};

/// Reads the file as GIO would. Kept on purpose: it is not GIO's own reading, since that begins by looking through all
/// folders of applications, along every link, and two links to their own folder are enough for that never to end.
[[nodiscard]] DesktopEntry readDesktopEntry(const std::filesystem::path& file, const FileStamp& stamp);

} // namespace applist
