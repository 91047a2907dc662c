#include "platform/foundation/Collation.h"

#include "platform/foundation/UserLocale.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <unicode/coll.h>

namespace platform {
namespace {

icu::StringPiece piece(std::string_view text) {
    return {text.data(), int32_t(std::min<std::size_t>(text.size(), std::numeric_limits<int32_t>::max()))};
}

} // namespace

struct Collation::Rules {
    std::unique_ptr<icu::Collator> collator;
};

Collation::Collation(std::string_view locale) {
    // ICU accepts a language that it does not know, but not a name that is malformed.
    for (const std::string& name : {icuLocale(locale), std::string()}) {
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
    static const auto& users = *new Collation(usersLocale("LC_COLLATE"));
    return users;
}

} // namespace platform
