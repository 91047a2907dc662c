#pragma once

#include "platform/foundation/Value.h"

#include <cstdint>
#include <string>

/// What the settings bundle and the tweak agree on: the facts of docs/ports.md that both need, and so does every program
/// that speaks to either. Each is spelled here and nowhere else.
namespace lumora {

/// The two messages of the bundle. Each has a port of its own.
inline constexpr const char* kRequestTweakSettings = "requestTweakSettings";
inline constexpr const char* kUpdateSettings = "updateSettings";

/// An optional third one, of a program that shows the settings while they change. A tweak may be without it.
inline constexpr const char* kFollowSettings = "followSettings";

/// Two more, each optional as well: what has changed and when, and the settings' defaults.
inline constexpr const char* kHistory = "history";
inline constexpr const char* kDefaults = "defaults";

inline std::string portName(const std::string& message) {
    return "com.nevo.lumora/" + message;
}

/// The name of its port alone tells which message it is, so all messages have this id.
inline constexpr std::int32_t kMessageId = 0;

/// In seconds. Once both are over, no answer can come.
inline constexpr double kSendTimeout = 1.0;
inline constexpr double kReceiveTimeout = 1.0;

/// What the dictionaries in the bodies of messages hold.
inline constexpr const char* kObjectEntry = "object";
inline constexpr const char* kKeyEntry = "key";
inline constexpr const char* kPortEntry = "port";
inline constexpr const char* kRevisionEntry = "revision";
inline constexpr const char* kSettingsEntry = "settings";
inline constexpr const char* kSinceEntry = "since";     ///< the revision after which records are asked for
inline constexpr const char* kClearEntry = "clear";     ///< true: the history is to be forgotten
inline constexpr const char* kRecordsEntry = "records"; ///< documentOf() of each record, from the oldest
inline constexpr const char* kMoreEntry = "more";       ///< true: there are later ones
inline constexpr const char* kErrorEntry = "error";     ///< one line that says why a change is refused

/// {"object": object}, the body of any message that has one.
inline platform::Dictionary messageWith(const platform::Value& object) {
    return platform::Dictionary{{kObjectEntry, object}};
}

/// {"key": key, "object": value}, the object of an "updateSettings" message.
inline platform::Dictionary changeOf(const std::string& key, const platform::Value& value) {
    return platform::Dictionary{{kKeyEntry, key}, {kObjectEntry, value}};
}

/// {"revision": number, "settings": dictionary}: what a follower is answered, and what the messages to it are about.
inline platform::Dictionary revisionOf(std::int64_t revision, const platform::Dictionary& settings) {
    return platform::Dictionary{{kRevisionEntry, revision}, {kSettingsEntry, settings}};
}

/// What is shown in place of a secure value.
inline constexpr const char* kSecureDots = "•••";

} // namespace lumora
