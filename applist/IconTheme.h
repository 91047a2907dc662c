#pragma once

#include "applist/FileStamp.h"
#include "applist/GLibPointer.h"

#include <optional>
#include <string>
#include <vector>

namespace applist {

/// Finds the file of a named icon, by the rules that desktops share: in the theme, in those that it inherits from, in
/// "hicolor", then among the icons without a theme. One thread at a time.
///
///     IconTheme theme({"/usr/share/icons"}, {"/usr/share/pixmaps"}, "Adwaita");
///     theme.refresh();
///     std::filesystem::path file = theme.find("mail-client", 29, 2);   // empty if there is none
class IconTheme {
  public:
    IconTheme(std::vector<std::filesystem::path> folders, std::vector<std::filesystem::path> pixmaps, std::string name);

    /// Takes up themes that were installed, changed or removed; true if there were any, and at the first call.
    bool refresh();

    /// The file that fits best for `size` points on a screen of `scale` pixels a point; empty if there is none.
    [[nodiscard]] std::filesystem::path find(const std::string& icon, int size, int scale) const;

  private:
    enum class Kind { Fixed, Scalable, Threshold };
    /// A folder of icons of one size.
    struct Folder {
        Kind kind = Kind::Threshold;
        int size = 0;
        int scale = 1;
        int smallest = 0;
        int largest = 0;
        std::vector<std::filesystem::path> paths; ///< one for each place where the theme is installed

        /// 0 if the icons are made for the size, else 1 more than the number of pixels by which they miss it.
        [[nodiscard]] int distance(int wantedSize, int wantedScale) const;
    };
    struct Theme {
        std::string name;
        std::vector<Folder> folders;
    };

    void add(const std::string& name);
    [[nodiscard]] std::vector<Folder> foldersOf(const std::string& theme, GKeyFile* index) const;
    [[nodiscard]] std::vector<std::optional<FileStamp>> stamps() const;

    std::vector<std::filesystem::path> folders_;
    std::vector<std::filesystem::path> pixmaps_;
    std::string name_;
    std::vector<Theme> chain_;
    std::vector<std::optional<FileStamp>> stamps_;
};

} // namespace applist
