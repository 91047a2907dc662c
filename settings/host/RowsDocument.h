#pragma once

#include "platform/foundation/Value.h"
#include "settings/host/Snapshot.h"

namespace settings {

/// A page as a document for scripts and tests, keys in this order:
///
///     {"page": "LumoraPreferences", "rows": [{"cell": 6, "name": "…", "identifier": "…", "value": true}, …]}
///
/// Each row has besides what it has of `footerText`, `placeholder`, `min`, `max`, `showValue`, `titles`, `values`,
/// `detail`, `icon`; a row without a value has no "value", and the values of secure fields are dots. A page that hosts
/// a view has "view" (its class, nil when there is none) and "sections" in place of "rows", those of the view's table:
///
///     {"header": "Enabled", "footer": "…", "rows": [{"identifier": "…", "title": "…", "marked": false}, …]}
///
/// Only rows that the snapshot has cells for are in it. Any thread.
[[nodiscard]] platform::Value rowsDocument(const PageSnapshot& page);

} // namespace settings
