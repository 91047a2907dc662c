#include "link/SettingsSession.h"

#include "link/Notify.h"
#include "platform/foundation/NSKeyedArchiver.h"

#include <utility>

namespace lumora {

using namespace platform;

bool SettingsSession::start() {
    replaceLock();
    notify("requestTweakSettings", nullptr, [this](const std::optional<Data>& reply) { store(reply); });

    // Kept on purpose: no time limit and no defaults. Without the tweak's settings there is no page.
    while (settings().isNil())
        waitOnce();
    return true;
}

void SettingsSession::replaceLock() {
    auto lock = std::make_shared<NSCondition>();
    {
        const std::lock_guard held(slots_);
        std::swap(lock_, lock);
    }
    if (lock) wake(*lock); // whoever waits there goes on to wait on the new one, which is the one to be signalled
}

void SettingsSession::waitOnce() {
    const auto lock = currentLock();
    lock->lock();
    if (settings().isNil() && lock == currentLock()) lock->wait();
    lock->unlock();
}

void SettingsSession::store(const std::optional<Data>& reply) {
    auto settings = reply ? NSKeyedUnarchiver::unarchiveObjectWithData(*reply) : Value();
    {
        const std::lock_guard held(slots_);
        settings_ = std::move(settings);
    }
    // The lock is taken after the store and not before: one that is replaced in between has been woken by then, and its
    // waiter finds the settings when it looks again.
    wake(*currentLock());
}

void SettingsSession::wake(NSCondition& lock) {
    lock.lock();
    lock.broadcast();
    lock.unlock();
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
    notify("updateSettings", Dictionary{{"key", key}, {"object", value}}, nullptr);
}

} // namespace lumora
