#include "link/SettingsSession.h"

#include "link/Messages.h"
#include "link/Notify.h"
#include "platform/foundation/NSKeyedArchiver.h"

#include <utility>

namespace lumora {

using namespace platform;

bool SettingsSession::start() {
    const auto lock = std::make_shared<NSCondition>();
    {
        const std::lock_guard held(slots_);
        lock_ = lock;
    }
    notify(kRequestTweakSettings, nullptr, [this](const std::optional<Data>& reply) { store(reply); });

    // Kept on purpose: no time limit and no defaults. Without the tweak's settings there is no page.
    lock->lock();
    while (settings().isNil())
        lock->wait();
    lock->unlock();
    return true;
}

void SettingsSession::store(const std::optional<Data>& reply) {
    const auto lock = currentLock();
    lock->lock();
    auto settings = reply ? NSKeyedUnarchiver::unarchiveObjectWithData(*reply) : Value();
    {
        const std::lock_guard held(slots_);
        settings_ = std::move(settings);
    }
    lock->signal();
    lock->unlock();

    // A creation that replaced the lock before the store waits on the new one; a later creation finds the settings.
    const auto replaced = currentLock();
    if (replaced == lock) return;
    replaced->lock();
    replaced->signal();
    replaced->unlock();
}

std::shared_ptr<NSCondition> SettingsSession::currentLock() const {
    const std::lock_guard held(slots_);
    return lock_;
}

Value SettingsSession::settings() const {
    const std::lock_guard held(slots_);
    return settings_;
}

Value SettingsSession::value(const std::string& key) const {
    return settings()[key];
}

void SettingsSession::setValue(const Value& value, const std::string& key) {
    {
        const std::lock_guard held(slots_);
        if (const auto* current = settings_.dictionary()) {
            Dictionary edited = *current;
            edited.set(key, value);
            settings_ = std::move(edited);
        }
    }
    notify(kUpdateSettings, changeOf(key, value), nullptr);
}

} // namespace lumora
