#include "tests/lockscreen/face/Tried.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QSignalSpy>

#include <memory>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr QPointF kEmptyPlace(195, 350);

QVariantMap looked(FaceModel& face, const char* part) {
    return face.looks().value<QObject*>()->property(part).toMap();
}

/// The parts of the look that have been told of.
class Signals {
  public:
    explicit Signals(FaceModel& face) {
        auto* look = face.looks().value<QObject*>();
        const QMetaObject* about = look->metaObject();
        for (int i = about->propertyOffset(); i < about->propertyCount(); ++i) {
            const QMetaProperty property = about->property(i);
            spies_.emplace_back(property.name(), std::make_unique<QSignalSpy>(look, property.notifySignal()));
        }
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& [name, spy] : spies_)
            if (!spy->isEmpty()) names.push_back(name);
        return names;
    }

  private:
    std::vector<std::pair<std::string, std::unique_ptr<QSignalSpy>>> spies_;
};

/// The rows of a list that have been told of.
std::vector<int> rowsOf(const QSignalSpy& changed) {
    std::vector<int> rows;
    for (const QList<QVariant>& one : changed)
        rows.push_back(one.first().toModelIndex().row());
    return rows;
}

} // namespace

TEST(FaceModel, TellsOnlyOfThePartsThatDiffer) {
    Tried tried;
    const Signals told(tried.face);
    tried.change(kAppIconSize, 70);
    EXPECT_THAT(told.names(), IsEmpty()) << "that is the stock";
    tried.change(kLSDateSubtitleHidden, true);
    EXPECT_THAT(told.names(), ElementsAre("subtitle"));
}

TEST(FaceModel, TellsOnlyOfTheRowsThatDifferAndResetsNoList) {
    Tried tried;
    QSignalSpy changed(tried.face.icons(), &QAbstractItemModel::dataChanged);
    QSignalSpy reset(tried.face.icons(), &QAbstractItemModel::modelReset);
    QSignalSpy removed(tried.face.icons(), &QAbstractItemModel::rowsRemoved);
    Device phone = sampleDevice();
    phone.badges[kWeather] = 7;
    tried.face.setPhone(phone);
    EXPECT_THAT(rowsOf(changed), ElementsAre(1));
    tried.change(kAppsEnabled, List{kPhone});
    EXPECT_EQ(removed.count(), 1);
    tried.change(kAppsEnabled, List{kPhone, kMessages});
    EXPECT_EQ(tried.face.icons()->rowCount(), 2);
    EXPECT_EQ(reset.count(), 0);
}

TEST(FaceModel, KeepsTheLooksOfWhatIsNotInView) {
    Tried tried;
    tried.face.show(Surface::passcode);
    EXPECT_TRUE(looked(tried.face, "clock")["visible"].toBool()) << "it fades with its stage";
    EXPECT_FALSE(tried.look().clock.visible);
    const QVariantMap shown = looked(tried.face, "passcode");
    tried.face.act("key Escape");
    QVariantMap kept = looked(tried.face, "passcode");
    EXPECT_FALSE(kept["visible"].toBool());
    kept["visible"] = true;
    EXPECT_EQ(kept, shown);
}

TEST(FaceModel, HasLabelsAndBadgesOfAllPages) {
    std::vector<platform::Value> many;
    for (const Application& application : sampleDevice().applications)
        many.emplace_back(application.identifier);
    Tried tried(enabled({{kAppIconSize, 90}, {kAppsPerRow, 1}}));
    tried.change(kAppsEnabled, List(many));
    tried.face.show(Surface::apps);
    ASSERT_GT(tried.look().pages, 1);
    const auto shows = [&](const char* what) {
        std::vector<bool> all;
        for (int i = 0; i < tried.face.icons()->rowCount(); ++i)
            all.push_back(tried.face.icons()->index(i).data(Qt::UserRole).toMap()[what].toMap()["visible"].toBool());
        return all;
    };
    EXPECT_THAT(shows("label"), testing::Each(true));
    EXPECT_THAT(shows("badge"), ElementsAre(false, false, false, true, true, false, false, false));
    tried.change(kAppBadgesEnabled, false);
    tried.change(kAppLabelsEnabled, false);
    EXPECT_THAT(shows("label"), testing::Each(false));
    EXPECT_THAT(shows("badge"), testing::Each(false));
}

TEST(FaceModel, MakesGesturesOfWhatAFingerDoes) {
    Tried tried;
    tried.face.press(kEmptyPlace);
    tried.face.release();
    tried.drag(kEmptyPlace, {-120, 0});
    tried.face.release();
    EXPECT_THAT(tried.logged(), ElementsAre("tap", "swipe left", "-> stage A"));
    tried.face.press(tried.middleOf(tried.look().icons[0]));
    EXPECT_EQ(tried.face.pressed(), "icons[0]");
    tried.face.release();
    EXPECT_EQ(tried.face.pressed(), "");
    EXPECT_THAT(tried.logged(), ElementsAre("tap icons[0]", "-> asks for the passcode"));
    tried.face.release();
    EXPECT_THAT(tried.logged(), IsEmpty()) << "no finger is down";
}

TEST(FaceModel, DropsAGestureThatIsTakenAwayOrBegunAnew) {
    Tried tried;
    tried.drag(kEmptyPlace, {-120, 0});
    tried.face.cancel();
    tried.face.release();
    EXPECT_EQ(tried.face.stageDrag(), 0);
    tried.drag(kEmptyPlace, {-120, 0});
    tried.face.press(kEmptyPlace);
    tried.face.release();
    EXPECT_THAT(tried.logged(), ElementsAre("tap"));
}

TEST(FaceModel, HoldsOnceTheFingerHasRestedForHalfASecond) {
    Tried tried;
    tried.face.show(Surface::apps);
    tried.face.press(tried.middleOf(tried.look().icons[1]));
    tried.pass(0.49);
    EXPECT_THAT(tried.logged(), IsEmpty());
    tried.pass(0.02);
    EXPECT_THAT(tried.logged(), ElementsAre("hold icons[1]", "-> shows org.lumora.plugins.weather"));
    tried.face.release();
    EXPECT_THAT(tried.logged(), IsEmpty());
}

TEST(FaceModel, TellsOutOfWhichIconAnAppViewComes) {
    for (const char* gestures : {"hold icons[1]", "key Down\nkey Right\nkey Menu"}) {
        Tried tried;
        tried.face.show(Surface::apps);
        const QRectF frame = toQt(tried.look().icons[1].picture.frame);
        QSignalSpy revealed(&tried.face, &FaceModel::revealed);
        for (const QString& gesture : QString(gestures).split('\n'))
            tried.face.act(gesture);
        ASSERT_EQ(revealed.count(), 1) << gestures;
        EXPECT_EQ(revealed.first().first().toRectF(), frame);
        tried.face.act("swipe left");
        EXPECT_EQ(revealed.count(), 1) << "it came out of another App View";
    }
}

TEST(FaceModel, TurnsToWhatIsEditedAfterAMomentOfRest) {
    Tried tried;
    QSignalSpy edited(&tried.face, &FaceModel::edited);
    tried.change(kAppIconSize, 60);
    tried.pass(0.14);
    EXPECT_EQ(tried.surface(), Surface::notices);
    tried.pass(0.02);
    EXPECT_EQ(tried.surface(), Surface::apps);
    ASSERT_EQ(edited.count(), 1);
    EXPECT_TRUE(edited.first().first().toRectF().isValid());
}

TEST(FaceModel, LeavesAPersonAtTheFaceAlone) {
    Tried tried(enabled({{kSleepTime, 3600}}));
    tried.face.press(kEmptyPlace);
    tried.change(kAppIconSize, 60);
    tried.pass(20);
    EXPECT_EQ(tried.surface(), Surface::notices) << "the finger is down";
    tried.face.release();
    tried.pass(9.9);
    EXPECT_EQ(tried.surface(), Surface::notices);
    tried.pass(0.2);
    EXPECT_EQ(tried.surface(), Surface::apps);
    tried.face.act("key Left");
    tried.change(kAppIconSize, 80);
    tried.pass(9.9);
    EXPECT_EQ(tried.surface(), Surface::notices);
}

TEST(FaceModel, StaysWhereItIsWhenItFollowsNothing) {
    Tried tried;
    tried.face.setFollows(false);
    tried.change(kAppIconSize, 60);
    tried.pass(1);
    EXPECT_EQ(tried.surface(), Surface::notices);
}

TEST(FaceModel, LaysHeldValuesOverTheSettings) {
    Tried tried;
    const auto edge = [&] { return tried.look().icons[0].picture.frame.size.width; };
    tried.face.hold(std::string(kAppIconSize), 50);
    EXPECT_EQ(edge(), 50);
    tried.change(kAppIconSize, 60);
    EXPECT_EQ(edge(), 50);
    tried.face.letGo(std::string(kAppIconSize));
    EXPECT_EQ(edge(), 60);
}

TEST(FaceModel, SleepsByTheClockAndWakesByATouchThatDoesNothingElse) {
    for (const QPointF& by : {QPointF(), QPointF(-5, 20), QPointF(-120, 0)}) {
        Tried tried;
        tried.pass(8.1);
        EXPECT_EQ(looked(tried.face, "sleepVeil")["opacity"], 0.4);
        tried.pass(2);
        EXPECT_TRUE(tried.isAsleep());
        EXPECT_THAT(tried.outcomes(), ElementsAre("sleeps"));
        tried.drag(kEmptyPlace, by);
        EXPECT_FALSE(tried.isAsleep());
        EXPECT_FALSE(looked(tried.face, "sleepVeil")["visible"].toBool());
        tried.face.release();
        EXPECT_THAT(tried.logged(), ElementsAre("-> wakes"));
    }
}

TEST(FaceModel, StaysAwakeUnderAFingerThatMoves) {
    Tried tried;
    tried.pass(8.5);
    tried.face.press(kEmptyPlace);
    EXPECT_FALSE(looked(tried.face, "sleepVeil")["visible"].toBool()) << "it is as bright as before";
    tried.pass(8.5);
    tried.face.move(kEmptyPlace + QPointF(1, 1));
    tried.pass(7);
    EXPECT_FALSE(tried.isAsleep());
    EXPECT_FALSE(looked(tried.face, "sleepVeil")["visible"].toBool());
}

TEST(FaceModel, LetsGoOfAFingerWhenWhatItWasOnHasGone) {
    Tried tried;
    tried.drag(kEmptyPlace, {-120, 0});
    EXPECT_NE(tried.face.stageDrag(), 0);
    QSignalSpy moved(&tried.face, &FaceModel::handMoved);
    tried.face.act("key S");
    EXPECT_EQ(tried.face.stageDrag(), 0);
    EXPECT_GE(moved.count(), 1);
    tried.logged();
    tried.face.release();
    EXPECT_THAT(tried.logged(), IsEmpty());
    EXPECT_TRUE(tried.isAsleep());
}

TEST(FaceModel, WaitsForNothingWhileNothingIsDue) {
    Tried tried;
    EXPECT_EQ(tried.timer().interval(), 8000) << "until it dims";
    tried.face.act("key S");
    EXPECT_FALSE(tried.timer().isActive());
    tried.face.act("key Enter");
    EXPECT_TRUE(tried.timer().isActive());
    tried.face.setFallsAsleep(false);
    tried.pass(100);
    EXPECT_FALSE(tried.timer().isActive());
    tried.change(kAppIconSize, 60);
    EXPECT_NEAR(tried.timer().interval(), 150, 1);
}

TEST(FaceModel, DragsAStageWhereThereIsOneToCome) {
    Tried tried;
    const auto drag = [&](const QPointF& from, const QPointF& by) {
        tried.drag(from, by);
        const double dragged = tried.face.stageDrag();
        tried.face.cancel();
        return dragged;
    };
    EXPECT_EQ(drag(kEmptyPlace, {-120, 0}), -120);
    EXPECT_EQ(drag(kEmptyPlace, {120, 0}), 30) << "the first one";
    EXPECT_EQ(drag(kEmptyPlace, {-50, 80}), 0);
    EXPECT_EQ(drag(tried.middleOf(tried.look().notices.items[0]), {120, 0}), 0) << "a notice is";
    EXPECT_EQ(drag(tried.middleOf(tried.look().notices.items[0]), {-120, 0}), -120);
    EXPECT_EQ(drag(tried.middleOf(tried.look().slideHint), {60, 0}), 0);
    EXPECT_EQ(drag(tried.middleOf(tried.look().camera), {-60, 0}), 0);
    tried.face.show(Surface::passcode);
    EXPECT_EQ(drag(kEmptyPlace, {-120, 0}), 0);
}

TEST(FaceModel, IsLockedByThePasscodeOfItsPhone) {
    Tried tried(enabled(), "");
    EXPECT_FALSE(tried.face.isLocked());
    QSignalSpy moved(&tried.face, &FaceModel::moved);
    tried.face.setPhone(sampleDevice());
    EXPECT_TRUE(tried.face.isLocked());
    EXPECT_EQ(moved.count(), 1);
}

TEST(FaceModel, DescribesWhatAnIconDoes) {
    Tried tried;
    EXPECT_EQ(tried.face.describe(kPhone), "tap opens it");
    EXPECT_EQ(tried.face.describe(kWeather), "tap opens it, hold shows its App View");
    EXPECT_FALSE(tried.face.hasHold(kPhone));
    QSignalSpy changed(&tried.face, &FaceModel::editionChanged);
    tried.change(kSwitchTapAndLongHold, true);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(tried.face.describe(kWeather), "tap shows its App View, hold opens it");
    EXPECT_EQ(tried.face.describe(kPhone), "hold opens it");
    EXPECT_TRUE(tried.face.hasHold(kPhone));
    tried.change(kAppIconSize, 50.0);
    EXPECT_EQ(changed.count(), 1) << "it does the same";
}

TEST(FaceModel, KeepsTheIconsOfAStageThatComesBack) {
    Tried tried;
    const auto* icons = tried.face.icons();
    QSignalSpy made(icons, &PartsModel::rowsInserted);
    QSignalSpy changed(icons, &PartsModel::dataChanged);
    for (const bool on : {false, true})
        tried.change(kTweakEnabled, on);
    EXPECT_EQ(icons->rowCount(), 2);
    EXPECT_EQ(made.count() + changed.count(), 0);
    tried.change(kAppsEnabled, List{kWeather});
    EXPECT_EQ(icons->rowCount(), 1);
}
