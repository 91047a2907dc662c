#include "lockscreen/face/PartsModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <random>

namespace {

using lumora::IconLook;
using Icons = lumora::PartsOf<IconLook>;

std::vector<IconLook> iconsOf(const std::string& letters) {
    std::vector<IconLook> icons(letters.size());
    for (std::size_t i = 0; i < letters.size(); ++i) {
        icons[i].identifier = letters[i];
        icons[i].frame = platform::CGRectMake(72.1 * static_cast<double>(i), 300.3, 72.1, 90);
        icons[i].picture.frame = platform::CGRectMake(72.1 * static_cast<double>(i) + 6.05, 300.3, 60, 60);
    }
    return icons;
}

QVariant partAt(const Icons& model, std::size_t row) {
    return model.data(model.index(static_cast<int>(row)), Qt::UserRole);
}

/// Follows the signals alone, as whatever shows the parts does.
class Follower {
  public:
    explicit Follower(Icons& model) {
        QObject::connect(&model, &Icons::rowsRemoved,
                         [this](const QModelIndex&, int first, int last) { letters.remove(first, last - first + 1); });
        QObject::connect(&model, &Icons::rowsInserted, [this, &model](const QModelIndex&, int first, int last) {
            for (int i = first; i <= last; ++i)
                letters.insert(i, partAt(model, static_cast<std::size_t>(i)).toMap()["identifier"].toString());
        });
        QObject::connect(&model, &Icons::rowsMoved,
                         [this](const QModelIndex&, int from, int, const QModelIndex&, int to) {
                             const QString moved = letters.mid(from, 1);
                             letters.remove(from, 1).insert(to > from ? to - 1 : to, moved);
                         });
    }
    QString letters;
};

TEST(PartsModel, MovesAnIconThatChangesItsPlace) {
    Icons icons;
    icons.set(iconsOf("abcde"));
    const QSignalSpy moved(&icons, &Icons::rowsMoved);
    const QSignalSpy inserted(&icons, &Icons::rowsInserted);
    const QSignalSpy removed(&icons, &Icons::rowsRemoved);
    icons.set(iconsOf("bcdea"));
    icons.set(iconsOf("abcde"));
    EXPECT_EQ(moved.count(), 2);
    EXPECT_EQ(inserted.count() + removed.count(), 0);
}

TEST(PartsModel, LeavesTheLooksOfAnIconThatMoves) {
    Icons icons;
    icons.set(iconsOf("abcde"));
    const QVariantList looks{partAt(icons, 0), partAt(icons, 3)};
    const QSignalSpy changed(&icons, &Icons::dataChanged);
    icons.set(iconsOf("dbcae"));
    EXPECT_EQ(changed.count(), 2) << "the places of two";
    EXPECT_EQ((QVariantList{partAt(icons, 3), partAt(icons, 0)}), looks);
    EXPECT_EQ(icons.data(icons.index(0), icons.roleNames().key("origin")), QPointF(0, 300.3));
}

TEST(PartsModel, TellsOfPartsThatDifferAlone) {
    Icons icons;
    icons.set(iconsOf("abc"));
    const QSignalSpy changed(&icons, &Icons::dataChanged);
    std::vector<IconLook> next = iconsOf("abc");
    icons.set(next);
    EXPECT_EQ(changed.count(), 0);
    next[1].badge.text = "2";
    icons.set(next);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(partAt(icons, 1).toMap()["badge"], lumora::toQml(next[1].badge));
}

TEST(PartsModel, HasThePartsThatItIsSetToAndTellsTheWayThere) {
    Icons icons;
    const QAbstractItemModelTester tester(&icons, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const Follower follower(icons);
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same each time
    for (int round = 0; round < 500; ++round) {
        std::string letters = "abcdefghij";
        std::ranges::shuffle(letters, random);
        letters.resize(random() % (letters.size() + 1));
        const std::vector<IconLook> wanted = iconsOf(letters);
        icons.set(wanted);
        ASSERT_EQ(follower.letters.toStdString(), letters);
        for (std::size_t i = 0; i < wanted.size(); ++i)
            ASSERT_EQ(icons.data(icons.index(static_cast<int>(i)), icons.roleNames().key("origin")),
                      QPointF(wanted[i].frame.origin.x, 300.3))
                << letters << " " << i;
    }
}

} // namespace
