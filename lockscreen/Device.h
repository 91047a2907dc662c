#pragma once

#include "lockscreen/Look.h"
#include "lockscreen/Luminance.h"

#include "platform/ui/CGGeometry.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// Seconds of a clock that only goes forward; the one who asks chooses its beginning.
using Seconds = double;
/// So long before the screen falls asleep, it dims.
constexpr Seconds kDims = 2;

/// How wide texts are. lookOf() asks again and again for the same ones, so answers should be kept.
class TextMeasure {
  public:
    TextMeasure() = default;
    TextMeasure(const TextMeasure&) = delete;
    TextMeasure& operator=(const TextMeasure&) = delete;
    virtual ~TextMeasure() = default;
    /// Of one line, in a font ("Default" for the screen's own) of that size.
    [[nodiscard]] virtual double width(const std::string& text, const std::string& font, double size) const = 0;
    /// Whether a font of that PostScript name is installed.
    [[nodiscard]] virtual bool has(const std::string& font) const = 0;
};

struct Notice {
    std::string identifier; ///< of its application
    std::string title;
    std::string text;
    std::string when;
};

struct Application {
    std::string identifier;
    std::string name;
    friend bool operator==(const Application&, const Application&) = default;
};

struct AppViewInfo {
    std::string identifier;
    std::string name;
    std::string appIdentifier;      ///< of the application that it belongs to; may be empty
    bool secure = false;            ///< it shows what is private
    bool draws = false;             ///< itself; else it has no more than its icon
    std::filesystem::path bundle{}; ///< of its plug-in
};

/// The phone: what is on its lock screen apart from the tweak's settings.
struct Device {
    const TextMeasure* texts = nullptr;
    Luminance picture;
    Luminance blurred; ///< the picture behind panes
    platform::CGSize size{390, 844};
    std::string time; ///< as the clock shows it
    std::string date;
    double battery = 1;   ///< from 0 to 1
    std::string passcode; ///< empty: none
    std::vector<Notice> notices;
    std::map<std::string, int> badges; ///< by the identifier of the application
    std::vector<Application> applications;
    std::vector<AppViewInfo> views;

    [[nodiscard]] bool isLandscape() const { return size.width > size.height; }
    /// The length of which all others are multiples: 1/390 of a phone's width.
    [[nodiscard]] double unit() const;
    /// Null for one that is not installed. Both look through the list.
    [[nodiscard]] const Application* application(std::string_view identifier) const;
    [[nodiscard]] const AppViewInfo* view(std::string_view identifier) const;
};

struct Opened {
    std::string identifier; ///< empty: the home screen
    bool alone = false;     ///< the phone is locked but for this application
    friend bool operator==(const Opened&, const Opened&) = default;
};

/// What a person's hand and the clock have made of the screen: what Behaviour changes.
struct State {
    Surface surface = Surface::notices;
    int page = 0;     ///< of icons
    std::string view; ///< the App View that is shown or was last
    int focus = -1;   ///< the notice or the icon that the keyboard is at
    bool asleep = false;
    bool noticesHidden = false;
    bool locked = true;
    std::string typed;    ///< digits on the passcode view; never shown, never printed
    bool blocked = false; ///< its keys do nothing for a while
    std::optional<Opened> opened;
    Seconds lastTouch = 0;
    Seconds now = 0;
    friend bool operator==(const State&, const State&) = default;
};

} // namespace lumora
