#pragma once

#include "platform/foundation/Value.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace profiles {

using Keys = std::set<std::string, std::less<>>;

/// Which settings no profile holds: passcodes, the tweak's own and those that plug-ins' pages show as dots. Any thread.
class Secrets {
  public:
    /// The tweak's own.
    Secrets() = default;
    /// With what the rows of all pages tell: the keys that they show as dots, and those that they show.
    Secrets(Keys hidden, Keys shown);
    /// Where nobody knows what the pages of plug-ins show: all that is not the tweak's own counts as secret.
    [[nodiscard]] static Secrets ofUnknownPages();

    [[nodiscard]] bool isSecret(std::string_view key) const;

    /// Whether there is text in the value of a plug-in's setting that no row shows, so that nobody can tell. Such a value
    /// is passed on only for a person who names its key.
    [[nodiscard]] bool mayBeSecret(std::string_view key, const platform::Value& value) const;

  private:
    Keys hidden_;
    Keys shown_;
    bool pagesAreKnown_ = true;
};

} // namespace profiles
