#pragma once

#include "lockscreen/Device.h"
#include "lockscreen/Gesture.h"

#include "platform/foundation/Value.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lumora {

/// What touching an icon does.
enum class IconAction : unsigned char { nothing, opens, showsAppView };
struct IconActions {
    IconAction tap = IconAction::nothing;
    IconAction hold = IconAction::nothing;
};
/// For the application of that identifier, with these settings. Any thread.
[[nodiscard]] IconActions iconActions(const platform::Dictionary& settings, const Device& device,
                                      std::string_view identifier);

/// How the lock screen behaves: what a gesture leads to, with the settings and on the phone as they are then. The clock
/// is the caller's, who hands on the time with each gesture. Each gesture and each outcome is told as one line of the
/// log; outcomes begin with "-> ". One thread.
class Behaviour {
  public:
    using Log = std::function<void(const std::string& line)>;

    Behaviour(platform::Dictionary settings, Device device, Log log);

    /// Takes effect with the next gesture.
    void setSettings(platform::Dictionary settings);
    void setDevice(Device device);
    /// Whether it falls asleep by itself; it does unless told otherwise.
    void setFallsAsleep(bool does) { fallsAsleep_ = does; }

    /// What the gesture makes of the state, at a time that is not before that of the last one.
    const State& apply(const Gesture& gesture, Seconds now);
    /// A finger is on the screen, whatever it is going to do. True if that wakes the screen, and is to do nothing else.
    bool touch(Seconds now);
    /// Goes to a surface as if by hand: a stage of these settings, the passcode view, or the home screen.
    const State& show(Surface surface, Seconds now);

    /// When something happens by itself, if nobody does anything before: it is to be told of that time by a `wait`.
    [[nodiscard]] std::optional<Seconds> nextChange() const;

    /// The place of the notice that has been let go and is leaving.
    [[nodiscard]] std::optional<std::size_t> leaving() const;
    [[nodiscard]] const State& state() const { return state_; }
    [[nodiscard]] const platform::Dictionary& settings() const { return settings_; }
    [[nodiscard]] const Device& device() const { return device_; }

    /// After so many wrong passcodes in a row, the keys do nothing for a while.
    static constexpr int kWrongTries = 4;
    static constexpr Seconds kBlocked = 5;
    /// How long a notice that has been let go takes to leave.
    static constexpr Seconds kSwipe = 0.25;
    /// How much of its width a notice has to be swiped by.
    static constexpr double kSwipedEnough = 0.4;

  private:
    struct Leaving {
        std::size_t place;
        std::string identifier;
        Seconds gone;
        bool unlocksThen;
    };

    void outcome(const std::string& words) const;
    [[nodiscard]] bool staysAwake() const;
    void wait();
    void tap(const Gesture& gesture);
    void hold(const Gesture& gesture);
    void swipe(const Gesture& gesture);
    void swipeNotice(std::size_t place, double share);
    void slide();
    void pull(const std::string& target);
    void key(const std::string& name);
    void moveFocus(const std::string& name);
    void home();
    void sleep();

    void goTo(Surface surface);
    /// The same, and tells of it.
    void changeStage(Surface stage);
    void step(int by);
    void stepView(int by);
    void tapIcon(std::size_t place, bool held);
    void reveal(const AppViewInfo& view);
    void unlockFor(const std::string& identifier);
    void open(const std::string& identifier, bool alone);
    void askForPasscode(const std::string& identifier);
    void type(char digit);
    void cancel();
    void leavePasscode();

    platform::Dictionary settings_;
    Device device_;
    Log log_;
    State state_;
    bool fallsAsleep_ = true;
    std::string awaiting_;              ///< what opens with the right passcode; empty: the home screen
    Surface before_ = Surface::notices; ///< where the passcode was asked for
    int wrong_ = 0;
    Seconds blockedUntil_ = 0;
    std::optional<Leaving> leaving_;
};

} // namespace lumora
