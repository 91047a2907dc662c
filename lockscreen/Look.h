#pragma once

#include "platform/ui/CGGeometry.h"

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace lumora {

/// What a lock screen shows, part by part: the outcome of lookOf(), and all that a window needs to draw it. All lengths
/// are in points of the screen that it is made for, all opacities from 0 to 1. A part that the present surface does not
/// show is there and not visible. Passcodes are in none of it. Any thread.
///
/// Each struct lists its fields(), by which it is printed (LookDocument.h) and compared (diff()).

/// Where a person is. One letter each in documents and on the command line.
enum class Surface : unsigned char {
    notices = 'N',
    apps = 'A',
    appView = 'V',
    passcode = 'P',
    opened = 'O', ///< an application, or the home screen
};

/// sRGB, each from 0 to 1.
struct Color {
    double red = 1;
    double green = 1;
    double blue = 1;
    friend bool operator==(const Color&, const Color&) = default;
};

template<class Owner, class Member>
struct Field {
    std::string_view name;
    Member Owner::*member;
};
template<class Owner, class Member>
Field(std::string_view, Member Owner::*) -> Field<Owner, Member>;

struct Part {
    bool visible = false;
    platform::CGRect frame;

    static constexpr auto fields() {
        return std::tuple(Field{"visible", &Part::visible}, Field{"frame", &Part::frame});
    }
    friend bool operator==(const Part&, const Part&) = default;
};

/// What lies between the picture and a text, where the picture alone would make it hard to read. Within its frame it
/// fades out towards all sides.
struct ShadeLook {
    platform::CGRect frame;
    Color color;
    double opacity = 0; ///< where it is whole
    double fade = 0;    ///< the width of the rim in which it comes to that

    static constexpr auto fields() {
        return std::tuple(Field{"frame", &ShadeLook::frame}, Field{"color", &ShadeLook::color},
                          Field{"opacity", &ShadeLook::opacity}, Field{"fade", &ShadeLook::fade});
    }
    friend bool operator==(const ShadeLook&, const ShadeLook&) = default;
};

/// A drawing of one colour, which stands out from what is behind it.
struct Mark : Part {
    Color color;
    ShadeLook shade = {};

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(), std::tuple(Field{"color", &Mark::color}, Field{"shade", &Mark::shade}));
    }
    friend bool operator==(const Mark&, const Mark&) = default;
};

struct Text : Mark {
    std::string text;
    double size = 0; ///< of the font
    double opacity = 1;

    static constexpr auto fields() {
        return std::tuple_cat(Mark::fields(), std::tuple(Field{"text", &Text::text}, Field{"size", &Text::size},
                                                         Field{"opacity", &Text::opacity}));
    }
    friend bool operator==(const Text&, const Text&) = default;
};

/// A frosted pane: the blurred picture under a tint, which makes what stands on it legible.
struct Pane : Part {
    Color tint;
    double tintOpacity = 0;

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(),
                              std::tuple(Field{"tint", &Pane::tint}, Field{"tintOpacity", &Pane::tintOpacity}));
    }
    friend bool operator==(const Pane&, const Pane&) = default;
};

/// A text in a font that the user has chosen.
struct DateText : Text {
    std::string font; ///< a PostScript name, or "Default"

    static constexpr auto fields() {
        return std::tuple_cat(Text::fields(), std::tuple(Field{"font", &DateText::font}));
    }
    friend bool operator==(const DateText&, const DateText&) = default;
};

struct ClockText : DateText {
    double drawnSize = 0; ///< the size, or as much of it as fits

    static constexpr auto fields() {
        return std::tuple_cat(DateText::fields(), std::tuple(Field{"drawnSize", &ClockText::drawnSize}));
    }
    friend bool operator==(const ClockText&, const ClockText&) = default;
};

struct NoticeLook : Pane {
    std::string identifier; ///< of its application
    Text title;
    Text text;
    Text when;
    bool round = false; ///< its icon

    static constexpr auto fields() {
        return std::tuple_cat(Pane::fields(),
                              std::tuple(Field{"identifier", &NoticeLook::identifier},
                                         Field{"title", &NoticeLook::title}, Field{"text", &NoticeLook::text},
                                         Field{"when", &NoticeLook::when}, Field{"round", &NoticeLook::round}));
    }
    friend bool operator==(const NoticeLook&, const NoticeLook&) = default;
};

struct NoticesLook : Part {
    std::vector<NoticeLook> items;

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(), std::tuple(Field{"items", &NoticesLook::items}));
    }
    friend bool operator==(const NoticesLook&, const NoticesLook&) = default;
};

struct IconViewLook : Pane {
    bool blurred = true;

    static constexpr auto fields() {
        return std::tuple_cat(Pane::fields(), std::tuple(Field{"blurred", &IconViewLook::blurred}));
    }
    friend bool operator==(const IconViewLook&, const IconViewLook&) = default;
};

struct PictureLook {
    platform::CGRect frame;
    double opacity = 1;
    bool round = false; ///< cut to a circle, from a picture 1.14 times as large

    static constexpr auto fields() {
        return std::tuple(Field{"frame", &PictureLook::frame}, Field{"opacity", &PictureLook::opacity},
                          Field{"round", &PictureLook::round});
    }
    friend bool operator==(const PictureLook&, const PictureLook&) = default;
};

/// An application; its frame is the cell that it has to itself.
struct IconLook : Part {
    std::string identifier;
    int page = 0;
    PictureLook picture;
    Text label;
    Text badge;

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(),
                              std::tuple(Field{"identifier", &IconLook::identifier}, Field{"page", &IconLook::page},
                                         Field{"picture", &IconLook::picture}, Field{"label", &IconLook::label},
                                         Field{"badge", &IconLook::badge}));
    }
    friend bool operator==(const IconLook&, const IconLook&) = default;
};

struct AppViewLook : Pane {
    std::string identifier;
    std::string application; ///< whose icon it has
    Text title;
    bool secure = false;
    bool locked = false; ///< secure, and its contents are not shown

    static constexpr auto fields() {
        return std::tuple_cat(Pane::fields(),
                              std::tuple(Field{"identifier", &AppViewLook::identifier},
                                         Field{"application", &AppViewLook::application},
                                         Field{"title", &AppViewLook::title}, Field{"secure", &AppViewLook::secure},
                                         Field{"locked", &AppViewLook::locked}));
    }
    friend bool operator==(const AppViewLook&, const AppViewLook&) = default;
};

struct BlurLook : Part {
    double opacity = 1; ///< of the blurred picture, over the sharp one

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(), std::tuple(Field{"opacity", &BlurLook::opacity}));
    }
    friend bool operator==(const BlurLook&, const BlurLook&) = default;
};

struct TintLook : Mark {
    double opacity = 0;

    static constexpr auto fields() {
        return std::tuple_cat(Mark::fields(), std::tuple(Field{"opacity", &TintLook::opacity}));
    }
    friend bool operator==(const TintLook&, const TintLook&) = default;
};

struct DotLook : Mark {
    bool filled = false;

    static constexpr auto fields() {
        return std::tuple_cat(Mark::fields(), std::tuple(Field{"filled", &DotLook::filled}));
    }
    friend bool operator==(const DotLook&, const DotLook&) = default;
};

struct PasscodeLook : Part {
    Text title;
    std::vector<DotLook> dots;
    BlurLook blur;
    TintLook tint;
    Part cutoff; ///< the hairline where blur and tint end
    Text emergency;
    Text cancel; ///< "Delete" once something is typed

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(),
                              std::tuple(Field{"title", &PasscodeLook::title}, Field{"dots", &PasscodeLook::dots},
                                         Field{"blur", &PasscodeLook::blur}, Field{"tint", &PasscodeLook::tint},
                                         Field{"cutoff", &PasscodeLook::cutoff},
                                         Field{"emergency", &PasscodeLook::emergency},
                                         Field{"cancel", &PasscodeLook::cancel}));
    }
    friend bool operator==(const PasscodeLook&, const PasscodeLook&) = default;
};

struct OpenedLook : Part {
    std::string identifier; ///< empty: the home screen
    Text title;
    Text how;    ///< "Unlocked", "Unlocked for this application"
    Text home;   ///< where Home leads to
    Mark button; ///< for Home
    bool locked = false;

    static constexpr auto fields() {
        return std::tuple_cat(
            Part::fields(), std::tuple(Field{"identifier", &OpenedLook::identifier}, Field{"title", &OpenedLook::title},
                                       Field{"how", &OpenedLook::how}, Field{"home", &OpenedLook::home},
                                       Field{"button", &OpenedLook::button}, Field{"locked", &OpenedLook::locked}));
    }
    friend bool operator==(const OpenedLook&, const OpenedLook&) = default;
};

struct VeilLook : Part {
    double opacity = 0;

    static constexpr auto fields() {
        return std::tuple_cat(Part::fields(), std::tuple(Field{"opacity", &VeilLook::opacity}));
    }
    friend bool operator==(const VeilLook&, const VeilLook&) = default;
};

struct Look {
    std::vector<Surface> stages; ///< those that swipes lead to
    int pages = 0;               ///< of icons
    Mark pageDots;
    Mark statusBar;
    Text battery;
    Mark topGrabber;
    Mark bottomGrabber;
    Mark camera;
    ClockText clock;
    DateText subtitle;
    Text slideHint;
    NoticesLook notices;
    IconViewLook iconView;
    std::vector<IconLook> icons; ///< those of all pages
    AppViewLook appView;
    PasscodeLook passcode;
    std::vector<Text> keys; ///< 1 to 9, and 0
    OpenedLook opened;
    VeilLook sleepVeil;

    static constexpr auto fields() {
        return std::tuple(
            Field{"stages", &Look::stages}, Field{"pages", &Look::pages}, Field{"pageDots", &Look::pageDots},
            Field{"statusBar", &Look::statusBar}, Field{"battery", &Look::battery},
            Field{"topGrabber", &Look::topGrabber}, Field{"bottomGrabber", &Look::bottomGrabber},
            Field{"camera", &Look::camera}, Field{"clock", &Look::clock}, Field{"subtitle", &Look::subtitle},
            Field{"slideHint", &Look::slideHint}, Field{"notices", &Look::notices}, Field{"iconView", &Look::iconView},
            Field{"icons", &Look::icons}, Field{"appView", &Look::appView}, Field{"passcode", &Look::passcode},
            Field{"keys", &Look::keys}, Field{"opened", &Look::opened}, Field{"sleepVeil", &Look::sleepVeil});
    }
    friend bool operator==(const Look&, const Look&) = default;
};

/// Where two looks differ, as paths: "clock.drawnSize", "icons[2].frame"; of lists that differ in length, the list
/// itself. Empty for equal ones.
[[nodiscard]] std::vector<std::string> diff(const Look& before, const Look& after);
/// A frame around all parts that differ and are visible in one look or the other. Nothing if none does. Any thread.
[[nodiscard]] std::optional<platform::CGRect> changedFrame(const Look& before, const Look& after);

} // namespace lumora
