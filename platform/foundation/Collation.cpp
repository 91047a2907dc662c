#include "platform/foundation/Collation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <unicode/ucol.h>
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

int32_t lengthOf(std::string_view text) {
    return int32_t(std::min<std::size_t>(text.size(), std::numeric_limits<int32_t>::max()));
}

} // namespace

Collation::Collation(std::string_view locale) {
    // A name that is none is an error to ICU, where a language that it does not know is not.
    for (const std::string& name : {icuName(locale), std::string()}) {
        UErrorCode status = U_ZERO_ERROR;
        const std::shared_ptr<UCollator> collator(ucol_open(name.c_str(), &status), ucol_close);
        if (U_FAILURE(status)) continue;
        ucol_setStrength(collator.get(), UCOL_SECONDARY);
        collator_ = collator;
        return;
    }
}

int Collation::compare(std::string_view a, std::string_view b) const {
    if (!collator_) return a.compare(b); // ICU came without its data: an order at least
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(collator_.get(), a.data(), lengthOf(a), b.data(), lengthOf(b), &status);
}

const Collation& Collation::ofUser() {
    // Never destroyed: another thread may still be comparing while the process ends.
    static const auto& users = *new Collation(usersLocale());
    return users;
}

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    return Collation::ofUser().compare(a, b);
}

} // namespace platform
