#include "lockscreen/Canvas.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumora {
namespace {

constexpr double kEnoughOnKeys = 4.6; // of contrast
constexpr double kRing = 0.10;        // of its own colour, in a key
constexpr double kLetters = 0.13;     // the size of a key's letters, of its diameter
constexpr double kSign = 18;          // points: a sign is as easy to see as a text of that size
constexpr double kBlockedOpacity = 0.4;

struct Tint {
    Color color;
    double opacity;
};

Tint tintOf(const Style& style) {
    const double factor = style.number(kLSPTintOpacity);
    if (style.flag(kLSBlurColorEnabled)) return {style.color(kLSBlurColor), 0.62 * factor};
    return {{0.047, 0.063, 0.141}, 0.30 * factor};
}

/// The keypad with its title and dots, in units. One that does not fit is made smaller as a whole.
struct Keypad {
    Keypad(const Canvas& canvas, const Style& style)
        : beside(!canvas.portrait), titled(!style.flag(kLSPasscodeTitleHidden)), head(beside   ? 0
                                                                                      : titled ? 70
                                                                                               : 46) {
        diameter = 75 + style.number(kLSPButtonDiam);
        gapAcross = 20 * style.number(kLSPButtonSpacingH);
        gapDown = 15 * style.number(kLSPButtonSpacingV);
        const double most = canvas.width * (beside ? 0.55 : 1) - 16;
        const double fit =
            std::min({1.0, most / width(), (canvas.height - (beside ? 44 : 150) - head) / (height() - head)});
        diameter *= fit;
        gapAcross *= fit;
        gapDown *= fit;
        left = beside ? canvas.width * 0.70 - width() / 2 : (canvas.width - width()) / 2;
        top = beside ? (canvas.height - height()) / 2 + 8 : std::max(70.0, (canvas.height - height()) / 2 - 6);
    }

    [[nodiscard]] double width() const { return 3 * diameter + 2 * gapAcross; }
    [[nodiscard]] double height() const { return head + 4 * diameter + 3 * gapDown; }

    bool beside; ///< the title is at the left of the keys
    bool titled;
    double head; ///< the height of what stands above the keys
    double diameter = 0;
    double gapAcross = 0;
    double gapDown = 0;
    double left = 0;
    double top = 0;
};

} // namespace

void layOutPasscode(Look& look, const Canvas& canvas, const Style& style, const Device& device, const State& state) {
    const bool visible = state.surface == Surface::passcode;
    const double unit = device.unit();
    const Keypad pad(canvas, style);
    PasscodeLook& view = look.passcode;
    view.visible = visible;
    view.frame = canvas.frame(0, 0, canvas.width, canvas.height);

    const bool blurred = visible && !style.flag(kLSPasscodeBlurHidden);
    double cut = style.flag(kLSBlurCutoffEnabled) ? std::max(0.0, std::round(pad.top - 26)) : 0;
    const double bar = canvas.portrait ? 14 : 6; // where the words of the status bar begin; they are not cut
    if (cut > bar && cut < bar + 16) cut = bar;
    const platform::CGRect below = canvas.frame(0, cut, canvas.width, canvas.height - cut);
    const double share = style.number(kLSPBlurOpacity);
    const Tint asked = tintOf(style);
    const auto tintOver = [&](const std::pair<double, double>& picture) {
        return blurred ? legibleOn(picture, asked.color, asked.opacity, kRing, kEnoughOnKeys)
                       : legibleOn(picture, asked.color, 0, 0, 1);
    };
    const Ground tint = visible ? tintOver(canvas.ground(below, blurred ? share : 0)) : Ground();
    const Color color = tint.ink;
    if (blurred && cut <= bar) // it stands on the tint as well
        for (Mark* mark : {&look.statusBar, static_cast<Mark*>(&look.battery)}) {
            mark->color = color;
            mark->shade = {};
        }
    view.blur = {{blurred, below}, share};
    view.tint = {{{blurred, below}, tint.color}, tint.opacity};
    view.cutoff = {blurred && cut > 0, canvas.frame(0, cut, canvas.width, 1)};

    // Without blur and tint, each of these has a shade of its own where the picture asks for one.
    const auto mark = [&](bool isShown, const platform::CGRect& frame, double size, double covered) {
        const bool needsShade = isShown && !blurred;
        return Mark{{isShown, frame}, color, needsShade ? canvas.shadeUnder(frame, color, size, covered) : ShadeLook()};
    };
    const auto write = [&](bool isShown, const platform::CGRect& frame, std::string words, double size) {
        return Text{mark(isShown, frame, size, 0), std::move(words), size * unit, 1};
    };

    const double middle = pad.beside ? canvas.width * 0.25 : canvas.width / 2;
    const char* title = state.blocked ? "Try Again in a Moment" : "Enter Passcode";
    const double titleWidth = canvas.widthOf(title, 19);
    view.title = write(visible && pad.titled,
                       canvas.frame(middle - titleWidth / 2, pad.beside ? pad.top + pad.height() / 2 - 44 : pad.top,
                                    titleWidth, 19 * Canvas::kLine),
                       title, 19);
    // As many as the passcode has digits; four when there is none.
    const std::size_t count = device.passcode.empty() ? 4 : std::min<std::size_t>(device.passcode.size(), 12);
    const double step = std::min(33.0, (canvas.width * (pad.beside ? 0.4 : 1) - 48) / static_cast<double>(count));
    const double row = static_cast<double>(count - 1) * step + 13;
    view.dots.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        view.dots[i] = {
            mark(visible,
                 canvas.frame(middle - row / 2 + static_cast<double>(i) * step,
                              pad.beside ? pad.top + pad.height() / 2 - 4 : pad.top + (pad.titled ? 36 : 12), 13, 13),
                 kSign, 0),
            i < state.typed.size()};

    const bool buttons = visible && !style.flag(kLSPasscodeButtonsHidden);
    const double emergency = canvas.widthOf("Emergency", 16);
    const char* cancels = state.typed.empty() ? "Cancel" : "Delete";
    const double cancel = canvas.widthOf(cancels, 16);
    const auto button = [&](double x, const char* words, double width) {
        const platform::CGRect frame = canvas.frame(x, canvas.height - 52, width, 16 * Canvas::kLine);
        Text text = write(buttons, frame, words, 16);
        if (!blurred)
            static_cast<Mark&>(text) = canvas.sign(buttons, frame, 16); // far from the keys, on another ground
        return text;
    };
    view.emergency = button(pad.beside ? middle - emergency - 26 : 34, "Emergency", emergency);
    view.cancel = button(pad.beside ? middle + 26 : canvas.width - cancel - 34, cancels, cancel);

    static constexpr std::array<const char*, 10> digits{"1", "2", "3", "4", "5", "6", "7", "8", "9", "0"};
    look.keys.resize(digits.size());
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const auto column = static_cast<double>(i == 9 ? 1 : i % 3);
        const std::size_t rank = i / 3;
        const auto line = static_cast<double>(rank);
        const platform::CGRect frame =
            canvas.frame(pad.left + column * (pad.diameter + pad.gapAcross),
                         pad.top + pad.head + line * (pad.diameter + pad.gapDown), pad.diameter, pad.diameter);
        Text& key = look.keys[i];
        key = {mark(visible, frame, pad.diameter * kLetters, kRing), digits[i], pad.diameter * 0.46 * unit,
               state.blocked ? kBlockedOpacity : 1};
        if (key.shade.opacity > 0) { // fills the ring
            key.shade.frame = frame;
            key.shade.fade = 0;
        }
    }
}

} // namespace lumora
