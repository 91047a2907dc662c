#pragma once

#include "applist/DesktopEntry.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace applist {

/// What a folder is: device and inode, for links name it anew.
using FolderNumber = std::pair<std::uint64_t, std::uint64_t>;

/// The desktop entries of some folders by their identifiers: the path below the folder, with "-" for "/" and without
/// ".desktop". Linked folders count as others do, but for those that lead back to a folder around them; a folder is
/// looked through at most eight times, however many links name it. Of two with one identifier that of the earlier
/// folder counts, even if it is broken or hides the application.
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
    /// A folder on the way through one of the folders.
    struct Place {
        std::filesystem::path folder;
        std::string prefix;               ///< of the identifiers of its entries
        std::vector<FolderNumber> around; ///< the folders in which it was found, from the outermost
    };
    /// The way through one of the folders and all that is in it.
    struct Walk {
        std::size_t folders = 0;
        std::map<FolderNumber, int> ways; ///< on which a folder was found
        std::deque<Place> links;          ///< to be looked through after everything that is there itself
    };
    void look(const Place& place, Walk& walk, Entries& entries);
    void take(const std::filesystem::path& file, std::string identifier, Entries& entries);
    [[nodiscard]] DesktopEntry entryOf(const std::string& identifier, const std::filesystem::path& file,
                                       const FileStamp& stamp);

    std::vector<std::filesystem::path> folders_;
    Entries entries_;
    bool changed_ = false;
    int filesRead_ = 0;
};

} // namespace applist
