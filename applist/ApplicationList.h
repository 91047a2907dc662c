#pragma once

#include "applist/DataFolders.h"
#include "applist/DesktopEntries.h"
#include "applist/IconCache.h"
#include "applist/IconTheme.h"

#include <string>
#include <utility>
#include <vector>

namespace applist {

/// The applications of some folders with their names and icons.
///
///     ApplicationList list(DataFolders::ofDesktopAndDevice({}), iconThemeName());
///     for (const auto& [identifier, name] : list.applications()) show(name, list.icon(29, 2, identifier));
///
/// One thread at a time.
class ApplicationList {
  public:
    ApplicationList(DataFolders folders, std::string iconTheme);

    /// Identifiers and names; looks for what has been installed or removed meanwhile.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> applications();

    /// A PNG file of size × scale pixels, of an application as of the last applications(); empty when it has no icon.
    [[nodiscard]] std::vector<std::uint8_t> icon(double size, double scale, const std::string& identifier);

    /// How often a desktop entry was read and an icon drawn since the beginning.
    [[nodiscard]] int filesRead() const { return entries_.filesRead(); }
    [[nodiscard]] int iconsDrawn() const { return iconsDrawn_; }

  private:
    void refresh();
    [[nodiscard]] std::filesystem::path fileOf(GIcon* icon, int size, int scale) const;

    DesktopEntries entries_;
    IconTheme theme_;
    IconCache icons_;
    bool fresh_ = false;
    int iconsDrawn_ = 0;
};

} // namespace applist
