#pragma once

#include "settings/host/Snapshot.h"

#include <QRectF>

namespace settings {

/// The part of the parent in which two pictures of a view look different, as far as can be told view by view; empty
/// when they look alike. Any thread.
[[nodiscard]] QRectF changedArea(const ViewSnapshot& before, const ViewSnapshot& after);

} // namespace settings
