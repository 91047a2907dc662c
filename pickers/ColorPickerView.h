#pragma once

#include "pickers/ColorPicker.h"
#include "platform/ui/UIButton.h"
#include "platform/ui/Undoable.h"

#include <memory>
#include <string>
#include <vector>

namespace lumora {

/// Chooses the colour of the blur: a band that shows it, the colour control, and a strip of seven colours to tap. Each
/// change is sent to the tweak at once, as {"h": …, "s": …, "b": …} under the view's identifier.
///
///     auto view = make<ColorPickerView>(frame);
///     view->setIdentifier(kLSBlurColor);
///
/// The control's change block holds the view, so the owner of the view removes that block before it lets the view go.
/// Main thread; making a view blocks until the settings are there.
class ColorPickerView final : public platform::UIView,
                              public platform::Undoable,
                              public std::enable_shared_from_this<ColorPickerView> {
  public:
    bool initWithFrame(const platform::CGRect& frame) override;

    [[nodiscard]] const std::shared_ptr<ColorPicker>& pickerView() const { return pickerView_; }
    void setPickerView(std::shared_ptr<ColorPicker> view) { pickerView_ = std::move(view); }
    [[nodiscard]] const std::shared_ptr<platform::UIView>& preview() const { return preview_; }
    void setPreview(std::shared_ptr<platform::UIView> view) { preview_ = std::move(view); }
    /// The preference key under which the colour is saved; set before the first change.
    [[nodiscard]] const std::string& identifier() const { return identifier_; }
    void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }

    /// The colours of the strip, made anew at each call.
    [[nodiscard]] static std::vector<platform::UIColorRef> themes();
    /// A strip with a button for each theme, side by side; the buttons refer to this view.
    [[nodiscard]] std::shared_ptr<platform::UIView> themesView(const platform::CGRect& frame);
    /// An opaque colour of that hue, saturation and brightness.
    [[nodiscard]] static platform::UIColorRef h(double hue, double s, double b);
    /// Takes the colour of a tapped button of the strip; the button's tag is the number of its theme.
    void setColor(platform::UIButton& button);
    /// Stores the control's colour and sends it to the tweak.
    void savePreferences();

    [[nodiscard]] std::string undoKey() const override { return identifier_; }
    [[nodiscard]] State undoState() const override;
    /// The control has the components of the stored dictionary again, as they stand there.
    void restore(const State& state) override;

  private:
    void setupColorPickerInFrame(const platform::CGRect& frame);

    std::shared_ptr<ColorPicker> pickerView_;
    std::shared_ptr<platform::UIView> preview_;
    std::string identifier_;
    platform::Value stored_; ///< by this view, or what it began with
};

} // namespace lumora
