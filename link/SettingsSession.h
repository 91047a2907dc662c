#pragma once

#include "link/KitExport.h"
#include "platform/foundation/NSCondition.h"
#include "platform/foundation/Value.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lumora {

/// The settings session: a class's copy of the tweak's settings, and the lock that its creation waits on.
///
/// Every page class and every editing view class has one of its own, sessionOf<Class>(), shared by all instances for
/// the life of the process:
///
///     AppsController::AppsController() : SettingsPage(sessionOf<AppsController>()) {}
///
/// There is no default value and no file on this side: what the tweak did not send reads as nil. The main thread alone
/// starts, reads and edits; replies land from worker threads, each under the lock that is current when it comes, and
/// wake whoever waits on that lock, or on the one that has replaced it meanwhile.
class LUMORA_KIT_EXPORT SettingsSession {
  public:
    SettingsSession() = default;
    SettingsSession(const SettingsSession&) = delete;
    SettingsSession& operator=(const SettingsSession&) = delete;

    /// The creation of one instance: replaces the lock, asks the tweak for its settings and, only while the slot is
    /// empty, waits on that lock. Always true. Kept on purpose: the wait has no time limit and no fallback; and the
    /// slot is looked at after the request was sent, so a reply that holds nothing and lands before that look empties
    /// the slot under this very start, which then waits, although there were settings when it began.
    bool start();

    /// The value under a preference key, nil when the slot or the entry is empty.
    [[nodiscard]] platform::Value value(const std::string& key) const;
    /// The slot itself: the settings dictionary, nil before the first reply and after one that held nothing.
    [[nodiscard]] platform::Value settings() const;

    /// Stores the value under the key and sends it to the tweak, as one "updateSettings" message. With an empty slot
    /// there is nothing to store it in; it is sent all the same.
    void setValue(const platform::Value& value, const std::string& key);

  private:
    /// A reply landed, on a worker thread. One that holds nothing empties the slot.
    void store(const std::optional<platform::Data>& reply);
    [[nodiscard]] std::shared_ptr<platform::NSCondition> currentLock() const;

    mutable std::mutex slots_; ///< guards the two slots below, never held while waiting
    std::shared_ptr<platform::NSCondition> lock_;
    platform::Value settings_;
};

/// The one session of a class, never destroyed: replies may land as long as the process lives. To be called in the
/// class's own .cpp only.
template<class Owner>
SettingsSession& sessionOf() {
    static auto& session = *new SettingsSession;
    return session;
}

} // namespace lumora
