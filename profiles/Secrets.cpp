#include "profiles/Secrets.h"

#include "tweak/Defaults.h"

#include <utility>

using platform::Value;

namespace profiles {
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
    return !shown_.contains(key) && lumora::mayBeSecret(key, value);
}

} // namespace profiles
