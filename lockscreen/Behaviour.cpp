#include "lockscreen/Behaviour.h"

#include "lockscreen/KeyTable.h"
#include "lockscreen/LookOf.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <cmath>
#include <utility>

using platform::Dictionary;

namespace lumora {
namespace {

/// The enabled App View that belongs to an application; null if it has none.
const AppViewInfo* viewOf(const Dictionary& settings, const Device& device, std::string_view application) {
    for (const AppViewInfo* view : enabledViews(settings, device))
        if (view->appIdentifier == application) return view;
    return nullptr;
}

} // namespace

IconActions iconActions(const Dictionary& settings, const Device& device, std::string_view identifier) {
    const Style style(settings);
    const bool hasView = viewOf(settings, device, identifier);
    const IconAction shows = hasView ? IconAction::showsAppView : IconAction::nothing;
    const bool switched = style.flag(kLongHoldForPluginApps) ? hasView : style.flag(kSwitchTapAndLongHold);
    return switched ? IconActions{shows, IconAction::opens} : IconActions{IconAction::opens, shows};
}

Behaviour::Behaviour(Dictionary settings, Device device, Log log)
    : settings_(std::move(settings)), device_(std::move(device)), log_(std::move(log)) {
    state_.locked = !device_.passcode.empty();
}

void Behaviour::setSettings(Dictionary settings) {
    settings_ = std::move(settings);
    // What the new settings have no place for is left.
    const auto stages = stagesOf(settings_, device_);
    const bool isStage = state_.surface == Surface::apps || state_.surface == Surface::appView;
    if (isStage && std::ranges::find(stages, state_.surface) == stages.end()) goTo(Surface::notices);
}

void Behaviour::setDevice(Device device) {
    const bool hasAnotherPasscode = device.passcode != device_.passcode;
    device_ = std::move(device);
    if (hasAnotherPasscode && !state_.opened) state_.locked = !device_.passcode.empty();
    setSettings(std::move(settings_));
}

void Behaviour::outcome(const std::string& words) const {
    if (log_) log_("-> " + words);
}

const State& Behaviour::apply(const Gesture& gesture, Seconds now) {
    if (log_) log_(gesture.line());
    if (gesture.kind == Gesture::Kind::wait) {
        state_.now = std::max(now, state_.now);
        wait();
        return state_;
    }
    if (touch(now)) return state_;
    switch (gesture.kind) {
    case Gesture::Kind::tap:
        tap(gesture);
        break;
    case Gesture::Kind::hold:
        hold(gesture);
        break;
    case Gesture::Kind::swipe:
        swipe(gesture);
        break;
    case Gesture::Kind::slide:
        slide();
        break;
    case Gesture::Kind::pull:
        pull(gesture.target);
        break;
    case Gesture::Kind::key:
        key(gesture.target);
        break;
    case Gesture::Kind::home:
        home();
        break;
    case Gesture::Kind::wait:
        break;
    }
    return state_;
}

bool Behaviour::touch(Seconds now) {
    state_.now = std::max(now, state_.now);
    wait();
    state_.lastTouch = state_.now;
    if (!std::exchange(state_.asleep, false)) return false;
    outcome("wakes");
    return true;
}

const State& Behaviour::show(Surface surface, Seconds now) {
    state_.now = std::max(now, state_.now);
    state_.lastTouch = state_.now;
    state_.asleep = false;
    const auto stages = stagesOf(settings_, device_);
    if (surface == Surface::passcode) {
        if (state_.surface != Surface::passcode) askForPasscode("");
    } else if (surface == Surface::opened) {
        if (state_.surface != Surface::opened) open("", false);
    } else if (std::ranges::find(stages, surface) != stages.end()) {
        goTo(surface);
    }
    return state_;
}

// -- time --

void Behaviour::wait() {
    if (leaving_ && state_.now >= leaving_->gone) {
        const Leaving left = *std::exchange(leaving_, std::nullopt);
        outcome("swiped away");
        if (left.unlocksThen) unlockFor(left.identifier);
    }
    if (state_.blocked && state_.now >= blockedUntil_) {
        state_.blocked = false;
        outcome("takes keys again");
    }
    if (staysAwake()) state_.lastTouch = state_.now;
    if (!state_.asleep && state_.now - state_.lastTouch >= Style(settings_).number(kSleepTime)) sleep();
}

bool Behaviour::staysAwake() const {
    return !fallsAsleep_ || (state_.surface == Surface::appView && Style(settings_).flag(kSleepDisabledForAppViews));
}

std::optional<Seconds> Behaviour::nextChange() const {
    std::optional<Seconds> next;
    const auto consider = [&](Seconds when) {
        if (when > state_.now && (!next || when < *next)) next = when;
    };
    if (leaving_) consider(leaving_->gone);
    if (state_.blocked) consider(blockedUntil_);
    if (!state_.asleep && !staysAwake()) {
        const Seconds sleeps = state_.lastTouch + Style(settings_).number(kSleepTime);
        consider(sleeps - kDims);
        consider(sleeps);
    }
    return next;
}

std::optional<std::size_t> Behaviour::leaving() const {
    return leaving_ ? std::optional(leaving_->place) : std::nullopt;
}

void Behaviour::sleep() {
    state_.asleep = true;
    state_.locked = !device_.passcode.empty();
    state_.opened.reset();
    leaving_.reset();
    goTo(Surface::notices);
    outcome("sleeps");
}

// -- gestures --

void Behaviour::tap(const Gesture& gesture) {
    const std::string& target = gesture.target;
    if (state_.surface == Surface::passcode) {
        const auto place = placeIn(target, "keys");
        if (place && *place < 10) type(*place == 9 ? '0' : static_cast<char>('1' + *place));
        if (target == "passcode.cancel") cancel();
        return;
    }
    if (const auto place = placeIn(target, "icons"); place && state_.surface == Surface::apps) {
        tapIcon(*place, false);
    } else if (target.empty() && state_.surface == Surface::notices && Style(settings_).flag(kNotificationsHideOnTap)) {
        state_.noticesHidden = !state_.noticesHidden;
        outcome(state_.noticesHidden ? "hides the notices" : "shows the notices");
    } else if (target == "appView" && state_.surface == Surface::appView) {
        // The card opens its application.
        const AppViewInfo* view = device_.view(state_.view);
        if (view && device_.application(view->appIdentifier)) unlockFor(view->appIdentifier);
    }
}

void Behaviour::hold(const Gesture& gesture) {
    if (const auto place = placeIn(gesture.target, "icons"); place && state_.surface == Surface::apps)
        tapIcon(*place, true);
}

void Behaviour::swipe(const Gesture& gesture) {
    if (const auto place = placeIn(gesture.target, "notices.items")) {
        if (state_.surface == Surface::notices && !state_.noticesHidden) swipeNotice(*place, gesture.amount);
        return;
    }
    if (state_.surface == Surface::passcode || state_.surface == Surface::opened) return;
    const int by = gesture.target == "left" ? 1 : gesture.target == "right" ? -1 : 0;
    if (state_.surface == Surface::appView) {
        if (gesture.target == "down") {
            const auto stages = stagesOf(settings_, device_);
            changeStage(std::ranges::find(stages, Surface::apps) == stages.end() ? Surface::notices : Surface::apps);
        } else if (by != 0) {
            stepView(by);
        }
    } else if (by != 0) {
        step(by);
    }
}

void Behaviour::swipeNotice(std::size_t place, double share) {
    if (place >= device_.notices.size() || share < kSwipedEnough || leaving_) return;
    const std::string& identifier = device_.notices[place].identifier;
    const Style style(settings_);
    if (!style.flag(kAutoUnlockNotifications)) {
        if (device_.passcode.empty())
            open(identifier, false);
        else
            askForPasscode(identifier);
        return;
    }
    const bool afterwards = style.flag(kAUNotificationsOnMainThread);
    leaving_ = Leaving{place, identifier, state_.now + kSwipe, afterwards};
    if (!afterwards) unlockFor(identifier);
}

void Behaviour::slide() {
    if (state_.surface == Surface::passcode || state_.surface == Surface::opened) return;
    if (device_.passcode.empty() || !state_.locked)
        open("", false);
    else
        askForPasscode("");
}

void Behaviour::pull(const std::string& target) {
    if (state_.surface == Surface::passcode || state_.surface == Surface::opened) return;
    const Style style(settings_);
    const bool isThere = target == "camera" ? !style.flag(kCameraGrabberDisabled) : !style.flag(kGrabbersDisabled);
    if (isThere && (target == "camera" || target == "topGrabber" || target == "bottomGrabber"))
        outcome("pulls the " + target);
}

void Behaviour::key(const std::string& name) {
    if (name == "S") {
        sleep();
    } else if (name == "Home") {
        home();
    } else if (state_.surface == Surface::passcode) {
        if (name.size() == 1 && name[0] >= '0' && name[0] <= '9')
            type(name[0]);
        else if (name == "BackSpace" && !state_.typed.empty())
            state_.typed.pop_back();
        else if (name == "Escape")
            leavePasscode();
    } else if (name == "Left" || name == "Right" || name == "Up" || name == "Down") {
        moveFocus(name);
    } else if (name == "Escape") {
        if (std::exchange(state_.focus, -1) < 0) {
            if (state_.surface == Surface::appView)
                swipe({Gesture::Kind::swipe, "down", 1});
            else if (state_.surface == Surface::apps)
                changeStage(Surface::notices);
        }
    } else if (name == "Enter" || name == "Shift+Enter" || name == "Menu") {
        const auto place = static_cast<std::size_t>(std::max(0, state_.focus));
        if (state_.surface == Surface::appView)
            tap({Gesture::Kind::tap, "appView", 1});
        else if (state_.focus < 0)
            name == "Enter" ? slide() : void();
        else if (state_.surface == Surface::apps)
            tapIcon(place, name != "Enter");
        else if (state_.surface == Surface::notices && name == "Enter")
            swipeNotice(place, 1);
    } else if (name == "Space" && state_.surface == Surface::notices) {
        tap({Gesture::Kind::tap, "", 1});
    }
}

void Behaviour::moveFocus(const std::string& name) {
    const bool across = name == "Left" || name == "Right";
    const int towards = name == "Right" || name == "Down" ? 1 : -1;
    if (state_.surface == Surface::opened) return;
    if (state_.surface == Surface::appView || (across && state_.focus < 0)) {
        if (across) swipe({Gesture::Kind::swipe, towards > 0 ? "left" : "right", 1});
        return;
    }
    const bool apps = state_.surface == Surface::apps;
    const Style style(settings_);
    const Look look = lookOf(settings_, device_, state_);
    std::vector<int> places; // those in view
    const auto count = static_cast<int>(apps ? look.icons.size() : look.notices.items.size());
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (apps ? look.icons[at].visible : look.notices.items[at].visible) places.push_back(i);
    }
    if (places.empty()) return;
    const int columns = !apps ? 1 : style.count(device_.isLandscape() ? kAppsPerRowLandscape : kAppsPerRow);
    const int wanted = state_.focus + towards * (across ? 1 : columns);
    if (state_.focus < 0) {
        state_.focus = places.front();
    } else if (wanted >= places.front() && wanted <= places.back()) {
        state_.focus = wanted;
    } else if (across) {
        step(towards);
    }
}

void Behaviour::home() {
    if (state_.surface == Surface::opened && state_.opened) {
        const bool alone = state_.opened->alone;
        const bool isHome = state_.opened->identifier.empty();
        if (alone || (!isHome && Style(settings_).flag(kAlwaysReturnToLSEnabled))) {
            state_.opened.reset();
            goTo(Surface::notices);
            outcome(state_.locked ? "lock screen, locked" : "lock screen");
        } else if (!isHome) {
            open("", false);
        }
    } else if (state_.surface == Surface::passcode) {
        leavePasscode();
    } else if (state_.surface != Surface::notices) {
        changeStage(Surface::notices);
    } else {
        goTo(Surface::notices);
    }
}

// -- places --

void Behaviour::goTo(Surface surface) {
    state_.focus = -1;
    if (surface != Surface::passcode) state_.typed.clear();
    if (surface == Surface::appView) {
        const auto views = enabledViews(settings_, device_);
        if (std::ranges::find(views, state_.view, [](const AppViewInfo* view) { return view->identifier; }) ==
            views.end())
            state_.view = views.empty() ? "" : views.front()->identifier;
    }
    if (surface == Surface::notices) state_.page = 0;
    state_.surface = surface;
}

void Behaviour::changeStage(Surface stage) {
    goTo(stage);
    outcome(std::string("stage ") + static_cast<char>(stage));
}

void Behaviour::step(int by) {
    const auto stages = stagesOf(settings_, device_);
    const int pages = lookOf(settings_, device_, state_).pages;
    if (state_.surface == Surface::apps && state_.page + by >= 0 && state_.page + by < pages) {
        state_.page += by;
        state_.focus = -1;
        outcome("page " + std::to_string(state_.page + 1));
        return;
    }
    const auto here = std::ranges::find(stages, state_.surface) - stages.begin();
    const auto next = here + by;
    if (next < 0 || next >= static_cast<std::ptrdiff_t>(stages.size())) return;
    changeStage(stages[static_cast<std::size_t>(next)]);
}

void Behaviour::stepView(int by) {
    const auto views = enabledViews(settings_, device_);
    if (views.empty()) return;
    const auto count = static_cast<std::ptrdiff_t>(views.size());
    const auto here = std::ranges::find(views, state_.view, [](const AppViewInfo* view) { return view->identifier; });
    const auto next = ((here - views.begin()) + by + count) % count; // the last before the first
    reveal(*views[static_cast<std::size_t>(next)]);
}

void Behaviour::tapIcon(std::size_t place, bool held) {
    const auto applications = enabledApplications(settings_, device_);
    if (place >= applications.size()) return;
    const std::string& identifier = applications[place]->identifier;
    const IconActions actions = iconActions(settings_, device_, identifier);
    switch (held ? actions.hold : actions.tap) {
    case IconAction::opens:
        unlockFor(identifier);
        break;
    case IconAction::showsAppView:
        reveal(*viewOf(settings_, device_, identifier));
        break;
    case IconAction::nothing:
        break;
    }
}

void Behaviour::reveal(const AppViewInfo& view) {
    state_.view = view.identifier;
    goTo(Surface::appView);
    outcome("shows " + view.identifier);
}

} // namespace lumora
