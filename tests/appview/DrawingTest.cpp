#include "appview/Drawing.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace lumora;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedArchiver;
using platform::Value;
using testing::HasSubstr;
using Kind = DrawingStep::Kind;

const std::vector<DrawingStep> kOfEachKind{{Kind::color, {0, 1, 0.5, 0, 1}, ""},
                                           {Kind::gradient, {0, 0, 1, 0, 0, 0, 1, 9, 9, 4, 0, 0, 0, 0.5}, ""},
                                           {Kind::rectangle, {-1, 2, 3, 4, 5}, ""},
                                           {Kind::line, {0, 0, 5, 5, 1}, ""},
                                           {Kind::arc, {5, 5, 4, -90, 360, 0}, ""},
                                           {Kind::path, {2, 0, 1, 1, 1, 5, 5, 2, 1, 2, 3, 4, 5, 6, 3}, ""},
                                           {Kind::text, {0, 20, 55.5, 14, 600, 2}, "Güte"},
                                           {Kind::picture, {0, 0, 29}, "icon"},
                                           {Kind::clip, {0, 0, 0, 0, 0}, ""},
                                           {Kind::caption, {}, "Lakeside"}};

/// What is wrong with a drawing of these steps; empty for nothing.
std::string faultOf(const Value& steps, const Value& again = 0.0) {
    const auto read =
        readDrawing(*NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"again", again}, {"steps", steps}}));
    return read ? "" : read.error();
}

TEST(Drawings, AreReadAsTheyAreWritten) {
    const Drawing drawing{kOfEachKind, 30};
    const auto archive = writeDrawing(drawing);
    ASSERT_TRUE(archive) << archive.error();
    const auto read = readDrawing(archive.value());
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read.value(), drawing);
}

TEST(Drawings, AreRefusedWithAStepThatIsNone) {
    EXPECT_EQ(faultOf(List{Value(List{"line", 0.0, 0, 1, 1, 1})}), "");
    const double infinite = std::numeric_limits<double>::infinity();
    for (const Value& step : std::vector<Value>{List{"line", 0.0, 0.0, 1.0, 1.0},
                                                List{"line", 0.0, 0.0, 1.0, 1.0, 1.0, 1.0},
                                                List{"line", 0.0, 0.0, infinite, 1.0, 1.0},
                                                List{"line", 0.0, 0.0, 1.0, 1.0, -1.0},
                                                List{"line", 0.0, 0.0, 1.0, 1e5, 1.0},
                                                List{"line", 0.0, 0.0, 1.0, "1", 1.0},
                                                List{"color", 5, 0, 0, 0, 1},
                                                List{"color", 0, 1.5, 0, 0, 1},
                                                List{"path", 1.0, 1, 0, 0},
                                                List{"path", 1.0, 0, 0},
                                                List{"path", 1.0, 0, 0, 0, 4},
                                                List{"path"},
                                                List{"text", 0, 0, 5, 14, 50, 0, "thin"},
                                                List{"text", 0, 0, 5, 14, 400, 3, "askew"},
                                                List{"text", 0, 0, 5, 14, 400, 0},
                                                List{"caption", std::string(5000, 'x')},
                                                List{"picture", 0, 0, 5, "../secret"},
                                                List{"picture", 0, 0, 5, ".hidden"},
                                                List{"dance"},
                                                List{},
                                                Value("line"),
                                                Value()})
        EXPECT_EQ(faultOf(List{step}), "a step is none") << description(step);
}

TEST(Drawings, AreRefusedBeyondTheLimits) {
    const List line{"line", 0.0, 0.0, 1.0, 1.0, 1.0};
    EXPECT_EQ(faultOf(List(DrawingLimits::steps, line)), "");
    EXPECT_THAT(faultOf(List(DrawingLimits::steps + 1, line)), HasSubstr("too many steps"));
    EXPECT_THAT(faultOf(List{}, -1.0), HasSubstr("waits"));
    EXPECT_THAT(faultOf(List{}, std::numeric_limits<double>::quiet_NaN()), HasSubstr("waits"));
    EXPECT_THAT(faultOf(List{}, "soon"), HasSubstr("waits"));
    EXPECT_THAT(faultOf(Value("none")), HasSubstr("no steps"));
    EXPECT_FALSE(readDrawing({}));
    EXPECT_FALSE(readDrawing(platform::Data(DrawingLimits::bytes + 1, 'x')));
    // A few bytes that stand for many.
    List path{"path", 1};
    for (int i = 0; i < 1000; ++i)
        path.insert(path.end(), {0, 0, 0});
    EXPECT_THAT(faultOf(List(400, Value(path))), HasSubstr("too large"));
    path.resize(1);
    path.push_back(1);
    path.insert(path.end(), 3 * DrawingLimits::pathParts, 0);
    EXPECT_EQ(faultOf(List{Value(path)}), "");
    path.insert(path.end(), 3, 0);
    EXPECT_EQ(faultOf(List{Value(path)}), "a step is none");
}

} // namespace
