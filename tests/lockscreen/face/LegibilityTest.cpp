// Each text of the screen in the picture, whatever the picture behind it.

#include "lockscreen/Canvas.h"
#include "lockscreen/Luminance.h"
#include "lockscreen/RoleColors.h"
#include "lockscreen/face/FontWidths.h"
#include "tests/lockscreen/face/Scenery.h"
#include "tests/pixels/Pictures.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <utility>

namespace {

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;

constexpr double kLarge = 18; // points; from here on, 3 : 1 is enough
constexpr std::array<std::array<double, 3>, 7> kPresets{{{0.5, 1, 1},
                                                         {0.61, 0.75, 0.94},
                                                         {0.72, 0.95, 1},
                                                         {0.28, 0.78, 0.83},
                                                         {0.16, 1, 1},
                                                         {0, 1, 0.69},
                                                         {0.88, 0.73, 1}}};

/// What is to be read, and where it stands.
struct Writing {
    std::string path;
    QRectF frame;
    double size;
    double luminance;
    double opacity;
};

bool isCentred(const std::string& path) {
    return path == "clock" || path == "subtitle" || path == "slideHint" || path.starts_with("icons") ||
           path.starts_with("keys") || path.starts_with("opened");
}

std::vector<Writing> writingsOf(const Look& look) {
    static const FontWidths widths;
    std::vector<Writing> writings;
    eachVisible(documentOf(look), "", [&](const std::string& path, const Value& part) {
        const Value color = part["color"];
        if (!color.list()) return;
        const auto channel = [&](std::size_t i) { return (*color.list())[i].doubleValue(); };
        const double luminance = luminanceOf({channel(0), channel(1), channel(2)});
        if (path == "statusBar") // the carrier's name
            writings.push_back({path, QRectF(50, frameOf(part).center().y() - 8, 34, 16), 13, luminance, 1});
        if (!part["text"].text() || part["text"].text()->empty()) return;
        QRectF frame = frameOf(part);
        const double size = part["drawnSize"].isNil() ? part["size"].doubleValue() : part["drawnSize"].doubleValue();
        if (path.starts_with("keys")) {
            const double edge = frame.width();
            const QRectF letters(frame.x() + edge * 0.3, frame.y() + edge * 0.62, edge * 0.4, edge * 0.24);
            const std::string& digit = std::string(*part["text"].text());
            if (digit != "1" && digit != "0")
                writings.push_back({path + ", letters", letters, edge * 0.13, luminance, 1});
            frame = QRectF(frame.x() + edge * 0.35, frame.y() + edge * 0.2, edge * 0.3, edge * 0.42);
        } else {
            const double wide =
                std::min(frame.width(), widths.width(std::string(*part["text"].text()), "Default", size));
            const bool isBesideRail = path == "slideHint" && frame.height() < 48;
            if (path == "slideHint") frame.setHeight(size * 1.22);
            if (isBesideRail)
                frame.setX(frame.x() + 134);
            else if (isCentred(path))
                frame.setX(frame.x() + (frame.width() - wide) / 2);
            frame.setWidth(wide);
        }
        writings.push_back({path, frame, size, luminance, part["opacity"].doubleValue()});
    });
    return writings;
}

/// The least contrast of a text with what is behind it. Letters cover less than half of any square that is as high as
/// their line, so the median of its pixels is of what is behind them.
double contrastIn(const QImage& picture, const Writing& writing) {
    const QRect frame = writing.frame.toAlignedRect() & picture.rect();
    double least = 21;
    for (int x = frame.left(); x <= frame.right(); x += frame.height()) {
        const int right = std::min(x + frame.height(), frame.right() + 1);
        if (right - x < frame.height() / 2 && x > frame.left()) break;
        std::vector<double> behind;
        for (int row = frame.top(); row <= frame.bottom(); ++row)
            for (int column = x; column < right; ++column) {
                const QColor color = picture.pixelColor(column, row);
                behind.push_back(luminanceOf({color.redF(), color.greenF(), color.blueF()}));
            }
        const auto middle = behind.begin() + static_cast<std::ptrdiff_t>(behind.size() / 2);
        std::nth_element(behind.begin(), middle, behind.end());
        const double mixed = *middle + (writing.luminance - *middle) * writing.opacity;
        least = std::min(least, contrast(mixed, *middle));
    }
    return least;
}

QImage checkerboard() {
    constexpr int edge = 78;
    QImage board(390, 844, QImage::Format_RGB32);
    for (int y = 0; y < board.height(); ++y)
        for (int x = 0; x < board.width(); ++x)
            board.setPixel(x, y, (x / edge + y / edge) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
    return board;
}

/// A wallpaper, and whether the phone lies on its side.
using Behind = std::tuple<std::string, bool>;

class Legible : public testing::TestWithParam<Behind> {
  protected:
    Legible() {
        const auto& [name, lies] = GetParam();
        options.wallpaper = name;
        if (lies) std::swap(options.phone.size.width, options.phone.size.height);
        if (name == "white") options.wallpaper = folder_.save(flat({390, 844}, qRgb(255, 255, 255))).toStdString();
        if (name == "black") options.wallpaper = folder_.save(flat({390, 844}, qRgb(0, 0, 0))).toStdString();
        if (name == "checkerboard") options.wallpaper = folder_.save(checkerboard()).toStdString();
    }

    void expectLegible(Surface surface, const Dictionary& settings, const std::string& what = {},
                       const std::string& gestures = {}) {
        options.surface = surface;
        const Taken screen = taken(options, enhanced(settings), gestures);
        for (const Writing& writing : writingsOf(screen.look))
            EXPECT_GE(contrastIn(screen.picture, writing), writing.size >= kLarge ? 3 : 4.5)
                << writing.path << " of " << writing.size << " points " << what;
    }

    Options options = upright();

  private:
    PictureFolder folder_;
};

TEST_P(Legible, AreNoticesDateAndFoot) {
    expectLegible(Surface::notices, {});
}

TEST_P(Legible, AreIconsWithAndWithoutTheirPane) {
    expectLegible(Surface::apps, {});
    expectLegible(Surface::apps, {{kIconViewBlurEnabled, false}}, "without the pane");
}

TEST_P(Legible, AreAppViews) {
    expectLegible(Surface::appView, {});
}

TEST_P(Legible, IsWhatAppViewsWriteInTheColoursByRole) {
    options.surface = Surface::appView;
    const Taken screen = taken(options, enhanced({{kAppViewsEnabled, List{"org.lumora.plugins.notes"}}}));
    const AppViewLook& card = screen.look.appView;
    ASSERT_TRUE(card.locked) << "so it is bare, but for its head and its middle";
    const Color ink = card.title.color;
    const bool isDark = luminanceOf(ink) > 0.5;
    const std::array<std::pair<Color, double>, 3> roles{
        {{ink, 1}, {ink, kSecondaryShare}, {isDark ? kAccentOnDark : kAccentOnLight, 1}}};
    std::array<double, 3> least{21, 21, 21};
    const int left = static_cast<int>(card.frame.origin.x);
    const int right = static_cast<int>(card.frame.origin.x + card.frame.size.width);
    const int bottom = static_cast<int>(card.frame.origin.y + card.frame.size.height);
    for (int y = static_cast<int>(card.frame.origin.y) + 70; y < bottom - 16; ++y)
        for (int x = left + 18; x < right - 18; ++x) {
            if (std::abs(2 * x - left - right) < 180) continue;
            const QColor pixel = screen.picture.pixelColor(x, y);
            const Color behind{pixel.redF(), pixel.greenF(), pixel.blueF()};
            for (std::size_t i = 0; i < roles.size(); ++i) {
                const Color seen = mixed(behind, roles[i].first, roles[i].second);
                least[i] = std::min(least[i], contrast(luminanceOf(seen), luminanceOf(behind)));
            }
        }
    EXPECT_GE(*std::ranges::min_element(least), 4.5)
        << "text " << least[0] << ", secondary " << least[1] << ", accent " << least[2];
}

TEST_P(Legible, AreApplicationsAndTheHomeScreen) {
    expectLegible(Surface::opened, {});
    options.phone.passcode.clear();
    for (const std::string icon : {"icons[0]", "icons[1]", "icons[3]"})
        expectLegible(Surface::apps, {}, "of the application of " + icon, "tap " + icon);
}

TEST_P(Legible, IsThePasscodeView) {
    expectLegible(Surface::passcode, {});
    expectLegible(Surface::passcode, {{kLSBlurCutoffEnabled, true}}, "cut off");
}

TEST_P(Legible, IsThePasscodeViewUponTheSharpPicture) {
    expectLegible(Surface::passcode, {{kLSPasscodeBlurHidden, true}}, "without blur and tint");
    expectLegible(Surface::passcode, {{kLSPBlurOpacity, 0}, {kLSPTintOpacity, 0}}, "with none of them");
}

TEST_P(Legible, IsThePasscodeViewInEachPresetColour) {
    for (const auto& [hue, saturation, brightness] : kPresets)
        expectLegible(
            Surface::passcode,
            {{kLSBlurColorEnabled, true}, {kLSBlurColor, Dictionary{{"h", hue}, {"s", saturation}, {"b", brightness}}}},
            "with a hue of " + std::to_string(hue));
}

INSTANTIATE_TEST_SUITE_P(Wallpapers, Legible,
                         testing::Combine(testing::Values("dusk", "day", "night", "white", "black", "checkerboard"),
                                          testing::Bool()),
                         [](const auto& one) {
                             return std::get<0>(one.param) + (std::get<1>(one.param) ? "Lying" : "Upright");
                         });

} // namespace
