#include "platform/foundation/UserLocale.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <unicode/uloc.h>

namespace platform {

/// In POSIX's order of precedence; a variable that is empty counts as not set.
std::string_view usersLocale(const char* category) {
    for (const char* variable : {"LC_ALL", category, "LANG"})
        if (const char* value = std::getenv(variable); value && *value) return value;
    return {};
}

std::string icuLocale(std::string_view locale) {
    const std::string posix(locale);
    const std::string_view language = locale.substr(0, locale.find_first_of(".@"));
    if (language == "C" || language == "POSIX") return {};
    std::array<char, ULOC_FULLNAME_CAPACITY> name{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_canonicalize(posix.c_str(), name.data(), int32_t(name.size()), &status);
    return U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING ? std::string() : std::string(name.data());
}

} // namespace platform
