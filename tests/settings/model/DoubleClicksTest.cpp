#include "settings/model/DoubleClicks.h"

#include <QCoreApplication>
#include <QMouseEvent>

#include <gtest/gtest.h>

namespace {

/// A window that is clicked at times and places of the test's own.
struct DoubleClicks : ::testing::Test {
    struct Window : QObject {
        bool event(QEvent* event) override {
            presses += event->type() == QEvent::MouseButtonPress ? 1 : 0;
            return true;
        }
        int presses = 0;
    };

    DoubleClicks() { window.installEventFilter(&doubleClicks); }

    /// Whether the window gets to know of the click.
    bool click(quint64 time, QPointF place) {
        const int before = window.presses;
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
            QMouseEvent event(type, place, place, Qt::LeftButton, buttons, Qt::NoModifier);
            event.setTimestamp(time);
            QCoreApplication::sendEvent(&window, &event);
        }
        return window.presses > before;
    }

    static constexpr QPointF kRow{200, 300};
    static constexpr QPointF kOtherRow{200, 350};
    static constexpr QPointF kBack{40, 24};
    Window window;
    settings::DoubleClicks doubleClicks;
};

TEST_F(DoubleClicks, AreHalvedWhereTheFirstHasOpenedAPage) {
    EXPECT_TRUE(click(1000, kRow));
    doubleClicks.noteOpened();
    EXPECT_FALSE(click(1120, kRow));
    EXPECT_FALSE(click(1240, kRow)) << "nor a third one";
    EXPECT_TRUE(click(1900, kRow));
}

TEST_F(DoubleClicks, AreWholeWhereNothingHasOpened) {
    EXPECT_TRUE(click(1000, kRow));
    EXPECT_TRUE(click(1120, kRow)) << "no page has opened";
}

TEST_F(DoubleClicks, HaveOnePlace) {
    EXPECT_TRUE(click(1000, kRow));
    doubleClicks.noteOpened();
    EXPECT_TRUE(click(1300, kBack));
    EXPECT_TRUE(click(2000, kOtherRow));
    doubleClicks.noteOpened();
    EXPECT_TRUE(click(2300, kBack)) << "where the last but one was";
}

} // namespace
