#pragma once

#include "lockscreen/Device.h"
#include "lockscreen/KeyTable.h"
#include "lockscreen/Look.h"

#include <string>
#include <utility>

namespace lumora {

inline constexpr Color kWhite{1, 1, 1};
inline constexpr Color kInk{0.086, 0.141, 0.169}; ///< texts on bright pictures
inline constexpr Color kNight{0.04, 0.035, 0.11}; ///< what darkens a picture under white texts
/// Of contrast between texts and what is behind them, with some for what a measure in cells overlooks.
inline constexpr double kEnough = 4.8;

/// On which grounds texts of an opacity have kEnough, as luminances.
struct LegibleGrounds {
    double brightest; ///< under white
    double darkest;   ///< under ink
};
[[nodiscard]] LegibleGrounds groundsFor(double opacity);

/// What is seen of one colour under a share of another.
[[nodiscard]] Color mixed(const Color& one, const Color& other, double share);

/// What lies over a picture, and the colour of what can be read on it.
struct Ground {
    Color color;
    double opacity = 0;
    Color ink = kWhite;
};
/// A tint with no more shade or light below it than it takes to read on it what covers itself with a share of its own
/// colour. `picture` has the luminance of the darkest place and of the brightest.
[[nodiscard]] Ground legibleOn(const std::pair<double, double>& picture, const Color& tint, double opacity,
                               double share, double enough);

/// What the parts of a look are laid out on: the screen in units, and what is behind each place of it. Frames are given
/// in units and come out in points.
class Canvas {
  public:
    explicit Canvas(const Device& device);

    [[nodiscard]] platform::CGRect frame(double x, double y, double wide, double tall) const {
        return platform::CGRectMake(x * unit_, y * unit_, wide * unit_, tall * unit_);
    }
    /// In units.
    [[nodiscard]] double widthOf(const std::string& text, double size, const std::string& font = "Default") const {
        return device_.texts ? device_.texts->width(text, font, size) : 0;
    }
    /// White, or ink where the picture is bright.
    [[nodiscard]] Color inkOn(const platform::CGRect& frame) const {
        return device_.picture.mean(share(frame)) > kBright ? kInk : kWhite;
    }
    /// The darkest and the brightest that is seen in a frame under so much of the blur.
    [[nodiscard]] std::pair<double, double> ground(const platform::CGRect& frame, double blur) const;

    [[nodiscard]] Mark mark(bool visible, const platform::CGRect& frame) const {
        return {{visible, frame}, visible ? inkOn(frame) : kWhite};
    }
    /// What is to be read on the picture, in a font of that size; on a shade if need be.
    [[nodiscard]] Mark sign(bool visible, const platform::CGRect& frame, double size) const;
    /// The shade that it takes to read an ink (white or kInk) there, which covers itself with a share of its own colour.
    [[nodiscard]] ShadeLook shadeUnder(const platform::CGRect& frame, const Color& ink, double size,
                                       double share = 0) const;
    /// A text on the picture, in the middle of a box that is as high as its line.
    [[nodiscard]] Text text(bool visible, const platform::CGRect& frame, std::string words, double size,
                            double opacity = 1, const std::string& font = "Default") const;
    /// A frosted pane that gives its texts a contrast of 4.5 : 1 wherever they stand on it; their colour with it. All
    /// panes are bright, or all are dark, as most of the picture is where they stand.
    [[nodiscard]] Color makeLegible(Pane& pane, const LegibleGrounds& grounds) const;

    /// A mean luminance from which on texts are ink.
    static constexpr double kBright = 0.26;
    /// The height of a line of text, in sizes of its font.
    static constexpr double kLine = 1.22;

  private:
    /// A shade that is whole in that frame.
    [[nodiscard]] ShadeLook shade(const platform::CGRect& frame, const Color& color, double opacity) const;
    [[nodiscard]] platform::CGRect share(const platform::CGRect& frame) const {
        const platform::CGSize& size = device_.size;
        return platform::CGRectMake(frame.origin.x / size.width, frame.origin.y / size.height,
                                    frame.size.width / size.width, frame.size.height / size.height);
    }

    const Device& device_;
    double unit_;
    bool brightPanes_; ///< as most of the picture is where they stand

  public:
    const double width; ///< of the screen, in units
    const double height;
    const bool portrait;
};

/// The passcode view with its keys.
void layOutPasscode(Look& look, const Canvas& canvas, const Style& style, const Device& device, const State& state);

} // namespace lumora
