#include "lockscreen/face/FaceModel.h"

#include "lockscreen/KeyTable.h"
#include "lockscreen/LookOf.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

using platform::CGPoint;
using platform::Dictionary;
using platform::Value;

namespace lumora {
namespace {

Seconds steadyTime() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

CGPoint toPoint(QPointF point) {
    return {point.x(), point.y()};
}

/// The settings that say what gestures there are.
constexpr std::array kOfGestures{kTweakEnabled,   kSwitchTapAndLongHold, kLongHoldForPluginApps,
                                 kWidgetsEnabled, kAppViewsEnabled,      kNotificationsHideOnTap};

bool isStage(Surface surface) {
    return surface != Surface::passcode && surface != Surface::opened;
}

Device deviceOf(const Backdrop& backdrop, const TextMeasure& texts) {
    Device device;
    device.texts = &texts;
    device.picture = backdrop.luminance();
    device.blurred = backdrop.blurred();
    return device;
}

/// What is no longer in view keeps its looks.
template<std::derived_from<Part> T>
void keepLooks(T& part, const T& before) {
    if (part.visible) return;
    part = before;
    part.visible = false;
}
template<class T>
void keepLooks(T&, const T&) {
}

} // namespace

FaceModel::FaceModel(Backdrop& backdrop, IconStore& icons, const TextMeasure& texts, Behaviour::Log log, Clock clock,
                     QObject* parent)
    : QObject(parent), backdrop_(backdrop), iconStore_(icons), clock_(clock ? std::move(clock) : steadyTime),
      behaviour_({}, deviceOf(backdrop, texts), [this, log = std::move(log)](const std::string& line) {
          if (log) log(line);
          if (line == "-> wrong") emit wronglyTyped();
      }) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &FaceModel::wakeUp);
    connect(&backdrop, &Backdrop::changed, this, [this] {
        Device device = behaviour_.device();
        device.picture = backdrop_.luminance();
        device.blurred = backdrop_.blurred();
        behaviour_.setDevice(std::move(device));
        refresh();
    });
    behaviour_.show(Surface::notices, now());
    refresh();
}

// -- what is shown --

Look FaceModel::withAllStages() const {
    const Dictionary& settings = behaviour_.settings();
    const Device& device = behaviour_.device();
    State state = behaviour_.state();
    const Surface here = state.surface;
    Look look = actual_;
    for (std::size_t i = 0; i < look.stages.size(); ++i) {
        state.surface = look.stages[i];
        if (state.surface == here) continue;
        Look stage = lookOf(settings, device, state);
        if (state.surface == Surface::notices) look.notices = std::move(stage.notices);
        if (state.surface == Surface::apps) {
            look.iconView = stage.iconView;
            look.icons = std::move(stage.icons);
        }
        if (state.surface == Surface::appView) look.appView = std::move(stage.appView);
        if (isStage(here) || i != std::min(static_cast<std::size_t>(stage_), look.stages.size() - 1)) continue;
        for (Mark Look::*part : {&Look::pageDots, &Look::topGrabber, &Look::bottomGrabber, &Look::camera})
            look.*part = stage.*part;
        look.clock = std::move(stage.clock);
        look.subtitle = std::move(stage.subtitle);
        look.slideHint = std::move(stage.slideHint);
    }
    // Icons of a page that is being turned to, or away from.
    const Style style(settings);
    for (IconLook& icon : look.icons) {
        icon.label.visible = style.flag(kAppLabelsEnabled);
        icon.badge.visible = style.flag(kAppBadgesEnabled) && !icon.badge.text.empty();
    }
    return look;
}

void FaceModel::refresh() {
    actual_ = lookOf(behaviour_.settings(), behaviour_.device(), behaviour_.state());
    Look look = withAllStages();
    const bool keys = !look.keys.empty() && look.keys[0].visible;
    if (!keys) look.keys = shown_.keys;
    if (look.icons.empty()) look.icons = shown_.icons; // with their stage, which may come back
    std::apply(
        [&](const auto&... field) {
            const auto publish = [&](const auto& one) {
                auto& now = look.*one.member;
                const auto& before = shown_.*one.member;
                keepLooks(now, before);
                if constexpr (!isPartList<std::remove_cvref_t<decltype(now)>>) {
                    const QString name = QString::fromUtf8(one.name.data(), static_cast<qsizetype>(one.name.size()));
                    if (!(now == before) || !look_.contains(name)) look_.insert(name, toQml(now));
                }
            };
            (publish(field), ...);
        },
        Look::fields());
    icons_.set(look.icons);
    notices_.set(look.notices.items);
    keys_.set(look.keys);
    dots_.set(look.passcode.dots);

    const State& state = behaviour_.state();
    const auto place = std::ranges::find(look.stages, state.surface);
    const int stage = place != look.stages.end() ? static_cast<int>(place - look.stages.begin())
                                                 : std::min(stage_, static_cast<int>(look.stages.size()) - 1);
    const auto left = behaviour_.leaving();
    const int leaving = left ? static_cast<int>(*left) : -1;
    const bool hasMoved = std::tuple(stage, leaving, state.page, state.focus, state.locked) !=
                          std::tuple(stage_, leaving_, state_.page, state_.focus, state_.locked);
    const bool hasTyped = state.typed.size() != state_.typed.size();
    stage_ = stage;
    leaving_ = leaving;
    // What the finger was on has gone.
    const bool isOver = hand_.isDown() && (state.asleep || state.surface != state_.surface);
    if (isOver) hand_.cancel();
    state_ = state;
    shown_ = std::move(look);
    if (hasMoved) emit moved();
    if (hasTyped) emit typedChanged();
    if (isOver) emit handMoved();
    setTimer();
}

void FaceModel::resize(double width, double height) {
    Device device = behaviour_.device();
    if (width <= 0 || height <= 0 || device.size == platform::CGSize{width, height}) return;
    device.size = {width, height};
    behaviour_.setDevice(std::move(device));
    refresh();
    emit resized();
}

void FaceModel::setPhone(const Device& phone) {
    Device device = phone;
    const Device& own = behaviour_.device();
    device.texts = own.texts;
    device.picture = own.picture;
    device.blurred = own.blurred;
    device.size = own.size;
    behaviour_.setDevice(std::move(device));
    ++edition_;
    emit editionChanged();
    refresh();
}

void FaceModel::setTweakAnswers(bool does) {
    if (does != std::exchange(tweakAnswers_, does)) emit tweakAnswersChanged();
}

// -- settings --

void FaceModel::setSettings(const Dictionary& settings, const std::set<std::string>& changed) {
    const Dictionary before = behaviour_.settings();
    settings_ = settings;
    takeSettings();
    turning_.changed(before, changed, now());
    refresh();
}

void FaceModel::hold(const std::string& key, const Value& value) {
    const Dictionary before = behaviour_.settings();
    held_.set(key, value);
    takeSettings();
    turning_.changed(before, {key}, now());
    refresh();
}

void FaceModel::letGo(const std::string& key) {
    held_.remove(key);
    takeSettings();
    refresh();
}

void FaceModel::takeSettings() {
    Dictionary settings = settings_;
    for (const auto& [key, value] : held_)
        settings.set(key, value);
    const bool same = std::ranges::all_of(
        kOfGestures, [&](std::string_view key) { return settings[key] == behaviour_.settings()[key]; });
    if (viewStore_) viewStore_->setSettings(settings);
    behaviour_.setSettings(std::move(settings));
    if (same) return;
    ++edition_;
    emit editionChanged();
}

void FaceModel::setFollows(bool does) {
    if (does == turning_.follows()) return;
    turning_.setFollows(does);
    emit followsChanged();
}

void FaceModel::turn() {
    const Turning::Changed changed = turning_.take();
    const Dictionary& settings = behaviour_.settings();
    const Device& device = behaviour_.device();
    const auto surface = surfaceOf(changed, settings, device, behaviour_.state());
    if (surface && (*surface != behaviour_.state().surface || behaviour_.state().asleep)) show(*surface);
    const State& state = behaviour_.state();
    if (const auto frame = changedFrame(lookOf(changed.before, device, state), lookOf(settings, device, state)))
        emit edited(toQt(*frame));
    if (changed.keys.contains(std::string(kSleepTime)) || changed.keys.contains(std::string(kSleepDisabledForAppViews)))
        emit sleepEdited();
}

// -- hands, keys and time --

const State& FaceModel::apply(const Gesture& gesture) {
    const Surface from = behaviour_.state().surface;
    const int focus = behaviour_.state().focus;
    const State& state = behaviour_.apply(gesture, now());
    if (from == Surface::apps && state.surface == Surface::appView) {
        const auto place = gesture.kind == Gesture::Kind::key && focus >= 0 ? static_cast<std::size_t>(focus)
                                                                            : placeIn(gesture.target, "icons");
        if (place && *place < actual_.icons.size()) emit revealed(toQt(actual_.icons[*place].picture.frame));
    }
    refresh();
    return state;
}

void FaceModel::drive(const std::function<void(Behaviour&)>& act) {
    act(behaviour_);
    refresh();
}

void FaceModel::show(Surface surface) {
    behaviour_.show(surface, now());
    refresh();
}

void FaceModel::touched() {
    turning_.touched(now());
    emit handMoved();
    setTimer();
}

bool FaceModel::touch() {
    const auto due = behaviour_.nextChange();
    const bool wakes = behaviour_.touch(now());
    if (wakes || actual_.sleepVeil.visible || (due && now() >= *due)) refresh();
    return wakes;
}

void FaceModel::press(QPointF point) {
    if (!touch()) hand_.press(actual_, unit(), toPoint(point), now());
    touched();
}

void FaceModel::move(QPointF point) {
    if (!hand_.isDown()) return;
    hand_.move(toPoint(point));
    touch();
    touched();
}

void FaceModel::release() {
    const auto gesture = hand_.release();
    if (gesture) apply(*gesture);
    touched();
}

void FaceModel::cancel() {
    hand_.cancel();
    touched();
}

void FaceModel::act(const QString& line) {
    const auto gesture = Gesture::read(line.toStdString());
    if (!gesture) return; // QML knows the words
    turning_.touched(now());
    apply(gesture.value());
}

QString FaceModel::pressed() const {
    return hand_.dragged() == CGPoint{} ? QString::fromStdString(hand_.part()) : QString();
}

QString FaceModel::pulled() const {
    return hand_.dragged() == CGPoint{} ? QString() : QString::fromStdString(hand_.part());
}

double FaceModel::stageDrag() const {
    const CGPoint by = hand_.dragged();
    const Surface here = behaviour_.state().surface;
    const std::string part = hand_.part();
    const bool isPull =
        (part == "slideHint" && by.x > 0) || part == "camera" || (by.x > 0 && placeIn(part, "notices.items"));
    if (here == Surface::passcode || here == Surface::opened || isPull || std::abs(by.x) <= std::abs(by.y)) return 0;
    const int next = stage_ + (by.x < 0 ? 1 : -1);
    const int pages = here == Surface::apps ? actual_.pages : 1;
    const bool turnsPage = by.x < 0 ? page() + 1 < pages : page() > 0;
    const bool isThere = next >= 0 && next < static_cast<int>(actual_.stages.size()) && here != Surface::appView;
    return isThere && !turnsPage ? by.x : by.x / 4;
}

QPointF FaceModel::dragged() const {
    const CGPoint by = hand_.dragged();
    return {by.x, by.y};
}

void FaceModel::wakeUp() {
    if (const auto gesture = hand_.hold(now())) {
        apply(*gesture);
        emit handMoved();
    }
    if (const auto due = turning_.due(); due && now() >= *due && !hand_.isDown()) turn();
    const auto next = behaviour_.nextChange();
    if (next && now() >= *next)
        apply({Gesture::Kind::wait, "", std::round((now() - behaviour_.state().now) * 1000) / 1000}); // as it is logged
    setTimer();
}

void FaceModel::setTimer() {
    std::optional<Seconds> next;
    const auto turns = hand_.isDown() ? std::nullopt : turning_.due();
    for (const auto& due : {hand_.holdsAt(), turns, behaviour_.nextChange()})
        if (due && (!next || *due < *next)) next = due;
    if (!next) {
        timer_.stop();
        return;
    }
    const double wait = std::ceil(std::max(0.0, *next - now()) * 1000);
    timer_.start(static_cast<int>(std::min(wait, 3600000.0)));
}

// -- assistive tools --

bool FaceModel::hidesNotices() const {
    return Style(behaviour_.settings()).flag(kNotificationsHideOnTap) && !behaviour_.device().notices.empty();
}

QString FaceModel::describe(const QString& identifier) const {
    const IconActions actions = iconActions(behaviour_.settings(), behaviour_.device(), identifier.toStdString());
    const auto words = [](const char* how, IconAction action) -> QString {
        switch (action) {
        case IconAction::opens:
            return QString::fromUtf8(how) + QStringLiteral(" opens it");
        case IconAction::showsAppView:
            return QString::fromUtf8(how) + QStringLiteral(" shows its App View");
        case IconAction::nothing:
            break;
        }
        return {};
    };
    QStringList all{words("tap", actions.tap), words("hold", actions.hold)};
    all.removeAll(QString());
    return all.join(QStringLiteral(", "));
}

bool FaceModel::hasHold(const QString& identifier) const {
    return iconActions(behaviour_.settings(), behaviour_.device(), identifier.toStdString()).hold !=
           IconAction::nothing;
}

} // namespace lumora
