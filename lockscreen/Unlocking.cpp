// What it takes to open an application or the phone.

#include "lockscreen/Behaviour.h"
#include "lockscreen/KeyTable.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <utility>

namespace lumora {

void Behaviour::unlockFor(const std::string& identifier) {
    const Style style(settings_);
    const std::string& passcode = device_.passcode;
    const auto excepted = style.texts(kAUAppsDisabled);
    const bool automatic = style.flag(kAutoUnlockEnabled) && style.text(kAutoUnlockPasscode) == passcode &&
                           std::ranges::find(excepted, identifier) == excepted.end();
    const bool fully = style.flag(kFullAutoUnlockEnabled) && style.text(kAutoUnlockPasscodeConfirm) == passcode;
    if (passcode.empty() || !state_.locked)
        open(identifier, false);
    else if (!automatic)
        askForPasscode(identifier);
    else
        open(identifier, !fully);
}

void Behaviour::open(const std::string& identifier, bool alone) {
    if (state_.locked && !alone) outcome("unlocked");
    if (alone) outcome("unlocked for " + identifier + " alone");
    state_.locked = state_.locked && alone;
    state_.opened = Opened{identifier, alone};
    goTo(Surface::opened);
    outcome(identifier.empty() ? "home screen" : "opens " + identifier);
}

void Behaviour::askForPasscode(const std::string& identifier) {
    before_ = state_.surface == Surface::opened ? Surface::notices : state_.surface;
    awaiting_ = identifier;
    state_.typed.clear();
    goTo(Surface::passcode);
    outcome("asks for the passcode");
}

void Behaviour::type(char digit) {
    if (state_.blocked || device_.passcode.empty()) return;
    state_.typed += digit;
    if (state_.typed.size() < device_.passcode.size()) return;
    const bool right = std::exchange(state_.typed, {}) == device_.passcode;
    if (right) {
        wrong_ = 0;
        open(awaiting_, false);
        return;
    }
    outcome("wrong");
    if (++wrong_ < kWrongTries) return;
    wrong_ = 0;
    state_.blocked = true;
    blockedUntil_ = state_.now + kBlocked;
    outcome("takes no keys for 5 s");
}

void Behaviour::cancel() {
    if (!state_.typed.empty()) {
        state_.typed.pop_back(); // the button reads "Delete" then
        return;
    }
    leavePasscode();
}

void Behaviour::leavePasscode() {
    goTo(before_);
    outcome("back");
}

} // namespace lumora
