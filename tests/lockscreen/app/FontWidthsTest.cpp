#include "lockscreen/face/FontWidths.h"

#include "platform/ui/UIFont.h"
#include "tests/support/TestFonts.h"

#include <QFontMetricsF>

#include <gtest/gtest.h>

#include <tuple>

namespace {

using lumora::FontWidths;

TEST(FontWidths, GrowAsTheSizeDoes) {
    const FontWidths widths;
    for (const char* font : {"Default", "NotInstalled"}) {
        const double small = widths.width("slide to unlock", font, 18);
        EXPECT_GT(small, 0);
        EXPECT_NEAR(widths.width("slide to unlock", font, 36), 2 * small, 1e-9) << font;
        EXPECT_NEAR(widths.width("18:36", font, 150), 2 * widths.width("18:36", font, 75), 1e-9) << font;
    }
    EXPECT_EQ(widths.width("", "Default", 18), 0);
    EXPECT_EQ(widths.width("slide", "Default", 0), 0);
}

TEST(FontWidths, GrowWithTheText) {
    const FontWidths widths;
    EXPECT_GT(widths.width("Friday", "Default", 18), widths.width("Fri", "Default", 18));
    EXPECT_GT(widths.width("18:36", "Default", 87.5), widths.width("18", "Default", 87.5));
}

TEST(FontWidths, AreThoseOfTheFontsThatTheScreenDrawsWith) {
    const FontWidths widths;
    constexpr double size = 87.5;
    EXPECT_NEAR(widths.width("18:36", "Default", size),
                QFontMetricsF(lumora::clockFont(size)).horizontalAdvance(QStringLiteral("18:36")),
                2.5); // the toolkit may put each letter on a whole pixel
    const QString words = QStringLiteral("slide to unlock");
    const double reserved = widths.width(words.toStdString(), "Default", 18);
    for (const auto weight : {QFont::Light, QFont::Normal, QFont::Medium, QFont::DemiBold})
        EXPECT_LE(QFontMetricsF(lumora::textFont(18, weight)).horizontalAdvance(words),
                  reserved + 0.5 * double(words.size()))
            << weight;
}

TEST(FontWidths, KeepWhatWasMeasured) {
    const FontWidths widths;
    for (int size = 10; size < 50; ++size)
        EXPECT_GT(widths.width("18:36", "Default", size), 0);
    EXPECT_EQ(widths.measured(), 1);
    // More than is kept: the first text is measured again, and comes out the same.
    const double before = widths.width("18:36", "Default", 20);
    for (int i = 0; i < 2000; ++i)
        EXPECT_GE(widths.width(std::string(1000, ' ') + std::to_string(i), "Default", 18), 0);
    EXPECT_EQ(widths.measured(), 2001);
    EXPECT_EQ(widths.width("18:36", "Default", 20), before);
    EXPECT_EQ(widths.measured(), 2002);
}

TEST(FontWidths, MeasureTheBeginningOfATextWithoutEnd) {
    const FontWidths widths;
    const std::string beginning(FontWidths::kMostBytes, 'm');
    EXPECT_EQ(widths.width(beginning + std::string(1 << 22, 'm'), "Default", 18),
              widths.width(beginning, "Default", 18));
    std::string many;
    while (many.size() < 2 * FontWidths::kMostBytes)
        many += "é€";
    EXPECT_GT(widths.width(many, "Default", 18), 0);
    EXPECT_GE(widths.width("\xFF\xC3", "Default", 18), 0) << "no text at all";
}

/// In these fonts every letter is half as wide as the font is large.
struct ChosenFonts : testing::Test {
    tests::TestFonts fonts{{"variable", "twins", "dumb"}};
    FontWidths widths;
};

// The look at what is installed is the process's, so these are one test.
TEST_F(ChosenFonts, AreFoundByTheirNamesAndMeasured) {
    std::ignore = platform::UIFont::familyNames();
    EXPECT_TRUE(widths.has("Vary-Regular"));
    EXPECT_TRUE(widths.has("Twin-Regular"));
    EXPECT_FALSE(widths.has("Vary"));
    EXPECT_FALSE(widths.has("Default"));
    EXPECT_FALSE(widths.has(""));
    EXPECT_NEAR(widths.width("18:36", "Vary-Regular", 40), 100, 0.1);
    EXPECT_NEAR(widths.width("18:36", "Vary-Regular", 80), 200, 0.2);
    EXPECT_NEAR(widths.width("Friday", "Twin-Regular", 20), 60, 0.1);
    EXPECT_EQ(widths.width("Friday", "Unknown", 20), widths.width("Friday", "Default", 20));
    EXPECT_EQ(widths.width("金曜日", "Vary-Regular", 20), widths.width("金曜日", "Default", 20))
        << "letters that the font lacks";
}

} // namespace
