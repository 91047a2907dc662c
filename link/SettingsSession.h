#pragma once

#include "link/KitExport.h"
#include "platform/foundation/NSCondition.h"
#include "platform/foundation/Value.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lumora {

/// The settings session: a class's copy of the tweak's settings, and the lock on which the creation of an instance
/// waits.
///
/// Every page class and every editing view class has a session of its own, sessionOf<Class>(), which all instances share
/// for the life of the process:
///
///     AppsController::AppsController() : SettingsPage(sessionOf<AppsController>()) {}
///
/// This side has neither defaults nor a file: a value that the tweak did not send reads as nil. Only the main thread
/// calls the operations below. Replies land on worker threads; each signals the lock that is current when it comes, and
/// the one that has replaced it meanwhile.
class LUMORA_KIT_EXPORT SettingsSession {
  public:
    SettingsSession() = default;
    SettingsSession(const SettingsSession&) = delete;
    SettingsSession& operator=(const SettingsSession&) = delete;

    /// What the creation of an instance does: replaces the lock, asks the tweak for its settings and, while the slot is
    /// empty, waits on the new lock. Always true. Kept on purpose: the wait has no time limit and no fallback. Also on
    /// purpose, the slot is read after the request is sent: an empty reply that lands before that empties the slot, and
    /// this start waits although there were settings when it began.
    bool start();

    /// The value under a preference key; nil if the slot is empty or the key is missing.
    [[nodiscard]] platform::Value value(const std::string& key) const;
    /// The slot itself: the settings dictionary; nil before the first reply and after an empty one.
    [[nodiscard]] platform::Value settings() const;

    /// Stores the value under the key and sends it to the tweak, as one "updateSettings" message. While the slot is
    /// empty, it only sends.
    void setValue(const platform::Value& value, const std::string& key);

  private:
    /// Stores a reply, on a worker thread. An empty reply empties the slot.
    void store(const std::optional<platform::Data>& reply);
    [[nodiscard]] std::shared_ptr<platform::NSCondition> currentLock() const;

    mutable std::mutex slots_; ///< guards the two slots below, never held while waiting
    std::shared_ptr<platform::NSCondition> lock_;
    platform::Value settings_;
};

/// The one session of a class, never destroyed: replies may land as long as the process lives. Only the class's own
/// .cpp calls this.
template<class Owner>
SettingsSession& sessionOf() {
    static auto& session = *new SettingsSession;
    return session;
}

} // namespace lumora
