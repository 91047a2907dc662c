#pragma once

#include <QWindow>

namespace programs {

/// Has SIGTERM close the window, as its user would, and a second one end the process at once. GUI thread.
void closeAtSigterm(QWindow& window);

} // namespace programs
