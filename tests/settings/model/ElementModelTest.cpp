#include "settings/model/ElementModel.h"
#include "settings/app/DrawingLimit.h"
#include "settings/model/PageModel.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <tuple>
#include <utility>

namespace {

using namespace platform;
using namespace settings;
using ::testing::ElementsAre;

/// A test that keeps the events of elements and answers when it likes.
struct ElementInHand : ::testing::Test {
    void answer() {
        const auto taken = std::move(underWay.front());
        underWay.erase(underWay.begin());
        taken();
    }
    /// Where the last touch was, which began and ended there.
    [[nodiscard]] CGPoint place() const {
        EXPECT_GE(events.size(), 2u);
        auto point = std::get<Touched>(events.back()).points.at(0);
        EXPECT_EQ(point.phase, UITouchPhase::ended);
        point.phase = UITouchPhase::began;
        EXPECT_EQ(events[events.size() - 2], Event(Touched{{point}}));
        return point.location;
    }

    std::vector<Event> events;
    std::vector<std::function<void()>> underWay;
    SendEvent send = [this](Event event, std::function<void()> taken) {
        events.push_back(std::move(event));
        if (taken) underWay.push_back(std::move(taken));
    };
};

ElementSnapshot field(double hue, double saturation) {
    return {
        "Colour", CGRectMake(20, 95, 350, 500), {{"Hue", hue, false, false}, {"Saturation", saturation, true, true}}};
}

ElementSnapshot bar(double brightness) {
    return {"Brightness", CGRectMake(20, 700, 350, 30), {{"Brightness", brightness, false, true}}};
}

using ElementsOfAPage = ElementInHand;
using TextOfAPage = ElementInHand;

AxisModel& axis(const ElementModel& element, int index) {
    return *element.findChildren<AxisModel*>(Qt::FindDirectChildrenOnly).at(index);
}

TEST_F(ElementInHand, PressesInTheMiddle) {
    ElementModel button(send, {"Theme", CGRectMake(10, 20, 30, 60), {}}, nullptr);
    button.press();
    EXPECT_EQ(place(), (CGPoint{25, 50}));
    EXPECT_FALSE(button.movesAcross());
    EXPECT_FALSE(button.movesDown());
}

TEST_F(ElementInHand, TouchesWhereTheMarkComesToStand) {
    ElementModel element(send, field(0.5, 0.5), nullptr);
    element.move(0.01, 0);
    EXPECT_DOUBLE_EQ(place().x, 20 + 0.51 * 350);
    EXPECT_DOUBLE_EQ(place().y, 95 + 0.5 * 500);
    element.move(0, 0.1);
    EXPECT_DOUBLE_EQ(place().x, 20 + 0.51 * 350) << "from where it was put last";
    EXPECT_DOUBLE_EQ(place().y, 95 + 0.6 * 500);
    EXPECT_DOUBLE_EQ(element.valueOf(1), 0.4) << "which is 1 at the top";
}

TEST_F(ElementInHand, StaysWithinTheFrameAtEveryEdge) {
    for (const auto& [across, down, edge] : {std::tuple(1.0, 0.0, CGPoint{369.5, 345}),
                                             {-1.0, 0.0, {20, 345}},
                                             {0.0, 1.0, {195, 594.5}},
                                             {0.0, -1.0, {195, 95}}}) {
        events.clear();
        ElementModel element(send, field(0.5, 0.5), nullptr);
        element.move(across, down);
        EXPECT_DOUBLE_EQ(place().x, edge.x);
        EXPECT_DOUBLE_EQ(place().y, edge.y);
        EXPECT_TRUE(CGRectContainsPoint(field(0, 0).frame, place()));
        element.move(across / 100, down / 100);
        EXPECT_EQ(events.size(), 2u) << "it cannot go on";
    }
}

TEST_F(ElementInHand, TouchesNothingAtAnEndThatATouchCannotReachAndTurnsBackFromThere) {
    ElementModel dark(send, bar(0), nullptr);
    dark.move(0.01, 0);
    axis(dark, 0).set(0);
    ElementModel black(send, field(0, 0), nullptr);
    black.move(0, 0.01);
    EXPECT_TRUE(events.empty());
    dark.move(-0.01, 0);
    EXPECT_DOUBLE_EQ(place().x, 20 + 0.99 * 350);
    EXPECT_NEAR(dark.valueOf(0), 0.01, 1e-12);
}

TEST_F(ElementInHand, MovesAlongTheAxesThatItHas) {
    ElementModel element(send, bar(0.5), nullptr);
    EXPECT_TRUE(element.movesAcross());
    EXPECT_FALSE(element.movesDown());
    element.move(0, 0.1);
    EXPECT_TRUE(events.empty());
    element.move(0.1, 0.1);
    EXPECT_EQ(place(), (CGPoint{20 + 0.6 * 350, 715}));
}

TEST_F(ElementInHand, SetsAValueByTheTouchThatMeansIt) {
    ElementModel element(send, field(0.5, 0.5), nullptr);
    axis(element, 0).set(0.25);
    EXPECT_EQ(place(), (CGPoint{20 + 0.25 * 350, 95 + 0.5 * 500}));
    axis(element, 1).set(1);
    EXPECT_EQ(place(), (CGPoint{20 + 0.25 * 350, 95}));
    axis(element, 0).set(2);
    EXPECT_DOUBLE_EQ(place().x, 369.5);
    EXPECT_DOUBLE_EQ(axis(element, 0).value(), 1 - 0.5 / 350);
    axis(element, 1).set(-3);
    EXPECT_DOUBLE_EQ(place().y, 594.5);
}

TEST_F(ElementInHand, KeepsTheMarkUntilTheViewHasAnsweredEveryTouch) {
    ElementModel element(send, bar(0.5), nullptr);
    element.move(0.1, 0);
    element.move(0.1, 0);
    element.read(bar(0.4));
    answer();
    EXPECT_DOUBLE_EQ(element.valueOf(0), 0.3);
    element.read(bar(0.9)); // the view has its own mind
    answer();
    EXPECT_DOUBLE_EQ(element.valueOf(0), 0.9);
    element.read(bar(0.2));
    EXPECT_DOUBLE_EQ(element.valueOf(0), 0.2);
}

TEST_F(ElementInHand, IgnoresAnAnswerThatComesAfterItIsGone) {
    auto element = std::make_unique<ElementModel>(send, bar(0.5), nullptr);
    element->move(0.1, 0);
    element.reset();
    answer();
    EXPECT_TRUE(underWay.empty());
}

std::shared_ptr<PageSnapshot> pageOf(std::vector<ElementSnapshot> elements) {
    auto page = std::make_shared<PageSnapshot>();
    page->id = 1;
    page->hostsView = true;
    page->elements = std::move(elements);
    return page;
}

TEST_F(ElementsOfAPage, StandInTheOrderInWhichOneReads) {
    const PageModel page(send,
                         pageOf({bar(1),
                                 {"Right", CGRectMake(30, 740, 10, 10), {}},
                                 {"Left", CGRectMake(0, 740, 10, 10), {}},
                                 field(0, 0)}),
                         nullptr);
    std::vector<std::string> labels;
    for (const ElementModel* element : page.elements())
        labels.push_back(element->label().toStdString());
    EXPECT_THAT(labels, ElementsAre("Colour", "Brightness", "Left", "Right"));
}

TEST_F(ElementsOfAPage, LiveOnWhileOnlyFramesAndValuesChange) {
    PageModel page(send, pageOf({field(0, 0), bar(1)}), nullptr);
    const QList<ElementModel*> before = page.elements();
    ElementSnapshot moved = field(0.25, 0.75);
    moved.frame.size.width = 700;
    page.read(pageOf({moved, bar(0.5)}));
    EXPECT_EQ(page.elements(), before);
    EXPECT_EQ(before[0]->valueOf(0), 0.25);
    EXPECT_EQ(before[0]->valueOf(1), 0.75);
    EXPECT_EQ(before[0]->frame().width(), 700);
    EXPECT_EQ(before[1]->valueOf(0), 0.5);
    page.read(pageOf({field(0, 0)}));
    EXPECT_EQ(page.elements().size(), 1);
}

std::shared_ptr<const TextSnapshot> textOf(std::uint64_t id, const std::string& text) {
    return std::make_shared<const TextSnapshot>(
        TextSnapshot{id, {}, std::make_shared<const std::string>(text), UIFont::systemFontOfSize(15), false});
}

TEST_F(TextOfAPage, LivesOnWhileItIsTheSameText) {
    const auto pageWith = [](std::uint64_t id, const std::string& text) {
        auto page = pageOf({});
        page->text = textOf(id, text);
        return page;
    };
    PageModel page(send, pageWith(1, "One"), nullptr);
    TextModel* const text = page.text();
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 15);
    page.read(pageWith(1, "Two"));
    EXPECT_EQ(page.text(), text);
    EXPECT_EQ(text->text(), "Two");
    page.read(pageWith(2, "Two"));
    EXPECT_NE(page.text(), text);
    page.read(pageOf({}));
    EXPECT_EQ(page.text(), nullptr);
}

TEST_F(TextOfAPage, IsSplitIntoPiecesOfBoundedLengthWithoutLoss) {
    static constexpr qsizetype kLong = 8192;
    const auto pieces = [](const std::string& text) {
        const TextModel model(textOf(1, text), nullptr);
        QStringList all;
        for (int i = 0; i < model.pieceCount(); ++i) {
            all << model.piece(i);
            EXPECT_LE(all.back().toUtf8().size(), kLong);
        }
        EXPECT_EQ(model.piece(-1) + model.piece(model.pieceCount()), "");
        return all;
    };
    EXPECT_EQ(pieces(""), QStringList{""});
    EXPECT_EQ(pieces("one\ntwo\n"), QStringList{"one\ntwo\n"});

    QString lines;
    for (int i = 0; i < 5000; ++i)
        lines += QStringLiteral("Zeile %1: ä\n").arg(i);
    EXPECT_GT(pieces(lines.toStdString()).size(), 5);
    EXPECT_EQ(pieces(lines.toStdString()).join('\n'), lines);
    lines.replace("\n", "\r\n");
    EXPECT_EQ(pieces(lines.toStdString()).join("\r\n"), lines);

    // Lines that are too long for a piece are broken at a space, else between two characters.
    for (const char* part : {"Wörter ", "ä", "–", "😀"}) {
        const QString text = QString(part).repeated(9000);
        const QStringList broken = pieces(text.toStdString());
        EXPECT_EQ(broken.join(""), text);
        EXPECT_TRUE(std::ranges::all_of(broken, [&](const QString& piece) { return piece.endsWith(part); }));
    }
}

TEST(DrawingLimit, ReportsOneThingThatTakesTooLongAndNothingElse) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds quickly(200);
    std::atomic<int> told = 0;
    DrawingLimit limit(std::chrono::milliseconds(0), [&told] { ++told; });
    // Nothing is quick while the machine stands still: then once more.
    for (auto took = Clock::duration::max(); took >= quickly;) {
        told = 0;
        const auto began = Clock::now();
        { const DrawingLimit::Turn quick(limit); }
        took = Clock::now() - began;
    }
    EXPECT_EQ(told, 0);
    const auto began = Clock::now();
    const DrawingLimit::Turn slow(limit);
    ASSERT_TRUE(tests::eventually([&told] { return told > 0; }));
    EXPECT_GE(Clock::now() - began, quickly) << "the first was over in time";
    EXPECT_EQ(told, 1);
}

} // namespace
