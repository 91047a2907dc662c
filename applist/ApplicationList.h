#pragma once

#include "applist/DataFolders.h"
#include "applist/DesktopEntries.h"
#include "applist/IconTheme.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace applist {

/// The applications of some folders with their names and icons.
///
///     ApplicationList list(DataFolders::ofDesktopAndDevice({}), iconThemeName());
///     for (const auto& [identifier, name] : list.applications()) show(name, list.iconFile(29, 2, identifier));
///
/// One thread at a time.
class ApplicationList {
  public:
    ApplicationList(DataFolders folders, std::string iconTheme);

    /// The identifier and name of each application. Looks for what was installed or removed since the last call.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> applications();

    /// The file that fits best for the application's icon at `size` points of `scale` pixels, as of the last call of
    /// applications(); empty if there is none, or if the size or scale makes no sense.
    [[nodiscard]] std::filesystem::path iconFile(double size, double scale, const std::string& identifier);

    /// How many times an icon was looked for since this was made.
    [[nodiscard]] int iconsLookedFor() const { return iconsLookedFor_; }

  private:
    /// An application's icon of one size and scale.
    struct Wanted {
        std::string identifier;
        int size = 0;
        int scale = 0;
        // NOLINTNEXTLINE(modernize-use-nullptr): the check sees a null in what the compiler writes here
        friend auto operator<=>(const Wanted&, const Wanted&) = default;
    };
    struct IconFile {
        bool looked = false;
        std::filesystem::path file; ///< empty when none was found
        std::optional<FileStamp> stamp;
    };

    void refresh();
    [[nodiscard]] std::filesystem::path fileOf(GIcon* icon, int size, int scale) const;

    DesktopEntries entries_;
    IconTheme theme_;
    std::map<Wanted, IconFile> icons_; ///< the icons that were asked for
    bool fresh_ = false;
    int iconsLookedFor_ = 0;
};

} // namespace applist
