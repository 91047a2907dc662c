#include "profiles/Secrets.h"

#include "tweak/Defaults.h"

#include <algorithm>
#include <utility>

using platform::Value;

namespace profiles {
namespace {

bool hasText(const Value& value) {
    if (const auto* list = value.list()) return std::ranges::any_of(*list, hasText);
    if (const auto* dictionary = value.dictionary())
        return std::ranges::any_of(*dictionary, [](const auto& entry) { return hasText(entry.second); });
    return (value.text() && !value.text()->empty()) || value.data();
}

} // namespace

Secrets::Secrets(Keys hidden, Keys shown) : hidden_(std::move(hidden)), shown_(std::move(shown)) {
}

Secrets Secrets::ofUnknownPages() {
    Secrets secrets;
    secrets.pagesAreKnown_ = false;
    return secrets;
}

bool Secrets::isSecret(std::string_view key) const {
    return lumora::isSecure(key) || hidden_.contains(key) || (!pagesAreKnown_ && !lumora::findSetting(key));
}

bool Secrets::mayBeSecret(std::string_view key, const Value& value) const {
    return !lumora::findSetting(key) && !shown_.contains(key) && hasText(value);
}

} // namespace profiles
