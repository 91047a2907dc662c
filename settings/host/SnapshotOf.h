#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/ui/UITableView.h"
#include "settings/host/Snapshot.h"

#include <cstdint>
#include <string>

namespace settings {

/// The picture of a page as it stands: asks for its rows and reads each editable row's value. Main thread.
[[nodiscard]] PageSnapshot snapshotOf(platform::PSListController& page, const std::string& className, std::uint64_t id);

/// The picture of one row of a page, its value read anew. Main thread.
[[nodiscard]] RowSnapshot snapshotOf(platform::PSListController& page, std::size_t row);

/// The table that a page's view is or holds, the first of them; null for none. Main thread.
[[nodiscard]] platform::UITableView* tableOf(const platform::PSListController& page);

/// The picture of a view and of all that is seen in it, which lays itself out and draws first. Main thread.
[[nodiscard]] ViewSnapshot snapshotOf(platform::UIView& view);

} // namespace settings
