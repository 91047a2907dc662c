#pragma once

#ifndef Q_MOC_RUN // which cannot read concepts
#include "search/Index.h"
#endif
#include "platform/foundation/Value.h"

#include <QString>

#include <map>
#include <optional>
#include <string>

namespace settings {

/// What people know settings by, as the index of all pages has it: the titles of rows and of the pages that lead to them,
/// and values as rows show them. Without an index, or a row, it is the key, and a plain form of the value. A passcode is
/// dots. GUI thread.
class SettingNames {
  public:
    SettingNames() = default;
    explicit SettingNames(search::Index index);

    [[nodiscard]] QString titleOf(const std::string& key) const;
    /// "Lockscreen Apps › Icons"; empty for none.
    [[nodiscard]] QString pathOf(const std::string& key) const;
    /// Nil is a value that was never set.
    [[nodiscard]] QString shown(const std::string& key, const platform::Value& value) const;

  private:
    [[nodiscard]] const search::Entry* entryOf(const std::string& key) const;

    /// The place in the index of the page that shows it as a whole.
    [[nodiscard]] std::optional<std::size_t> pageOf(const std::string& key) const;

    search::Index index_;
    std::map<std::string, std::size_t> entries_; ///< by key: the place in the index
};

} // namespace settings
