#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct hb_font_t; // HarfBuzz's

namespace lumora {

/// How wide texts are in the screen's own fonts; where these are not installed, about so. The fonts' files are opened
/// when this is made, so that a plug-in's drawing pays for none. One thread.
class TextExtents {
  public:
    TextExtents();

    /// Of one line, in points.
    [[nodiscard]] double width(std::string_view text, double size, double weight) const;
    /// Breaks a text between words into up to so many lines of that width; what is left over is cut with an ellipsis.
    /// A width of 0 is no limit.
    [[nodiscard]] std::vector<std::string> lines(std::string_view text, double size, double weight, double width,
                                                 std::size_t most) const;

  private:
    [[nodiscard]] std::string cut(std::string text, double size, double weight, double width) const;

    /// Of the fonts for texts of that size, the one whose weight is the nearest; null without any.
    [[nodiscard]] hb_font_t* font(double size, double weight) const;

    using Family = std::map<int, std::shared_ptr<hb_font_t>>; ///< by weight
    Family text_;
    Family display_; ///< for large texts
};

} // namespace lumora
