#include "lockscreen/Turning.h"

#include "lockscreen/KeyTable.h"
#include "lockscreen/LookOf.h"

#include <algorithm>
#include <utility>

using platform::Dictionary;

namespace lumora {

void Turning::setFollows(bool does) {
    follows_ = does;
    if (!does) changed_.reset();
}

void Turning::changed(const Dictionary& before, const std::set<std::string>& keys, Seconds now) {
    if (!follows_ || keys.empty()) return;
    if (!changed_) changed_ = Changed{before, {}};
    changed_->keys.insert(keys.begin(), keys.end());
    since_ = now;
}

std::optional<Seconds> Turning::due() const {
    if (!changed_) return {};
    return touched_ ? std::max(since_ + kRest, *touched_ + kLeftAlone) : since_ + kRest;
}

Turning::Changed Turning::take() {
    return *std::exchange(changed_, std::nullopt);
}

std::optional<Surface> surfaceOf(const Turning::Changed& changed, const Dictionary& settings, const Device& device,
                                 const State& state) {
    if (changedFrame(lookOf(changed.before, device, state), lookOf(settings, device, state))) return state.surface;
    for (const std::string& key : changed.keys)
        if (const KeyEntry* entry = findKey(key)) return entry->scene.surface;
    return {};
}

} // namespace lumora
