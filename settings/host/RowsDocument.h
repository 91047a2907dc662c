#pragma once

#include "platform/foundation/Value.h"
#include "settings/host/Snapshot.h"

namespace settings {

/// A page as a document for scripts and tests, keys in this order:
///
///     {"page": "LumoraPreferences", "rows": [{"cell": 6, "name": "…", "identifier": "…", "value": true}, …]}
///
/// A row also shows which of `footerText`, `placeholder`, `min`, `max`, `showValue`, `titles`, `values`, `detail` and
/// `icon` it has; a row without a value has no "value", and the values of secure fields are dots. A page that hosts a
/// view has "view" (its class, nil for none) and "sections" in place of "rows", those of the view's table:
///
///     {"header": "Enabled", "footer": "…", "rows": [{"identifier": "…", "title": "…", "marked": false}, …]}
///
/// Of a table, the document holds the rows that the snapshot has cells for. Any thread.
[[nodiscard]] platform::Value rowsDocument(const PageSnapshot& page);

} // namespace settings
