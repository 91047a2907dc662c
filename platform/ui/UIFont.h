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

/// A font at a size: the installed one of a name, or the system's own. Whoever draws it opens its file; making a font
/// opens nothing.
///
///     label.setFont(UIFont::fontWithName("Inter-Bold", label.font()->pointSize()));
///
/// Installed are the scalable fonts that fontconfig knows. Asking for the families looks anew at what is installed; the
/// names in a family, and fonts by their names, are those of the last look. Immutable; any thread.
class PLATFORM_EXPORT UIFont {
  public:
    /// Every family with a font, each once, in the order of their bytes.
    [[nodiscard]] static std::vector<std::string> familyNames();
    /// The names of a family's fonts, one for each font that is installed, so that a name may come twice: the
    /// PostScript name, or the full name where a font has none. A variable font counts once for each instance that it
    /// names. Empty for a family that is not installed.
    [[nodiscard]] static std::vector<std::string> fontNamesForFamilyName(const std::string& family);

    /// Null when no installed font has that name. Of several of one name it is always the same one.
    [[nodiscard]] static UIFontRef fontWithName(const std::string& name, double size);
    [[nodiscard]] static UIFontRef systemFontOfSize(double size);

    /// Empty for the system's font.
    [[nodiscard]] const std::string& fontName() const { return name_; }
    [[nodiscard]] double pointSize() const { return size_; }

    /// Where an installed font is: its file, and its number there, which for a named instance of a variable font has
    /// the instance in the upper 16 bits. Empty for the system's font.
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
