#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace platform {

class UIFont;
using UIFontRef = std::shared_ptr<const UIFont>;

/// A font at a size: the installed one of a name, or the system's own. Making a font opens no file; drawing with it
/// does.
///
///     label.setFont(UIFont::fontWithName("Inter-Bold", label.font()->pointSize()));
///
/// Installed fonts are the scalable ones that fontconfig knows. familyNames() looks anew at what is installed; names in
/// a family, and fonts by their names, are those of the last look. A name comes once in all families, however many
/// files have it: where a font is installed both as a file of its own and as an instance of a variable one, either
/// would draw the same. It names the font that comes first by family, then by file. Immutable; any thread.
class PLATFORM_EXPORT UIFont {
  public:
    /// Every family with a font, once, in byte order.
    [[nodiscard]] static std::vector<std::string> familyNames();
    /// The names of a family's fonts in byte order: the PostScript name, or the full name of a font without one. A
    /// variable font has a name for each of its named instances. Empty for a family that is not installed.
    [[nodiscard]] static std::vector<std::string> fontNamesForFamilyName(const std::string& family);

    /// `size` is in points. Null when no installed font has that name.
    [[nodiscard]] static UIFontRef fontWithName(const std::string& name, double size);
    [[nodiscard]] static UIFontRef systemFontOfSize(double size);

    /// Empty for the system's font.
    [[nodiscard]] const std::string& fontName() const { return name_; }
    [[nodiscard]] double pointSize() const { return size_; }

    /// The file of an installed font, and the font's number in it, which holds the named instance of a variable font in
    /// its upper 16 bits. Empty for the system's font.
    [[nodiscard]] const std::filesystem::path& file() const { return file_; }
    [[nodiscard]] int index() const { return index_; }

    UIFont(std::string name, double size, std::filesystem::path file, int index)
        : name_(std::move(name)), size_(size), file_(std::move(file)), index_(index) {}
    friend bool operator==(const UIFont&, const UIFont&) = default;

  private:
    std::string name_;
    double size_;
    std::filesystem::path file_;
    int index_;
};

} // namespace platform
