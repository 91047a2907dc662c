#pragma once

#include <QQuickItem>

#include <string>
#include <vector>

namespace tests {

/// A sentence for each thing in a drawn window that can be pressed and that a finger may miss: one with less than 44 × 44
/// points in which it takes a touch.
///
/// Left out is what has another size for a reason: rows of tables and what is on the views that pages host, such as the
/// bar of the brightness, whose sizes the pages set, as on the device; and what
/// is for the mouse alone, the bar that shows where a page stands and the line between two columns, beside which fingers
/// have a part of their own. GUI thread.
[[nodiscard]] std::vector<std::string> targetFaults(const QQuickItem& root);

} // namespace tests
