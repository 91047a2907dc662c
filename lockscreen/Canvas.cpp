#include "lockscreen/Canvas.h"

#include <algorithm>
#include <cmath>

namespace lumora {
namespace {

constexpr double kEnoughForLarge = 3.3;
constexpr double kLarge = 18;  // points
constexpr double kStep = 0.04; // of opacity
constexpr int kSteps = 25;
constexpr double kFade = 12;    // of shades, in units
constexpr double kGlass = 0.15; // of white, on dark pictures

} // namespace

Canvas::Canvas(const Device& device)
    : device_(device), unit_(device.unit()),
      brightPanes_(device.picture.mean(platform::CGRectMake(0, 0.5, 1, 0.35)) > kBright),
      width(device.size.width / unit_), height(device.size.height / unit_), portrait(!device.isLandscape()) {
}

Color mixed(const Color& one, const Color& other, double share) {
    const auto mix = [share](double a, double b) { return a + (b - a) * share; };
    return {mix(one.red, other.red), mix(one.green, other.green), mix(one.blue, other.blue)};
}

LegibleGrounds groundsFor(double opacity) {
    const auto worst = [opacity](const Color& ink, double best, double least) {
        for (int i = 0; i < 20; ++i) {
            const double middle = (best + least) / 2;
            (contrast(laidOver(middle, ink, opacity), middle) >= kEnough ? best : least) = middle;
        }
        return best;
    };
    return {worst(kWhite, 0, 1), worst(kInk, 1, 0)};
}

Ground legibleOn(const std::pair<double, double>& picture, const Color& tint, double opacity, double share,
                 double enough) {
    Ground best;
    double most = 0;
    for (double shade = 0; most < enough && shade <= 1; shade += kStep) {
        const double whole = 1 - (1 - shade) * (1 - opacity);
        for (const auto& [ink, below] : {std::pair(kWhite, kNight), std::pair(kInk, kWhite)}) {
            const Color color = whole > 0 ? mixed(below, tint, opacity / whole) : tint;
            const double own = luminanceOf(ink);
            const auto on = [&, ink = ink](double behind) {
                return contrast(laidOver(laidOver(behind, color, whole), ink, share), own);
            };
            const double least = std::min(on(picture.first), on(picture.second));
            if (least > most) {
                most = least;
                best = {color, whole, ink};
            }
        }
    }
    return best;
}

Mark Canvas::sign(bool visible, const platform::CGRect& frame, double size) const {
    Mark mark{{visible, frame}, kWhite};
    if (!visible) return mark;
    const Ground found = legibleOn(ground(frame, 0), kNight, 0, 0, size < kLarge ? kEnough : kEnoughForLarge);
    mark.color = found.ink;
    if (found.opacity > 0) mark.shade = shade(frame, found.color, found.opacity);
    return mark;
}

ShadeLook Canvas::shade(const platform::CGRect& frame, const Color& color, double opacity) const {
    const double fade = kFade * unit_;
    return {platform::CGRectMake(frame.origin.x - fade, frame.origin.y - fade, frame.size.width + 2 * fade,
                                 frame.size.height + 2 * fade),
            color, opacity, fade};
}

ShadeLook Canvas::shadeUnder(const platform::CGRect& frame, const Color& ink, double size, double share) const {
    const auto [darkest, brightest] = ground(frame, 0);
    const double worst = ink == kWhite ? brightest : darkest;
    const Color below = ink == kWhite ? kNight : kWhite;
    const double enough = size < kLarge ? kEnough : kEnoughForLarge;
    const auto isLegible = [&](int steps) {
        const double behind = laidOver(worst, below, steps * kStep);
        return contrast(laidOver(behind, ink, share), luminanceOf(ink)) >= enough;
    };
    int fewest = 0;
    for (int most = kSteps; fewest < most;) {
        const int middle = (fewest + most) / 2;
        if (isLegible(middle))
            most = middle;
        else
            fewest = middle + 1;
    }
    return fewest == 0 ? ShadeLook() : shade(frame, below, fewest * kStep);
}

Text Canvas::text(bool visible, const platform::CGRect& frame, std::string words, double size, double opacity,
                  const std::string& font) const {
    const double wide = std::min(frame.size.width, (widthOf(words, size, font) + 16) * unit_);
    const platform::CGRect middle =
        platform::CGRectMake(frame.origin.x + (frame.size.width - wide) / 2, frame.origin.y, wide, frame.size.height);
    Text text{sign(visible, middle, size), std::move(words), size * unit_, opacity};
    text.frame = frame;
    return text;
}

std::pair<double, double> Canvas::ground(const platform::CGRect& frame, double blur) const {
    const platform::CGRect part = share(frame);
    const auto sharp = device_.picture.range(part);
    if (blur == 0) return sharp;
    const auto soft = device_.blurred.range(part);
    return {std::lerp(sharp.first, soft.first, blur), std::lerp(sharp.second, soft.second, blur)};
}

Color Canvas::makeLegible(Pane& pane, const LegibleGrounds& grounds) const {
    const platform::CGRect part = share(pane.frame);
    if (brightPanes_) {
        const double darkest = device_.blurred.range(part).first;
        pane.tint = kWhite;
        pane.tintOpacity = 0.42;
        while (pane.tintOpacity < 1 && laidOver(darkest, kWhite, pane.tintOpacity) < grounds.darkest)
            pane.tintOpacity = std::min(1.0, pane.tintOpacity + kStep);
        return kInk;
    }
    // White glass, under which lies as much of the night as the brightest place needs.
    const double brightest = device_.blurred.range(part).second;
    for (double dark = 0;; dark = std::min(1.0, dark + kStep)) {
        pane.tintOpacity = 1 - (1 - kGlass) * (1 - dark);
        pane.tint = mixed(kNight, kWhite, kGlass / pane.tintOpacity);
        if (dark == 1 || laidOver(brightest, pane.tint, pane.tintOpacity) <= grounds.brightest) return kWhite;
    }
}

} // namespace lumora
