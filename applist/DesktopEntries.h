#pragma once

#include "applist/FileStamp.h"
#include "applist/GLibPointer.h"

#include <map>
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
};

/// The desktop entries of some folders by their identifiers: the path below the folder, with "-" for "/" and without
/// ".desktop". Linked folders count as others do, but for those that lead back to a folder around them. Of two with one
/// identifier that of the earlier folder counts, even if it is broken or hides the application.
///
///     DesktopEntries entries({"/usr/share/applications"});
///     entries.refresh();
///     if (const DesktopEntry* clock = entries.find("org.example.Clock")) …
class DesktopEntries {
  public:
    explicit DesktopEntries(std::vector<std::filesystem::path> folders);

    /// Looks through the folders and reads the files that are new or have changed, no others but broken ones and those
    /// whose program is gone. True when an application is new or has changed.
    bool refresh();

    /// The identifiers and names of the applications to be shown, as of the last refresh.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> shown() const;
    /// Null when no application to be shown has the identifier.
    [[nodiscard]] const DesktopEntry* find(const std::string& identifier) const;

    /// How many files were read since the beginning.
    [[nodiscard]] int filesRead() const { return filesRead_; }

  private:
    using Entries = std::map<std::string, DesktopEntry>;
    void look(const std::filesystem::path& folder, const std::string& prefix, Entries& entries);
    [[nodiscard]] DesktopEntry entryOf(const std::string& identifier, const std::filesystem::path& file,
                                       const FileStamp& stamp);

    std::vector<std::filesystem::path> folders_;
    Entries entries_;
    bool changed_ = false;
    int filesRead_ = 0;
};

} // namespace applist
