#include "platform/foundation/Collation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <unicode/coll.h>
#include <unicode/uloc.h>

namespace platform {
namespace {

/// The name under which ICU knows a locale of the environment; empty is its root.
std::string icuName(std::string_view locale) {
    const std::string posix(locale);
    const std::string_view language = locale.substr(0, locale.find_first_of(".@"));
    if (language == "C" || language == "POSIX") return {};
    std::array<char, ULOC_FULLNAME_CAPACITY> name{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_canonicalize(posix.c_str(), name.data(), int32_t(name.size()), &status);
    return U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING ? std::string() : std::string(name.data());
}

/// POSIX's order of precedence; a variable that is empty counts as not set.
std::string_view usersLocale() {
    for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"})
        if (const char* value = std::getenv(variable); value && *value) return value;
    return {};
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), int32_t(std::min<std::size_t>(text.size(), std::numeric_limits<int32_t>::max()))};
}

} // namespace

struct Collation::Rules {
    std::unique_ptr<icu::Collator> collator;
};

Collation::Collation(std::string_view locale) {
    // ICU accepts a language that it does not know, but not a name that is malformed.
    for (const std::string& name : {icuName(locale), std::string()}) {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(name.c_str()), status));
        if (U_FAILURE(status)) continue;
        collator->setStrength(icu::Collator::SECONDARY);
        rules_ = std::make_shared<const Rules>(Rules{std::move(collator)});
        return;
    }
}

int Collation::localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) const {
    if (!rules_) return a.compare(b); // ICU came without its data: an order at least
    UErrorCode status = U_ZERO_ERROR;
    return rules_->collator->compareUTF8(piece(a), piece(b), status);
}

const Collation& Collation::ofUser() {
    // Never destroyed: another thread may still be comparing while the process ends.
    static const auto& users = *new Collation(usersLocale());
    return users;
}

} // namespace platform
