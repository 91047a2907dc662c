#pragma once

#include "pickers/ColorPicker.h"
#include "tests/pickers/Colors.h"
#include "tests/pickers/Fingers.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace tests {

using lumora::ColorPicker;
using platform::CGPoint;
using platform::CGRectMake;
using platform::make;
using platform::UIColor;
using platform::UIColorRef;
using platform::UIView;

/// A control of 320 by 345 points at the corner of its page: the field covers x 20 to 300 and y 20 to 275, the bar x 20
/// to 300 and y 295 to 325.
struct Picker : testing::Test {
    using Views = std::vector<std::shared_ptr<UIView>>;

    std::shared_ptr<UIView> page = make<UIView>(CGRectMake(0, 0, 320, 500));
    std::shared_ptr<ColorPicker> picker;
    std::vector<UIColorRef> reported;
    Fingers fingers{page};

    [[nodiscard]] std::shared_ptr<ColorPicker> made(UIColorRef color) {
        return make<ColorPicker>(CGRectMake(0, 0, 320, 345), std::move(color),
                                 [this](const UIColorRef& chosen) { reported.push_back(chosen); });
    }
    void place(UIColorRef color) {
        picker = made(std::move(color));
        page->addSubview(picker);
    }
    void touch(const std::vector<CGPoint>& points) const { picker->touchesBegan(touchesAt(points), {}); }
    void expectMarks(CGPoint crossHairs, CGPoint indicator) const {
        EXPECT_EQ(picker->crossHairs()->center(), crossHairs);
        EXPECT_EQ(picker->brightnessIndicator()->center(), indicator);
    }
    UIColorRef fill() const {
        EXPECT_EQ(picker->brightnessIndicator()->backgroundColor(), picker->crossHairs()->backgroundColor());
        EXPECT_EQ(*picker->gradientView()->color(), *picker->crossHairs()->backgroundColor());
        return picker->gradientView()->color();
    }
};

} // namespace tests
