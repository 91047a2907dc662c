#pragma once

#include "lockscreen/Look.h"

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// Where the effect of a key is to be seen: what else is set, and what has been done.
struct Scene {
    Surface surface = Surface::notices;
    platform::Value shown;            ///< a value that differs from the stock in what is seen
    platform::Dictionary others = {}; ///< other settings, beside kTweakEnabled
    std::string events = {};          ///< for Behaviour, one a line
    bool landscape = false;
    bool passcode = true; ///< the phone has one, "1234"
};

/// A key of the tweak's settings, as the lock screen understands it. docs/lockscreen.md tells each key's effect in words.
struct KeyEntry {
    struct Bounds {
        double least;
        double most;
    };

    std::string_view key;
    platform::Value stock;        ///< what counts without the tweak, for a missing key and for a value of a wrong kind
    std::optional<Bounds> bounds; ///< of a number; one beyond them counts as the nearest
    std::vector<std::string_view> paths; ///< what it may change: fields of Look, with all that is in them
    Scene scene;
    std::string_view line = {}; ///< of the event log, which tells the effect where no picture does
};

/// All keys, in the order of the pages that edit them. Any thread.
[[nodiscard]] const std::vector<KeyEntry>& keyTable();
/// Null for a key of a plug-in. Any thread.
[[nodiscard]] const KeyEntry* findKey(std::string_view key);

/// A tweak's settings as they are drawn: with the stock in place of what is missing or of a wrong kind, numbers within
/// their bounds, and all of it stock when the tweak is off. Keeps the dictionary that it is given by reference.
class Style {
  public:
    explicit Style(const platform::Dictionary& settings);

    [[nodiscard]] bool isOn() const { return on_; }
    [[nodiscard]] bool flag(std::string_view key) const { return value(key).boolValue(); }
    [[nodiscard]] double number(std::string_view key) const;
    [[nodiscard]] int count(std::string_view key) const; ///< a number, rounded
    [[nodiscard]] std::string text(std::string_view key) const;
    [[nodiscard]] std::vector<std::string> texts(std::string_view key) const;
    [[nodiscard]] Color color(std::string_view key) const;

  private:
    [[nodiscard]] platform::Value value(std::string_view key) const;

    const platform::Dictionary& settings_;
    bool on_ = false;
};

} // namespace lumora
