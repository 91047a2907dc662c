#pragma once

#include "search/PageLine.h"
#include "settings/host/Snapshot.h"

namespace settings {

/// What can be found on a page, for the index of all pages:
///
/// - each row but groups; a slider under the static text above it, which is no entry of its own
/// - each row of the page's table that the snapshot has a cell for
/// - each group without rows, by its text
///
/// `opener` is the row that opens the page, null for the first one. Values are left out, and texts are cut
/// off behind 4096 bytes. Any thread.
[[nodiscard]] search::PageLine pageLineOf(const PageSnapshot& page, search::Way way, const RowSnapshot* opener);

} // namespace settings
