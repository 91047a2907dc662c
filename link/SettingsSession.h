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
/// This side keeps no defaults and no file: a value that the tweak did not send reads as nil. Only the main thread
/// starts, reads and edits. Replies land from worker threads; each signals the lock that is current when it comes, and
/// the one that has replaced it meanwhile.
class LUMORA_KIT_EXPORT SettingsSession {
  public:
    SettingsSession() = default;
    SettingsSession(const SettingsSession&) = delete;
    SettingsSession& operator=(const SettingsSession&) = delete;

    /// The creation of one instance: replaces the lock, asks the tweak for its settings and, while the slot is empty,
    /// waits on that lock. Always true. Kept on purpose: the wait has no time limit and no fallback. Also on purpose,
    /// the slot is read after the request is sent: an empty reply that lands before that empties the slot, and this
    /// start waits although there were settings when it began.
    bool start();

    /// The value under a preference key, nil when the slot or the entry is empty.
    [[nodiscard]] platform::Value value(const std::string& key) const;
    /// The slot itself: the settings dictionary, nil before the first reply and after an empty one.
    [[nodiscard]] platform::Value settings() const;

    /// Stores the value under the key and sends it to the tweak, as one "updateSettings" message. With an empty slot it
    /// only sends.
    void setValue(const platform::Value& value, const std::string& key);

  private:
    /// Stores a reply, on a worker thread. An empty one empties the slot.
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
