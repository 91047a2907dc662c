#pragma once

#include "applist/DesktopEntry.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace applist {

/// Device and inode: the same for a folder and for every link to it.
using FolderNumber = std::pair<std::uint64_t, std::uint64_t>;

/// The desktop entries of some folders by their identifiers: the path below the folder, with "-" for "/" and without
/// ".desktop". A linked folder counts like any other unless it leads back to a folder around it; a folder is looked
/// through at most eight times, however many links lead to it. Of two entries with one identifier, that of the earlier
/// folder counts, even if it is broken or hides the application.
///
///     DesktopEntries entries({"/usr/share/applications"});
///     entries.refresh();
///     if (const DesktopEntry* clock = entries.find("org.example.Clock")) …
///
/// One thread at a time.
class DesktopEntries {
  public:
    explicit DesktopEntries(std::vector<std::filesystem::path> folders);

    /// Looks through the folders and reads the files that are new, have changed, were broken, or whose program is gone.
    /// True if an application is new or has changed.
    bool refresh();

    /// The identifiers and names of the applications to be shown, as of the last refresh.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> shown() const;
    /// The entry of an application to be shown; null if none has the identifier.
    [[nodiscard]] const DesktopEntry* find(const std::string& identifier) const;

    /// How many times a file was read since this was made.
    [[nodiscard]] int filesRead() const { return filesRead_; }

  private:
    using Entries = std::map<std::string, DesktopEntry>;
    /// A folder on the way through one of the folders.
    struct Place {
        std::filesystem::path folder;
        std::string prefix;               ///< of the identifiers of its entries
        std::vector<FolderNumber> around; ///< the folders on the way to it
    };
    /// The way through one of the folders and all that is in it.
    struct Walk {
        std::size_t folders = 0;
        std::map<FolderNumber, int> ways; ///< how often each folder was found
        std::deque<Place> links;          ///< linked folders, which come after everything else
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
