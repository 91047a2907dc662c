#pragma once

#include "settings/host/Snapshot.h"

#include <QRectF>

namespace settings {

/// Where two pictures of a view differ, compared view by view, in points of its parent; empty where they look the same.
/// Any thread.
[[nodiscard]] QRectF changedArea(const ViewSnapshot& before, const ViewSnapshot& after);

} // namespace settings
