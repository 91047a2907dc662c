// App Views whose plug-ins draw well and badly, on a screen that goes on.

#include "link/PreferenceKeys.h"
#include "tests/lists/PluginFolder.h"
#include "tests/lockscreen/live/OpenFace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace lumora;
using platform::Dictionary;
using platform::List;
using tests::comes;
using Fault = ViewStore::Fault;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true; // without limits of memory
#else
constexpr bool kSanitized = false;
#endif

/// How many plug-ins have a process to draw in.
int children() {
    int count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        for (std::string id; list >> id;) {
            std::string name;
            std::ifstream("/proc/" + id + "/comm") >> name;
            if (name == "lumora-appview") ++count;
        }
    }
    return count;
}

/// A screen with one App View, of the test plug-in, which is asked to do what its name says or its settings.
struct Views : testing::Test {
    void SetUp() override {
        ASSERT_TRUE(comes([] { return children() == 0; })) << "of an earlier test";
    }
    void open(const std::string& kind, const Dictionary& others = {{kAutoUnlockWidgetPasscode, "1234"}}) {
        plugins.add(kind + "-1.bundle", "DrawingPlugin");
        view = "test." + kind + "-1";
        screen.live().take(Installation::readNow());
        settings = {{kTweakEnabled, true}, {kAppViewsEnabled, List{view}}};
        for (const auto& [key, value] : others)
            settings.set(key, value);
        screen.model().setSettings(settings, {});
        screen.model().show(Surface::appView);
    }
    void set(const std::string& key, const platform::Value& value) {
        settings.set(key, value);
        screen.model().setSettings(settings, {key});
    }
    [[nodiscard]] ViewStore::Drawn drawn() { return screen.live().views().drawn(QString::fromStdString(view)); }
    bool becomes(Fault fault) {
        return comes([&] { return screen.live().views().isComplete() && drawn().fault == fault; });
    }
    /// A text or a button of the card that is seen.
    QQuickItem* item(const QString& words) {
        for (auto* one : screen.face().findChildren<QQuickItem*>())
            if (one->isVisible() && one->property("text").toString() == words) return one;
        return nullptr;
    }
    /// The card's corner as it is on the screen, once the card no longer slides.
    QColor corner() {
        EXPECT_TRUE(comes([&] { return screen.face().findChild<QQuickItem*>("V")->x() == 0; })) << "it slides in";
        const double ratio = screen.live().options().ratio;
        return screen.picture().pixelColor(int(340 * ratio), int(690 * ratio));
    }

    tests::PluginFolder plugins;
    tests::OpenFace screen;
    std::string view;
    Dictionary settings;
};

TEST_F(Views, ShowWhatTheirPlugInsDraw) {
    open("each", {{"test.each-1.word", "Lakeside"}, {kAutoUnlockWidgetPasscode, "1234"}});
    ASSERT_TRUE(comes([&] { return !drawn().image.isNull(); }));
    EXPECT_EQ(drawn().image.pixelColor(drawn().image.width() - 2, drawn().image.height() - 2), QColor(Qt::red));
    EXPECT_TRUE(comes([&] { return item("Lakeside"); }));
    EXPECT_EQ(corner(), QColor(Qt::red));

    set("test.each-1.word", "Harbour");
    EXPECT_TRUE(comes([&] { return item("Harbour"); }));
}

TEST_F(Views, AreNotDrawnAnewForWhatIsNoneOfTheirs) {
    open("each");
    ASSERT_TRUE(comes([&] { return !drawn().image.isNull(); }));
    const auto before = drawn().image.cacheKey();
    set(kLSDateSubtitle, "other words");
    set("test.each-2.word", "of another");
    EXPECT_TRUE(screen.live().views().isComplete());
    EXPECT_EQ(drawn().image.cacheKey(), before);
}

TEST_F(Views, HaveAProcessOnlyWhileTheyAreSeen) {
    open("each");
    ASSERT_TRUE(comes([&] { return !drawn().image.isNull(); }));
    EXPECT_EQ(children(), 1);
    screen.model().show(Surface::notices);
    EXPECT_TRUE(comes([] { return children() == 0; }));
    EXPECT_FALSE(drawn().image.isNull()) << "what it has drawn stays";
    screen.model().show(Surface::appView);
    EXPECT_TRUE(comes([] { return children() == 1; }));
    screen.live().setVisible(false);
    EXPECT_TRUE(comes([] { return children() == 0; }));
}

TEST_F(Views, HavePicturesOfTheirBundlesAlsoWhenTheyAreLate) {
    const auto bundle = plugins.path() / "each-1.bundle";
    std::filesystem::create_directories(bundle);
    plugins.write(bundle / "icon.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9">)"
                                       R"(<rect width="9" height="9" fill="#00f"/></svg>)");
    open("each");
    EXPECT_TRUE(comes([&] {
        const QImage image = drawn().image;
        return image.valid(12, 27) && image.pixelColor(12, 27) == QColor(Qt::blue);
    }));
}

TEST_F(Views, AreDrawnAsLongAsOneShowsThem) {
    plugins.add("each-1.bundle", "DrawingPlugin");
    ViewStore store;
    store.setViews(Installation::readNow()->installed().views);
    const auto isDrawn = [&](int width) {
        return comes([&] { return store.isComplete() && store.drawn("test.each-1").image.width() == width; });
    };
    const int one = 0;
    const int other = 0;
    store.show(&one, "test.each-1", {QSizeF(100, 50)});
    store.show(&other, "test.each-1", {QSizeF(200, 100)});
    EXPECT_TRUE(isDrawn(200));
    store.hide(&other);
    EXPECT_TRUE(isDrawn(100));
    EXPECT_EQ(children(), 1);
    store.hide(&one);
    EXPECT_TRUE(comes([] { return children() == 0; }));
}

TEST_F(Views, ThatAreSecureAreNotEvenDrawnOnALockedPhone) {
    open("each", {});
    EXPECT_TRUE(comes([&] { return item("Needs the passcode"); }));
    EXPECT_EQ(children(), 0);
    EXPECT_TRUE(drawn().image.isNull());
    set(kAutoUnlockWidgetPasscode, "1234");
    EXPECT_TRUE(comes([&] { return !drawn().image.isNull(); }));
    EXPECT_FALSE(item("Needs the passcode"));
}

TEST_F(Views, ThatCrashSaySoAndAreRestarted) {
    open("fragile", {{"test.fragile-1.word", "Lakeside"}, {kAutoUnlockWidgetPasscode, "1234"}});
    ASSERT_TRUE(comes([&] { return !drawn().image.isNull() && item("Lakeside"); }));
    set("test.fragile-1.does", "crashing");
    ASSERT_TRUE(becomes(Fault::stopped));
    EXPECT_FALSE(drawn().image.isNull()) << "the last drawing stays";
    EXPECT_TRUE(comes([&] { return item("stopped") && item("Restart"); }));
    EXPECT_FALSE(item("Lakeside")) << "a caption of what is no more";
    EXPECT_EQ(children(), 0);
    // Nothing tries it again but a person.
    set("test.fragile-1.does", "each");
    EXPECT_TRUE(screen.live().views().isComplete());
    EXPECT_EQ(drawn().fault, Fault::stopped);
    const QColor dimmed = corner();
    EXPECT_TRUE(dimmed != QColor(Qt::red) && dimmed.red() > dimmed.green() + 20);
    auto* card = item("Restart")->parentItem();
    card->forceActiveFocus();
    const QPointF middle = card->mapToScene(QPointF(card->width() / 2, card->height() / 2));
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent click(type, middle, middle, Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(card->window(), &click);
    }
    EXPECT_TRUE(comes([&] { return drawn().fault == Fault::none && !item("stopped"); }));
    EXPECT_EQ(screen.model().behaviour().state().surface, Surface::appView) << "the tap was the button's";
    EXPECT_FALSE(card->hasActiveFocus()) << "keys are for the lock screen again";
}

TEST_F(Views, LeaveTheScreenAsFastAsItIsWhileTheyHang) {
    open("sleeping");
    ASSERT_TRUE(comes([] { return children() == 1; }));
    for (const char* words : {"one", "two", "three", "four", "five"}) {
        const int before = screen.frames();
        set(kLSDateSubtitle, words);
        ASSERT_TRUE(comes([&] { return screen.frames() > before && screen.subtitle() == words; }));
    }
    EXPECT_EQ(drawn().fault, Fault::none) << "it has not been given up yet";
}

TEST_F(Views, OfBadPlugInsHarmNothing) {
    for (const auto& [kind, fault] :
         {std::pair("crashing", Fault::stopped), std::pair("looping", Fault::stopped),
          std::pair("garbling", Fault::stopped), std::pair("hungry", kSanitized ? Fault::none : Fault::stopped),
          std::pair("many", Fault::tooMuch), std::pair("large", Fault::tooMuch), std::pair("flooding", Fault::none),
          std::pair("odd", Fault::none)}) {
        open(kind);
        EXPECT_TRUE(becomes(fault)) << kind;
        const QString words = fault == Fault::stopped ? "stopped" : "draws too much";
        EXPECT_TRUE(fault == Fault::none || comes([&] { return item(words); })) << kind;
        EXPECT_EQ(item("Restart") != nullptr, fault == Fault::stopped) << kind;
        screen.model().show(Surface::notices);
        EXPECT_TRUE(comes([] { return children() == 0; })) << kind;
    }
}

} // namespace
