#include "profiles/Differences.h"

#include "tweak/Defaults.h"

using platform::Dictionary;
using platform::Value;

namespace profiles {
namespace {

std::optional<Value> valueOf(const Dictionary& dictionary, const std::string& key) {
    const Value* value = dictionary.find(key);
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

bool isSame(std::string_view key, const Value& a, const Value& b) {
    if (meansTheSame(a, b)) return true;
    return lumora::findSetting(key) && a.isNumber() && b.isNumber() && a.doubleValue() == b.doubleValue();
}

std::vector<Difference> changesBy(const Dictionary& named, const Dictionary& settings) {
    std::vector<Difference> changes;
    for (const auto& [key, value] : named) {
        const Value* now = settings.find(key);
        if (!now || !isSame(key, *now, value)) changes.push_back({key, valueOf(settings, key), value});
    }
    return changes;
}

std::vector<Difference> differences(const Dictionary& before, const Dictionary& after) {
    std::vector<Difference> found;
    for (const auto& [key, value] : before) {
        const Value* then = after.find(key);
        if (!then || !isSame(key, value, *then)) found.push_back({key, value, valueOf(after, key)});
    }
    for (const auto& [key, value] : after)
        if (!before.contains(key)) found.push_back({key, std::nullopt, value});
    return found;
}

} // namespace profiles
