#pragma once

#include "platform/foundation/Value.h"
#include "profiles/Differences.h"
#include "profiles/Secrets.h"
#include "search/Index.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// What people know settings by: the titles of their rows, as the index of all pages has them. Without an index, or a
/// row, it is the key.
class RowNames {
  public:
    explicit RowNames(const std::optional<search::Index>& index);

    /// "Lockscreen Apps › Icon Size (kAppIconSize)".
    [[nodiscard]] std::string nameOf(const std::string& key) const;

    /// "NAME: OLD → NEW", with values as JSON, long ones cut, and `unset` where there is none.
    [[nodiscard]] std::string lineOf(const profiles::Difference& difference, std::string_view unset = "not set") const;

    /// The same for programs: "key", where there are any "title" and "path", "old" and "new".
    [[nodiscard]] platform::Dictionary documentOf(const profiles::Difference& difference) const;

  private:
    struct Row {
        std::string title;
        platform::List path; ///< the titles of the pages to open, without the first
    };
    std::map<std::string, Row, std::less<>> rows_;
};

/// Which settings are secret, for a dictionary of settings. Where plug-ins' are among them, the index of all pages is
/// asked, and made if it has to be; an empty root is the program's own.
[[nodiscard]] profiles::Secrets secretsFor(const platform::Dictionary& settings, const std::filesystem::path& root);

} // namespace lumora
