#pragma once

#include "lockscreen/Device.h"

#include <QFont>
#include <QString>

#include <cstddef>
#include <string>
#include <unordered_map>

namespace lumora {

/// The screen's own fonts, of a size in points of the screen: Inter, and Inter Display for the clock; the system's where
/// they are not installed. Without hinting, so that widths grow as the size does.
[[nodiscard]] QFont textFont(double size, QFont::Weight weight = QFont::Medium);
[[nodiscard]] QFont displayFont(double size, QFont::Weight weight);
[[nodiscard]] QFont clockFont(double size);

/// How wide texts are in the installed fonts. Of a text in the screen's own font that is no larger than a subtitle can
/// be, it is the width in the boldest of its weights; of a larger one, which only a clock can be, that of the clock's
/// font. A letter that a chosen font lacks has the whole text measured as in the screen's own, since so it is drawn.
/// What was measured last is kept. GUI thread.
class FontWidths : public TextMeasure {
  public:
    [[nodiscard]] double width(const std::string& text, const std::string& font, double size) const override;
    [[nodiscard]] bool has(const std::string& font) const override;

    /// How many texts have been measured so far.
    [[nodiscard]] int measured() const { return measured_; }

    /// The largest subtitle.
    static constexpr double kLargestText = 50;
    /// Of a longer text, only so much is measured: more than any screen is wide.
    static constexpr std::size_t kMostBytes = 4096;

  private:
    mutable std::unordered_map<std::string, double> known_; ///< by font and text; for a size of 1
    mutable std::size_t bytes_ = 0;                         ///< of all texts in it
    mutable int measured_ = 0;
};

} // namespace lumora
