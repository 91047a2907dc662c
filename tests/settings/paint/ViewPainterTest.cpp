#include "settings/paint/ViewPainter.h"
#include "settings/paint/ViewChange.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace platform;
using namespace settings;

constexpr QRgb kWhite = 0xffffffff;
constexpr QRgb kBlack = 0xff000000;
constexpr QRgb kRed = 0xffff0000;
constexpr QRgb kBlue = 0xff0000ff;
constexpr QRgb kGrey = 0xff7f7f7f; ///< half of black on white

const UIColorRef red = UIColor::colorWithRed(1, 0, 0, 1);
const UIColorRef blue = UIColor::colorWithRed(0, 0, 1, 1);
const UIColorRef black = UIColor::blackColor();

ViewSnapshot view(const CGRect& frame, CALayer layer = {}, std::vector<ViewSnapshot> subviews = {}) {
    ViewSnapshot made{"View", frame, std::move(layer)};
    made.subviews = std::move(subviews);
    return made;
}

/// With a picture of one size or two.
ViewSnapshot pictured(const CGRect& frame, CALayer layer, CGSize size, const Data& file, const Data& sharper = {}) {
    ViewSnapshot made = view(frame, std::move(layer));
    made.image = std::make_shared<const UIImage>(size, file, sharper);
    return made;
}

/// With something that was drawn in the view as large as it is.
ViewSnapshot drawn(const CGRect& frame, std::vector<CGDrawing::Step> steps) {
    ViewSnapshot made = view(frame);
    made.drawing = std::make_shared<const CGDrawing>(CGDrawing{frame.size, std::move(steps)});
    return made;
}

/// On white, on a screen of so many pixels a point.
QImage painted(const ViewSnapshot& view, double scale = 1, QSize size = {40, 40}) {
    QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    ViewPainter().paint(painter, view);
    return image;
}

/// Alike but for the rounding of one step of each colour.
::testing::AssertionResult isNearly(QRgb one, QRgb other) {
    const int most = std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                               std::abs(qBlue(one) - qBlue(other))});
    if (most <= 1) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << std::hex << one << " is not " << other;
}

/// What a picture has at a place.
struct Pixel {
    int x;
    int y;
    QRgb color;
};

void expectPixels(const QImage& image, const std::vector<Pixel>& pixels) {
    for (const auto& [x, y, color] : pixels)
        EXPECT_EQ(image.pixel(x, y), color) << x << ", " << y;
}

/// Whether the upper edge on the left of a view at (10, 10) goes through colours between black and white.
bool isSmooth(const QImage& image) {
    for (int x = 10; x < 20; ++x)
        if (image.pixel(x, 12) != kWhite && image.pixel(x, 12) != kBlack) return true;
    return false;
}

Data png(const QImage& image) {
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "PNG");
    return {file.begin(), file.end()};
}

/// A row of pixels of those colours.
QImage row(std::initializer_list<QRgb> colors) {
    QImage image(int(colors.size()), 1, QImage::Format_ARGB32_Premultiplied);
    int x = 0;
    for (const QRgb pixel : colors)
        image.setPixel(x++, 0, pixel);
    return image;
}

CGDrawing::LinearGradient redToBlack(CGPoint start, CGPoint end, unsigned options = 0) {
    return {CGGradientCreateWithColorComponents({1, 0, 0, 1, 0, 0, 0, 1}), start, end, options};
}

TEST(ViewPainter, FillsExactlyTheFrame) {
    for (const auto& [scale, pixels] : {std::pair(1.0, QRect(10, 20, 5, 4)), std::pair(1.25, QRect(13, 25, 6, 5)),
                                        std::pair(1.5, QRect(15, 30, 8, 6)), std::pair(2.0, QRect(20, 40, 10, 8))}) {
        const QImage image = painted(view({{10, 20}, {5, 4}}, {.backgroundColor = red}), scale);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ASSERT_EQ(image.pixel(x, y), pixels.contains(x, y) ? kRed : kWhite)
                    << x << ", " << y << " at " << scale;
    }
}

TEST(ViewPainter, KnowsOfAViewWhetherAnythingIsSeen) {
    const CGRect frame{{10, 10}, {20, 20}};
    EXPECT_FALSE(ViewPainter::paints(view(frame, {}, {view(frame)})));
    CALayer filled;
    filled.backgroundColor = red;
    CALayer bordered;
    bordered.borderWidth = 1;
    CALayer shadowed;
    shadowed.shadowOpacity = 1;
    for (const ViewSnapshot& seen : {view(frame, filled), view(frame, bordered), view(frame, shadowed),
                                     pictured(frame, {}, {1, 1}, {}), drawn(frame, {})})
        EXPECT_TRUE(ViewPainter::paints(view(frame, {}, {seen})));
}

TEST(ViewPainter, PaintsSubviewsInTheirParentsCoordinatesAndBeyondItsBounds) {
    const QImage image = painted(
        view({{10, 10}, {10, 10}}, {.backgroundColor = red}, {view({{5, 5}, {10, 2}}, {.backgroundColor = blue})}));
    expectPixels(image, {{15, 15, kBlue}, {24, 16, kBlue}, {25, 16, kWhite}, {14, 15, kRed}});
}

TEST(ViewPainter, LeavesNoSeamBetweenViewsThatAdjoinWithinAPixel) {
    ViewSnapshot strip = view({{0, 0}, {40, 4}}, {.backgroundColor = black});
    for (int i = 0; i < 7; ++i)
        strip.subviews.push_back(view({{i * 40 / 7.0, 0}, {40 / 7.0, 4}}, {.backgroundColor = red}));
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage image = painted(strip, scale);
        for (int x = 0; x < image.width(); ++x)
            EXPECT_EQ(image.pixel(x, 1), kRed) << x << " at " << scale;
    }
}

TEST(ViewPainter, PaintsTheBorderWithinTheBoundsAndAboveTheSubviews) {
    const QImage image =
        painted(view({{10, 10}, {10, 10}}, {.backgroundColor = nullptr, .borderWidth = 2, .borderColor = blue},
                     {view({{0, 0}, {10, 10}}, {.backgroundColor = red})}));
    for (int at = 0; at < 10; ++at) {
        const QRgb expected = at < 2 || at >= 8 ? kBlue : kRed;
        EXPECT_EQ(image.pixel(10 + at, 15), expected) << at;
        EXPECT_EQ(image.pixel(15, 10 + at), expected) << at;
    }
    expectPixels(image, {{9, 15, kWhite}, {20, 15, kWhite}});
}

TEST(ViewPainter, PaintsABorderOfHalfAPointAsAWholePixelOrAsHalfTheColour) {
    const ViewSnapshot framed = view({{10, 10}, {10, 10}}, {.backgroundColor = nullptr, .borderWidth = 0.5});
    const QImage once = painted(framed);
    EXPECT_TRUE(isNearly(once.pixel(10, 15), kGrey));
    EXPECT_TRUE(isNearly(once.pixel(15, 19), kGrey));
    EXPECT_EQ(once.pixel(11, 15), kWhite);
    const QImage twice = painted(framed, 2);
    expectPixels(twice, {{20, 30, kBlack}, {39, 30, kBlack}, {21, 30, kWhite}});
}

TEST(ViewPainter, RoundsTheCornersSmoothly) {
    const QImage image = painted(view({{10, 10}, {20, 20}}, {.backgroundColor = black, .cornerRadius = 10}));
    expectPixels(image, {{10, 10, kWhite}, {20, 20, kBlack}, {11, 20, kBlack}});
    EXPECT_TRUE(isSmooth(image));
}

TEST(ViewPainter, TakesNoMoreOfACornerThanHalfTheSide) {
    const QImage image = painted(view({{10, 10}, {20, 4}}, {.backgroundColor = black, .cornerRadius = 100}));
    expectPixels(image, {{20, 10, kBlack}, {20, 13, kBlack}});
}

TEST(ViewPainter, CutsOffContentAtTheRoundedRectangleOnlyWhenAskedTo) {
    ViewSnapshot clip =
        view({{10, 10}, {20, 20}}, {.backgroundColor = nullptr, .cornerRadius = 10, .masksToBounds = true},
             {view({{-5, -5}, {40, 40}}, {.backgroundColor = black})});
    const QImage cut = painted(clip);
    expectPixels(cut, {{10, 10, kWhite}, {9, 20, kWhite}, {20, 20, kBlack}});
    EXPECT_TRUE(isSmooth(cut));
    clip.layer.masksToBounds = false;
    EXPECT_EQ(painted(clip).pixel(9, 20), kBlack);
}

TEST(ViewPainter, DoesNotCutOffWhatComesAfterAClippedView) {
    const QImage image = painted(view({{0, 0}, {40, 40}}, {},
                                      {view({{0, 0}, {5, 5}}, {.backgroundColor = nullptr, .masksToBounds = true}),
                                       view({{20, 20}, {5, 5}}, {.backgroundColor = red})}));
    EXPECT_EQ(image.pixel(22, 22), kRed);
}

TEST(ViewPainter, StretchesAnImageOverTheBounds) {
    const QImage image = painted(pictured({{10, 10}, {20, 10}}, {}, {2, 1}, png(row({kRed, kBlue}))));
    expectPixels(image, {{10, 10, kRed}, {29, 19, kBlue}, {9, 15, kWhite}, {30, 15, kWhite}});
}

TEST(ViewPainter, UsesTheImageOfTheScreensResolution) {
    const ViewSnapshot picture = pictured({{10, 10}, {4, 4}}, {}, {1, 1}, png(row({kRed})), png(row({kBlue, kBlue})));
    EXPECT_EQ(painted(picture).pixel(12, 12), kRed);
    EXPECT_EQ(painted(picture, 2).pixel(24, 24), kBlue);
}

TEST(ViewPainter, PaintsNothingForAnImageThatCannotBeDecoded) {
    const QImage image = painted(pictured({{10, 10}, {4, 4}}, {.backgroundColor = red}, {1, 1}, {1, 2, 3}));
    EXPECT_EQ(image.pixel(12, 12), kRed);
}

TEST(ViewPainter, RunsAGradientFromOneEndToTheOtherAlikeInEveryRow) {
    const QImage image = painted(drawn({{10, 10}, {20, 5}}, {redToBlack({0, 0}, {20, 0})}));
    for (int x = 0; x < 20; ++x) {
        const int expected = qRound(255 * (1 - (x + 0.5) / 20));
        for (int y = 10; y < 15; ++y)
            EXPECT_TRUE(isNearly(image.pixel(10 + x, y), qRgb(expected, 0, 0))) << x << ", " << y;
    }
    expectPixels(image, {{9, 12, kWhite}, {30, 12, kWhite}, {20, 15, kWhite}});
}

TEST(ViewPainter, GoesOnBeyondTheEndsOfAGradientOnlyWhenAskedTo) {
    for (unsigned options = 0; options < 4; ++options) {
        SCOPED_TRACE(options);
        const QImage image = painted(drawn({{0, 0}, {40, 5}}, {redToBlack({10, 0}, {30, 0}, options)}));
        expectPixels(image, {{9, 2, options & 1 ? kRed : kWhite}, {30, 2, options & 2 ? kBlack : kWhite}});
    }
}

TEST(ViewPainter, StretchesADrawingFromTheSizeItWasDrawnIn) {
    ViewSnapshot bar =
        drawn({{0, 0}, {20, 5}}, {CGDrawing::Clip{{{0, 0}, {10, 5}}}, redToBlack({0, 0}, {0.001, 0}, 3)});
    bar.frame.size = {40, 10};
    const QImage image = painted(bar);
    expectPixels(image, {{19, 9, kBlack}, {20, 9, kWhite}, {19, 10, kWhite}});
}

TEST(ViewPainter, RestoresOnlyWhatTheDrawingHasSaved) {
    const ViewSnapshot bar = drawn({{0, 0}, {40, 10}}, {CGDrawing::SaveState{}, CGDrawing::Clip{{{0, 0}, {5, 10}}},
                                                        CGDrawing::RestoreState{}, CGDrawing::RestoreState{},
                                                        redToBlack({-2, 0}, {-1, 0}, 3), CGDrawing::SaveState{}});
    const QImage image =
        painted(view({{0, 0}, {40, 40}}, {}, {bar, view({{0, 20}, {40, 5}}, {.backgroundColor = red})}));
    EXPECT_EQ(image.pixel(30, 5), kBlack);
    EXPECT_EQ(image.pixel(30, 10), kWhite) << "a drawing ends where its view does";
    EXPECT_EQ(image.pixel(30, 22), kRed);
}

TEST(ViewPainter, CastsAShadowOnAllSidesThatFadesOut) {
    const QImage image = painted(view(
        {{15, 15}, {10, 10}}, {.backgroundColor = red, .shadowOffset = {0, 0}, .shadowRadius = 1, .shadowOpacity = 1}));
    EXPECT_EQ(image.pixel(15, 15), kRed);
    for (int out = 1; out <= 3; ++out) {
        const QRgb left = image.pixel(15 - out, 20);
        EXPECT_EQ(image.pixel(24 + out, 20), left);
        EXPECT_EQ(image.pixel(20, 15 - out), left);
        EXPECT_EQ(image.pixel(20, 24 + out), left);
        EXPECT_LT(qRed(left), 255);
        EXPECT_LT(qRed(left), qRed(image.pixel(14 - out, 20)));
    }
    EXPECT_EQ(image.pixel(10, 20), kWhite);
    // Half a pixel beyond the edge, a Gaussian of deviation 1 has 0.31 left.
    EXPECT_NEAR(qRed(image.pixel(14, 20)), 255 * (1 - 0.31), 4);
}

TEST(ViewPainter, CastsTheShadowOfARoundViewThatLiesBetweenPixelsEvenly) {
    const CALayer layer{
        .backgroundColor = red, .cornerRadius = 7, .shadowOffset = {0, 0}, .shadowRadius = 0.5, .shadowOpacity = 1};
    const QImage image = painted(view({{10.5, 12.5}, {14, 14}}, layer)); // its middle is that of the pixel (17, 19)
    for (int out = 6; out < 12; ++out) {
        const QRgb left = image.pixel(17 - out, 19);
        EXPECT_TRUE(isNearly(image.pixel(17 + out, 19), left)) << out;
        EXPECT_TRUE(isNearly(image.pixel(17, 19 - out), left)) << out;
        EXPECT_TRUE(isNearly(image.pixel(17, 19 + out), left)) << out;
    }
    EXPECT_NE(image.pixel(17 - 8, 19), kWhite);
}

TEST(ViewPainter, MovesTheShadowAndWeakensIt) {
    CALayer layer{.backgroundColor = nullptr, .shadowOffset = {10, 0}, .shadowRadius = 0, .shadowOpacity = 0.5};
    const QImage image = painted(view({{10, 10}, {10, 10}}, layer));
    EXPECT_EQ(image.pixel(19, 15), kWhite);
    EXPECT_TRUE(isNearly(image.pixel(20, 15), kGrey));
    EXPECT_TRUE(isNearly(image.pixel(29, 15), kGrey));
    EXPECT_EQ(image.pixel(30, 15), kWhite);
    layer.shadowOpacity = 0;
    EXPECT_EQ(painted(view({{10, 10}, {10, 10}}, layer)).pixel(25, 15), kWhite);
}

TEST(ViewChange, IsEmptyWhenOnlyColourObjectsDiffer) {
    const ViewSnapshot before =
        view({{0, 0}, {40, 40}}, {.backgroundColor = red}, {view({{5, 5}, {10, 10}}, {.backgroundColor = blue})});
    ViewSnapshot after = before;
    after.subviews[0].layer.backgroundColor = UIColor::colorWithRed(0, 0, 1, 1);
    EXPECT_NE(before, after);
    EXPECT_TRUE(changedArea(before, after).isEmpty());
}

TEST(ViewChange, IsTheOldAndTheNewPlaceOfWhatHasMovedWithItsShadow) {
    const CALayer shadow{.backgroundColor = nullptr, .shadowOffset = {0, 0}, .shadowRadius = 1, .shadowOpacity = 1};
    const ViewSnapshot before =
        view({{100, 100}, {400, 400}}, {}, {view({{0, 0}, {10, 10}}), view({{50, 50}, {10, 10}}, shadow)});
    ViewSnapshot after = before;
    after.subviews[1].frame.origin.x = 60;
    EXPECT_EQ(changedArea(before, after), QRectF(146, 146, 28, 18));
}

TEST(ViewChange, IsTheWholeViewWhenSubviewsAreAdded) {
    const ViewSnapshot before = view({{0, 0}, {40, 40}});
    ViewSnapshot after = before;
    after.subviews = {view({{30, 30}, {20, 20}})};
    EXPECT_EQ(changedArea(before, after), QRectF(0, 0, 50, 50));
    after.layer.masksToBounds = true;
    EXPECT_EQ(changedArea(before, after), QRectF(0, 0, 40, 40));
}

} // namespace
