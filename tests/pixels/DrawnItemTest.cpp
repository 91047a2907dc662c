#include "pixels/DrawnItem.h"
#include "tests/pixels/Pictures.h"
#include "tests/pixels/Shown.h"

#include <gtest/gtest.h>

namespace {

using tests::flat;
using tests::Shown;
using tests::varied;

constexpr QSize kSmallWindow(60, 40);

/// Draws itself in another way at every pixel, or in one pixel only.
class VariedItem : public lumora::DrawnItem {
  public:
    void draw(bool small) {
        isSmall_ = small;
        redraw();
    }
    [[nodiscard]] int drawings() const { return drawings_; }
    QImage last;

  private:
    QImage draw(const QSize& pixels, double) override {
        ++drawings_;
        return last = isSmall_ ? flat({1, 1}, qRgb(0, 255, 0)) : varied(pixels);
    }

    bool isSmall_ = false;
    int drawings_ = 0;
};

TEST(DrawnItem, ShowsEachPixelOfItsPictureAsItIs) {
    for (const QSizeF& size : {QSizeF(40, 30), QSizeF(40.4, 29.6)}) {
        Shown shown(kSmallWindow);
        VariedItem item;
        shown.add(item, QRectF({10, 5}, size));
        const QImage picture = shown.picture();
        EXPECT_EQ(item.last.size(), (size * shown.ratio()).toSize());
        EXPECT_EQ(picture.copy(QRect(QPoint(10, 5) * shown.ratio(), item.last.size())), item.last);
    }
}

TEST(DrawnItem, StretchesAPictureOfAnotherSize) {
    Shown shown(kSmallWindow);
    VariedItem item;
    item.draw(true);
    shown.add(item, QRectF(QPointF(), kSmallWindow));
    EXPECT_EQ(shown.picture(), flat(shown.size(), qRgb(0, 255, 0)));
}

TEST(DrawnItem, IsShownInAnotherWindow) {
    Shown one(kSmallWindow);
    Shown other(kSmallWindow);
    VariedItem item;
    for (Shown* const shown : {&one, &other, &one}) {
        shown->add(item, QRectF(QPointF(), kSmallWindow));
        EXPECT_EQ(shown->picture(), item.last);
    }
}

TEST(DrawnItem, IsDrawnAnewInAnotherSizeAndInNoOtherPlace) {
    Shown shown(kSmallWindow);
    VariedItem item;
    const auto drawings = [&] {
        EXPECT_EQ(shown.picture().size(), shown.size());
        return item.drawings();
    };
    shown.add(item, QRectF(0, 0, 20, 20));
    EXPECT_EQ(drawings(), 1);
    item.setPosition({7, 7});
    EXPECT_EQ(drawings(), 1);
    item.setSize({30, 20});
    EXPECT_EQ(drawings(), 2);
    item.setSize({0, 20});
    EXPECT_EQ(shown.picture(), flat(shown.size(), qRgb(0, 0, 0)));
}

} // namespace
