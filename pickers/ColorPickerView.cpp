#include "pickers/ColorPickerView.h"

#include "link/PreferenceKeys.h"
#include "link/SettingsSession.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lumora {

using namespace platform;

namespace {

constexpr double kPreviewHeight = 150;
constexpr double kThemesHeight = 60;

struct Theme {
    const char* name;
    double hue;
    double saturation;
    double brightness;
};
constexpr std::array<Theme, 7> kThemes{{
    {"Cyan", 0.5, 1.0, 1.0},
    {"Blue", 0.61, 0.75, 0.94},
    {"Violet", 0.72, 0.95, 1.0},
    {"Green", 0.28, 0.78, 0.83},
    {"Yellow", 0.16, 1.0, 1.0},
    {"Dark Red", 0.0, 1.0, 0.69},
    {"Pink", 0.88, 0.73, 1.0},
}};

SettingsSession& session() {
    return sessionOf<ColorPickerView>();
}

/// Kept on purpose: components are read in single precision, though they are saved in double.
UIColorRef colorOf(const Value& stored) {
    // A component that is missing or not a number counts as 0, and one out of bounds as the nearer bound: most doubles
    // are out of the range of single precision.
    const auto component = [&](const char* key) {
        return static_cast<float>(std::clamp(stored[key].doubleValue(), 0.0, 1.0));
    };
    return ColorPickerView::h(component("h"), component("s"), component("b"));
}

void castShadow(UIView& view) {
    view.layer().shadowColor = UIColor::blackColor();
    view.layer().shadowOffset = {0, 0};
    view.layer().shadowRadius = 1.0;
    view.layer().shadowOpacity = 1.0;
}

} // namespace

bool ColorPickerView::initWithFrame(const CGRect& frame) {
    if (!UIView::initWithFrame(frame) || !session().start()) return false;
    setupColorPickerInFrame(frame);
    return true;
}

void ColorPickerView::setupColorPickerInFrame(const CGRect& frame) {
    const auto [origin, size] = frame;
    setBackgroundColor(UIColor::colorWithRed(0.922, 0.922, 0.945, 1.0));
    preview_ = make<UIView>(CGRectMake(0, 0, size.width, kPreviewHeight));
    castShadow(*preview_);
    const auto themes = themesView(CGRectMake(0, size.height - kThemesHeight, size.width, kThemesHeight));

    stored_ = session().value(kLSBlurColor);
    const auto color = colorOf(stored_);
    preview_->setBackgroundColor(color);
    // Kept on purpose: the frame's origin counts for the control, and not for the preview and the strip.
    const double half = preview_->frame().size.height * 0.5;
    const CGRect pickerFrame = CGRectMake(origin.x, origin.y + half, size.width, size.height - (half + kThemesHeight));
    pickerView_ = make<ColorPicker>(pickerFrame, color, [view = shared_from_this()](const UIColorRef& chosen) {
        view->preview()->setBackgroundColor(chosen);
        view->savePreferences();
    });

    addSubview(preview_);
    addSubview(pickerView_);
    addSubview(themes);
}

UIColorRef ColorPickerView::h(double hue, double s, double b) {
    return UIColor::colorWithHue(hue, s, b, 1.0);
}

std::vector<UIColorRef> ColorPickerView::themes() {
    std::vector<UIColorRef> colors;
    colors.reserve(kThemes.size());
    for (const Theme& theme : kThemes)
        colors.push_back(h(theme.hue, theme.saturation, theme.brightness));
    return colors;
}

std::shared_ptr<UIView> ColorPickerView::themesView(const CGRect& frame) {
    auto strip = make<UIView>(frame);
    castShadow(*strip);
    const auto colors = themes();
    // Kept on purpose: the size of a button is in single precision.
    const auto width = static_cast<float>(frame.size.width / static_cast<float>(colors.size()));
    const auto height = static_cast<float>(frame.size.height);
    double left = 0;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const auto button = make<UIButton>(CGRectMake(left, 0, width, height));
        button->setBackgroundColor(colors[i]);
        button->setTag(static_cast<int>(i));
        button->setAccessibilityLabel(kThemes.at(i).name);
        button->addTarget(*this, &ColorPickerView::setColor, UIControlEventTouchUpInside);
        strip->addSubview(button);
        left += width;
    }
    return strip;
}

void ColorPickerView::setColor(UIButton& button) {
    pickerView_->setColor(themes().at(static_cast<std::size_t>(button.tag())));
}

void ColorPickerView::savePreferences() {
    stored_ = pickerView_->getHSB();
    session().setValue(stored_, identifier_);
}

Undoable::State ColorPickerView::undoState() const {
    return {stored_, {}};
}

void ColorPickerView::restore(const State& state) {
    if (state.stored.isNil()) return;
    pickerView_->setHSB(state.stored);
    preview_->setBackgroundColor(pickerView_->color());
    stored_ = state.stored;
    session().setValue(stored_, identifier_);
}

} // namespace lumora
