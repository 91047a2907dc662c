#pragma once

#include <QQuickWindow>

namespace settings {

/// Has SIGTERM close the window, as its user would, and a second one end the process at once. GUI thread.
void closeAtSigterm(QQuickWindow& window);

} // namespace settings
