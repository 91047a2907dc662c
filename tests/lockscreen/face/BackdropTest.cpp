#include "lockscreen/face/Backdrop.h"

#include "tests/pixels/Pictures.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStringList>

#include <memory>
#include <string>
#include <thread>

namespace {

using lumora::Backdrop;
using tests::flat;
using tests::PictureFolder;
using tests::varied;

/// A backdrop, and what it has told.
struct Told {
    Told() {
        QObject::connect(&backdrop, &Backdrop::changed, [this] { ++changes; });
        QObject::connect(&backdrop, &Backdrop::failed, [this](const QString& why) { failures << why; });
    }
    /// False when nothing is told.
    bool waits(int until) {
        return tests::eventually([&] {
            QCoreApplication::processEvents();
            return changes + failures.size() >= until;
        });
    }

    Backdrop backdrop;
    int changes = 0;
    QStringList failures;
};

TEST(Backdrop, HasNoPictureAtFirst) {
    const Backdrop backdrop;
    EXPECT_TRUE(backdrop.sharp().isNull());
    EXPECT_TRUE(backdrop.soft().isNull());
    EXPECT_EQ(backdrop.luminance().mean({{}, {1, 1}}), 0);
}

TEST(Backdrop, IsMadeForTheScreen) {
    const PictureFolder folder;
    Told told;
    const auto made = told.backdrop.make({folder.save(flat({500, 500}, qRgb(188, 188, 188))), {130, 281}, 2});
    ASSERT_TRUE(made) << made.error();
    EXPECT_EQ(told.changes, 1);
    EXPECT_EQ(told.backdrop.sharp().size(), QSize(260, 562));
    EXPECT_EQ(told.backdrop.soft(), flat({65, 141}, qRgb(188, 188, 188)));
    EXPECT_EQ(told.backdrop.ratio(), 2);
    EXPECT_NEAR(told.backdrop.luminance().mean({{}, {1, 1}}), 0.5, 0.01);
    EXPECT_NEAR(told.backdrop.blurred().mean({{}, {1, 1}}), 0.5, 0.01);
}

TEST(Backdrop, IsBlurredAsFarOnEveryScreen) {
    const PictureFolder folder;
    QImage halves = flat({780, 1688}, qRgb(0, 0, 0));
    for (int y = 0; y < 844; ++y)
        for (int x = 0; x < 780; ++x)
            halves.setPixel(x, y, qRgb(255, 255, 255));
    const QString file = folder.save(halves);
    // The same places on a phone, on one with three pixels to a point, and on one of half its size.
    const auto brightnessAt = [](const QImage& soft, double height) {
        return qRed(soft.pixel(soft.width() / 2, static_cast<int>(soft.height() * height)));
    };
    const auto phone = lumora::makeBackdrop({file, {390, 844}, 1});
    ASSERT_TRUE(phone) << phone.error();
    for (const lumora::BackdropOrder& order : {lumora::BackdropOrder{file, {390, 844}, 3}, {file, {195, 422}, 4}}) {
        const auto other = lumora::makeBackdrop(order);
        ASSERT_TRUE(other) << other.error();
        for (const double height : {0.42, 0.46, 0.54, 0.58})
            EXPECT_NEAR(brightnessAt(other.value().soft, height), brightnessAt(phone.value().soft, height), 12)
                << height;
    }
}

TEST(Backdrop, ChangesLaterWhenItIsOrdered) {
    const PictureFolder folder;
    Told told;
    ASSERT_TRUE(told.backdrop.make({folder.save(varied({60, 90}, 1), "first.png"), {60, 90}, 1}));
    told.backdrop.order({folder.save(varied({60, 90}, 2), "second.png"), {60, 90}, 1});
    EXPECT_EQ(told.backdrop.sharp(), varied({60, 90}, 1)) << "until the new picture is there";
    ASSERT_TRUE(told.waits(2));
    EXPECT_EQ(told.backdrop.sharp(), varied({60, 90}, 2));
}

TEST(Backdrop, TakesTheLastOrderOnly) {
    const PictureFolder folder;
    Told told;
    for (int i = 0; i < 20; ++i)
        told.backdrop.order({folder.save(varied({60, 90}, i), std::to_string(i) + ".png"), {60, 90}, 1});
    ASSERT_TRUE(told.waits(1));
    EXPECT_EQ(told.backdrop.sharp(), varied({60, 90}, 19));
    // Whatever an earlier order has left behind comes before this.
    told.backdrop.order({folder.save(varied({60, 90}, 20)), {60, 90}, 1});
    ASSERT_TRUE(told.waits(2));
    EXPECT_EQ(told.changes, 2);
    EXPECT_EQ(told.backdrop.sharp(), varied({60, 90}, 20));
}

TEST(Backdrop, PrefersWhatIsMadeAtOnceToAnEarlierOrder) {
    const PictureFolder folder;
    Told told;
    told.backdrop.order({folder.save(varied({60, 90}, 1), "first.png"), {60, 90}, 1});
    ASSERT_TRUE(told.backdrop.make({folder.save(varied({60, 90}, 2), "second.png"), {60, 90}, 1}));
    told.backdrop.order({folder.path("missing.png"), {60, 90}, 1});
    ASSERT_TRUE(told.waits(2));
    EXPECT_EQ(told.changes, 1);
    EXPECT_EQ(told.backdrop.sharp(), varied({60, 90}, 2));
}

TEST(Backdrop, KeepsTheFormerPictureAfterAFailure) {
    const PictureFolder folder;
    Told told;
    ASSERT_TRUE(told.backdrop.make({folder.save(varied({60, 90})), {60, 90}, 1}));
    EXPECT_FALSE(told.backdrop.make({folder.path("missing.png"), {60, 90}, 1}));
    told.backdrop.order({folder.path("missing.png"), {60, 90}, 1});
    ASSERT_TRUE(told.waits(2));
    EXPECT_EQ(told.changes, 1);
    ASSERT_EQ(told.failures.size(), 1);
    EXPECT_TRUE(told.failures.first().contains("missing.png")) << told.failures.first().toStdString();
    EXPECT_EQ(told.backdrop.sharp(), varied({60, 90}));
}

TEST(Backdrop, GoesAwayInTheMiddleOfItsWork) {
    const PictureFolder folder;
    const QString file = folder.save(varied({400, 600}));
    for (int i = 0; i < 20; ++i) {
        auto told = std::make_unique<Told>();
        told->backdrop.order({file, {400, 600}, 1});
        if (i % 2) std::this_thread::yield();
        told->backdrop.order({file, {40, 60}, 1});
        told.reset();
        QCoreApplication::processEvents();
    }
}

} // namespace
