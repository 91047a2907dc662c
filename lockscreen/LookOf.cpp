#include "lockscreen/LookOf.h"

#include "lockscreen/Canvas.h"
#include "lockscreen/KeyTable.h"
#include "lockscreen/RoleColors.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <cmath>
#include <utility>

using platform::CGRect;
using platform::Dictionary;

namespace lumora {
namespace {

constexpr double kMargin = 16;
constexpr double kClockHeight = 0.98; // of its size
constexpr double kCardHeight = 348;   // of an App View, upright
constexpr double kHighestRow = 158;   // a pane with one row of the largest icons, and the marks of its pages

/// Texts stay on the lines that they are given: what would break or hide them becomes a space.
std::string onOneLine(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    // U+0080 to U+009F, U+2028 and U+2029.
    for (const std::string_view breaking : {"\u0085", "\u2028", "\u2029"})
        for (auto at = text.find(breaking); at != std::string::npos; at = text.find(breaking, at))
            text.replace(at, breaking.size(), " ");
    return text;
}

template<class Item>
std::vector<const Item*> chosen(const std::vector<std::string>& identifiers, const std::vector<Item>& installed) {
    std::vector<const Item*> known;
    known.reserve(installed.size());
    for (const Item& item : installed)
        known.push_back(&item);
    std::ranges::stable_sort(known, {}, &Item::identifier);
    std::vector<bool> taken(known.size());
    std::vector<const Item*> chosen;
    for (const std::string& identifier : identifiers) {
        const auto found = std::ranges::lower_bound(known, identifier, {}, &Item::identifier);
        if (found == known.end() || (*found)->identifier != identifier) continue;
        const auto index = static_cast<std::size_t>(found - known.begin());
        if (taken[index]) continue; // once, though it may be named twice
        taken[index] = true;
        chosen.push_back(*found);
    }
    return chosen;
}

std::vector<const Application*> applicationsOf(const Style& style, const Device& device) {
    return chosen(style.texts(kAppsEnabled), device.applications);
}

std::vector<const AppViewInfo*> viewsOf(const Style& style, const Device& device) {
    if (!style.isOn() || !style.flag(kWidgetsEnabled)) return {};
    return chosen(style.texts(kAppViewsEnabled), device.views);
}

const LegibleGrounds& forTexts() {
    static const LegibleGrounds grounds = groundsFor(1);
    return grounds;
}

std::vector<Surface> stages(bool apps, bool views) {
    std::vector<Surface> stages{Surface::notices};
    if (apps) stages.push_back(Surface::apps);
    if (views) stages.push_back(Surface::appView);
    return stages;
}

/// Lays out everything but the passcode view.
class Screen {
  public:
    Screen(const Dictionary& settings, const Device& device, const State& state)
        : style_(settings), device_(device), state_(state), canvas_(device),
          applications_(applicationsOf(style_, device)), views_(viewsOf(style_, device)),
          stage_(state.surface != Surface::passcode && state.surface != Surface::opened),
          sideBySide_(!canvas_.portrait && state.surface != Surface::apps),
          foot_(canvas_.height - (canvas_.portrait ? 118 : 66)) {}

    Look look() {
        look_.stages = stages(!applications_.empty(), !views_.empty());
        layOutEdges();
        layOutDate();
        layOutNotices();
        layOutIcons();
        layOutView();
        layOutFoot();
        layOutPasscode(look_, canvas_, style_, device_, state_);
        layOutOpened();
        layOutVeil();
        return std::move(look_);
    }

  private:
    [[nodiscard]] bool isOn(Surface surface) const { return state_.surface == surface; }

    void layOutEdges() {
        const bool opened = isOn(Surface::opened);
        const double tall = canvas_.portrait ? 44 : 28;
        const bool bar = !opened && !style_.flag(kLSStatusBarHidden);
        const CGRect strip = canvas_.frame(0, 0, canvas_.width, tall);
        look_.statusBar = canvas_.sign(bar, strip, 13);
        const std::string percent = std::to_string(std::lround(device_.battery * 100)) + " %";
        const double wide = canvas_.widthOf(percent, 13) + 6 + 27;
        look_.battery = canvas_.text(bar || (!opened && style_.flag(kAlwaysShowBattery)),
                                     canvas_.frame(canvas_.width - 24 - wide, (tall - 16) / 2, wide, 16), percent, 13);
        if (bar) { // which the battery is a part of
            look_.battery.color = look_.statusBar.color;
            look_.battery.shade = {};
        }

        const bool grabbers = stage_ && !style_.flag(kGrabbersDisabled);
        const double middle = (canvas_.width - 38) / 2;
        look_.topGrabber = canvas_.mark(grabbers, canvas_.frame(middle, canvas_.portrait ? 47 : 27, 38, 5));
        look_.bottomGrabber = canvas_.mark(grabbers, canvas_.frame(middle, canvas_.height - 11, 38, 5));
        look_.camera =
            canvas_.mark(stage_ && !style_.flag(kCameraGrabberDisabled),
                         canvas_.frame(canvas_.width - 54, canvas_.height - 44 - (canvas_.portrait ? 40 : 14), 54, 44));
    }

    void layOutDate() {
        const double wide = (sideBySide_ ? canvas_.width * 0.44 : canvas_.width) - 2 * kMargin;
        const double place = canvas_.portrait ? 92 : sideBySide_ ? 96 : 40;
        constexpr double gap = 4;
        // The date ends above what stands below it, which may come so high whatever else is set.
        const double end = sideBySide_        ? canvas_.height - 56
                           : canvas_.portrait ? foot_ - kCardHeight - 12
                                              : foot_ - kHighestRow - 8;
        const double room = end - place - gap;
        const double asked = style_.number(kLSDateFontSize);
        const double askedBelow = style_.number(kLSDateSubtitleFontSize);
        const double fit = std::min(1.0, room / (asked * kClockHeight + askedBelow * Canvas::kLine));
        const double size = asked * fit;
        const double smaller = askedBelow * fit;
        const double tall = size * kClockHeight;
        const double line = smaller * Canvas::kLine;
        const double top = std::min(place + style_.number(kLSDateOffset), end - tall - gap - line);
        const bool visible = stage_ && !style_.flag(kDateViewDisabled);
        std::string font = style_.text(kLSDateFontName);
        // Looking for a name reads all installed fonts.
        if (font != "Default" && (!device_.texts || !device_.texts->has(font))) font = "Default";

        ClockText& clock = look_.clock;
        const double needed = canvas_.widthOf(device_.time, size, font);
        const double drawn = needed > wide ? size * wide / needed : size;
        const double unit = device_.unit();
        static_cast<Text&>(clock) =
            canvas_.text(visible, canvas_.frame(kMargin, top, wide, tall), device_.time, asked, 1, font);
        clock.font = font;
        clock.drawnSize = drawn * unit;

        DateText& subtitle = look_.subtitle;
        const std::string own = style_.text(kLSDateSubtitle);
        const std::string words = own.empty() ? device_.date : own;
        const bool hasRoom = top + tall + gap + 2 * line <= end;
        const int lines = canvas_.widthOf(words, smaller, font) > wide && hasRoom ? 2 : 1;
        const bool hidden = style_.flag(kLSDateSubtitleHidden);
        static_cast<Text&>(subtitle) =
            canvas_.text(visible && !hidden, canvas_.frame(kMargin, top + tall + gap, wide, lines * line), words,
                         smaller, 0.92, font);
        subtitle.font = font;
        dateEnd_ = top + tall + gap + lines * line; // its room stays when it is hidden, so that nothing else moves then
    }

    void layOutNotices() {
        const double wide = sideBySide_ ? canvas_.width * 0.475 : canvas_.width - 2 * kMargin;
        const double left = sideBySide_ ? canvas_.width * 0.46 : kMargin;
        constexpr double tall = 74;
        constexpr double step = tall + 8;
        const double room = sideBySide_ ? canvas_.height - 72 : foot_ - dateEnd_ - 12;
        const auto most = static_cast<std::size_t>(std::max(1.0, std::floor((room + 8) / step)));
        const std::size_t shown = std::min(most, device_.notices.size());
        const double height = shown == 0 ? 0 : static_cast<double>(shown) * step - 8;
        const double top = sideBySide_ ? (canvas_.height - height) / 2 : foot_ - height;

        NoticesLook& notices = look_.notices;
        notices.visible = isOn(Surface::notices) && !state_.noticesHidden && shown > 0;
        notices.frame = canvas_.frame(left, top, wide, height);
        notices.items.resize(device_.notices.size());
        for (std::size_t i = 0; i < device_.notices.size(); ++i) {
            const Notice& notice = device_.notices[i];
            NoticeLook& item = notices.items[i];
            const double y = top + static_cast<double>(std::min(i, most)) * step;
            item.visible = notices.visible && i < shown;
            item.frame = canvas_.frame(left, y, wide, tall);
            item.identifier = notice.identifier;
            item.round = style_.flag(kAppRoundedEnabled);
            const Color color = item.visible ? canvas_.makeLegible(item, forTexts()) : kWhite;
            const auto write = [&](Text& text, const std::string& words, double x, double line, double width,
                                   double size, double opacity) {
                text = {{{item.visible, canvas_.frame(left + x, y + line, width, size * Canvas::kLine)}, color},
                        words,
                        size * device_.unit(),
                        opacity};
            };
            const double when = canvas_.widthOf(notice.when, 12);
            write(item.title, notice.title, 68, 14, wide - 68 - 32 - when, 15, 1);
            write(item.when, notice.when, wide - 16 - when, 16, when, 12, 1);
            write(item.text, notice.text, 68, 37, wide - 68 - 16, 14, 1);
        }
    }

    void layOutIcons() {
        const double wide = canvas_.width - 2 * kMargin;
        constexpr double pad = 14;
        const bool labels = style_.flag(kAppLabelsEnabled);
        const int columns = std::max(1, style_.count(canvas_.portrait ? kAppsPerRow : kAppsPerRowLandscape));
        const double cell = (wide - 2 * pad) / columns;
        const double edge = std::min(style_.number(kAppIconSize), cell - 8);
        const double line = edge + (labels ? 22 : 0) + 16;
        const int count = static_cast<int>(applications_.size());
        const double room = foot_ - (dateEnd_ + 20) - 2 * pad + 8;
        const int fitting = static_cast<int>(std::floor(room / line));
        const int needed = (count + columns - 1) / columns;
        const int rows = std::max(1, std::min(needed, fitting));
        const int perPage = rows * columns;
        const double height = rows * line + 2 * pad - 10 + (count > perPage ? 12 : 0);
        const double top = foot_ - height;
        look_.pages = (count + perPage - 1) / perPage;
        const int page = std::clamp(state_.page, 0, std::max(0, look_.pages - 1));

        IconViewLook& view = look_.iconView;
        view.visible = isOn(Surface::apps) && count > 0;
        view.frame = canvas_.frame(kMargin, top, wide, height);
        view.blurred = style_.flag(kIconViewBlurEnabled);
        const Color onPane = view.visible ? canvas_.makeLegible(view, forTexts()) : kWhite;

        look_.icons.resize(applications_.size());
        const bool round = style_.flag(kAppRoundedEnabled);
        const double opacity = style_.number(kAppIconOpacity);
        const bool badges = style_.flag(kAppBadgesEnabled);
        const double unit = device_.unit();
        for (int i = 0; i < count; ++i) {
            IconLook& icon = look_.icons[static_cast<std::size_t>(i)];
            const Application& application = *applications_[static_cast<std::size_t>(i)];
            const int place = i % perPage;
            const double x = kMargin + pad + (place % columns) * cell;
            const int row = place / columns;
            const double y = top + pad + row * line;
            icon.identifier = application.identifier;
            icon.page = i / perPage;
            icon.visible = view.visible && icon.page == page;
            icon.frame = canvas_.frame(x, y, cell, line);
            icon.picture = {canvas_.frame(x + (cell - edge) / 2, y, edge, edge), opacity, round};

            const CGRect below = canvas_.frame(x + 2, y + edge + 6, cell - 4, 12 * Canvas::kLine);
            icon.label = {{{icon.visible && labels, below}, onPane}, application.name, 12 * unit, 1};
            if (icon.label.visible && !view.blurred) icon.label = canvas_.text(true, below, application.name, 12);
            const auto badge = device_.badges.find(application.identifier);
            const int number = badge == device_.badges.end() ? 0 : badge->second;
            const std::string digits = number > 99 ? "99+" : std::to_string(number);
            const double width = std::max(22.0, canvas_.widthOf(digits, 13) + 12);
            icon.badge = {{{icon.visible && badges && number > 0,
                            canvas_.frame(x + (cell + edge) / 2 - width + 8, y - 7, width, 22)},
                           kWhite},
                          number > 0 ? digits : "",
                          13 * unit,
                          1};
        }
    }

    void layOutView() {
        AppViewLook& card = look_.appView;
        const AppViewInfo* view = nullptr;
        for (const AppViewInfo* one : views_)
            if (!view || one->identifier == state_.view) view = one;
        card.visible = isOn(Surface::appView) && view;
        const double wide = sideBySide_ ? canvas_.width * 0.475 : canvas_.width - 2 * kMargin;
        const double left = sideBySide_ ? canvas_.width * 0.46 : kMargin;
        const double top = canvas_.portrait ? foot_ - kCardHeight : 40;
        const double tall = canvas_.portrait ? kCardHeight : canvas_.height - 84;
        card.frame = canvas_.frame(left, top, wide, tall);
        static const LegibleGrounds secondary = groundsFor(kSecondaryShare);
        const Color color = card.visible ? canvas_.makeLegible(card, secondary) : kWhite;
        card.title = {{{card.visible, canvas_.frame(left + 58, top + 21, wide - 58 - 20, 16 * Canvas::kLine)}, color},
                      view ? view->name : "",
                      16 * device_.unit(),
                      1};
        if (!view) return;
        card.identifier = view->identifier;
        card.application = view->appIdentifier;
        card.secure = view->secure;
        const std::string passcode = style_.text(kAutoUnlockWidgetPasscode);
        card.locked = view->secure && !device_.passcode.empty() && passcode != device_.passcode;
    }

    void layOutFoot() {
        const std::string own = onOneLine(style_.text(kSlideToUnlockText));
        const std::string words = own.empty() ? "slide to unlock" : own;
        const double most = canvas_.portrait ? canvas_.width - 150 : canvas_.width * 0.27;
        const double text = std::min(canvas_.widthOf(words, 18), most);
        const double wide = canvas_.portrait ? std::max(text, 150.0) : 134 + text + 8;
        const double left = canvas_.portrait ? (canvas_.width - wide) / 2
                            : sideBySide_    ? std::max(kMargin, canvas_.width * 0.22 - wide / 2)
                                             : 24;
        const double top = canvas_.height - (canvas_.portrait ? 82 : 50);
        const double rail = canvas_.portrait ? 0 : 126; // is before the words
        const CGRect line = canvas_.frame(left + rail, top, wide - rail, 18 * Canvas::kLine);
        look_.slideHint = canvas_.text(stage_ && !style_.flag(kSlideToUnlockDisabled), line, words, 18);
        look_.slideHint.frame = canvas_.frame(left, top, wide, canvas_.portrait ? 48 : 24);

        const auto dots = static_cast<double>(look_.stages.size());
        const double row = dots * 13 + 3; // one of them is longer
        const double shift = sideBySide_ ? canvas_.width * 0.1975 : 0;
        const double y = canvas_.portrait ? foot_ + 14 : canvas_.height - (sideBySide_ ? 27 : 44);
        look_.pageDots = canvas_.mark(stage_ && dots > 1, canvas_.frame((canvas_.width - row) / 2 + shift, y, row, 6));
    }

    void layOutOpened() {
        OpenedLook& opened = look_.opened;
        opened.visible = isOn(Surface::opened) && state_.opened;
        opened.frame = canvas_.frame(0, 0, canvas_.width, canvas_.height);
        const double unit = device_.unit();
        const auto write = [&](Text& text, double y, const std::string& words, double size, double opacity) {
            text = {{{opened.visible && !words.empty(),
                      canvas_.frame(kMargin, y, canvas_.width - 2 * kMargin, size * Canvas::kLine)},
                     kWhite},
                    words,
                    size * unit,
                    opacity};
        };
        const bool isApplication = state_.opened && !state_.opened->identifier.empty();
        const Application* application = isApplication ? device_.application(state_.opened->identifier) : nullptr;
        opened.identifier = isApplication ? state_.opened->identifier : "";
        opened.locked = state_.opened && state_.opened->alone;
        write(opened.title, canvas_.height * 0.34 + 82, application ? application->name : opened.identifier, 30, 1);
        write(opened.how, canvas_.height - 138,
              !isApplication  ? ""
              : opened.locked ? "Unlocked for this application"
                              : "Unlocked",
              15, 1);
        write(opened.home, canvas_.height - 110,
              !isApplication                          ? ""
              : opened.locked                         ? "Home locks the phone again"
              : style_.flag(kAlwaysReturnToLSEnabled) ? "Home goes to the lock screen"
                                                      : "Home goes to the home screen",
              13, 0.85);
        opened.button = {
            {opened.visible && isApplication, canvas_.frame((canvas_.width - 34) / 2, canvas_.height - 54, 34, 34)},
            kWhite};
    }

    void layOutVeil() {
        VeilLook& veil = look_.sleepVeil;
        const double awake = style_.number(kSleepTime);
        const double idle = state_.now - state_.lastTouch;
        const bool stands = isOn(Surface::appView) && style_.flag(kSleepDisabledForAppViews);
        veil.opacity = state_.asleep || (!stands && idle >= awake) ? 1 : !stands && idle >= awake - kDims ? 0.4 : 0;
        veil.visible = veil.opacity > 0;
        veil.frame = canvas_.frame(0, 0, canvas_.width, canvas_.height);
    }

    Style style_;
    const Device& device_;
    const State& state_;
    Canvas canvas_;
    std::vector<const Application*> applications_;
    std::vector<const AppViewInfo*> views_;
    bool stage_;      ///< one of the surfaces that swipes lead to
    bool sideBySide_; ///< the date at the left, what it is about at the right
    double foot_;     ///< where the stage ends
    double dateEnd_ = 0;
    Look look_;
};

} // namespace

double Device::unit() const {
    const double shorter = std::min(size.width, size.height);
    const double longer = std::max(size.width, size.height);
    return std::min(shorter / 390, longer / 844);
}

const Application* Device::application(std::string_view identifier) const {
    const auto found = std::ranges::find(applications, identifier, &Application::identifier);
    return found == applications.end() ? nullptr : &*found;
}

const AppViewInfo* Device::view(std::string_view identifier) const {
    const auto found = std::ranges::find(views, identifier, &AppViewInfo::identifier);
    return found == views.end() ? nullptr : &*found;
}

Look lookOf(const Dictionary& settings, const Device& device, const State& state) {
    return Screen(settings, device, state).look();
}

std::vector<Surface> stagesOf(const Dictionary& settings, const Device& device) {
    return stages(!enabledApplications(settings, device).empty(), !enabledViews(settings, device).empty());
}

std::vector<const Application*> enabledApplications(const Dictionary& settings, const Device& device) {
    return applicationsOf(Style(settings), device);
}

std::vector<const AppViewInfo*> enabledViews(const Dictionary& settings, const Device& device) {
    return viewsOf(Style(settings), device);
}

} // namespace lumora
