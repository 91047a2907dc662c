#pragma once

#include <QQuickItem>

#include <string>
#include <vector>

namespace tests {

/// What a person could not read or would see twice of a drawn window, a sentence for each: texts that are cut off, that
/// are larger than their item, or that stand out of their row or the window; texts and controls that overlap.
///
///     for (const std::string& fault : layoutFaults(*window.contentItem())) complain(fault);
///
/// Two places may cut a text, because their height is fixed: the title of the navigation bar and the rows of a table.
/// There the full text has to be what assistive tools are told. Fields of one line scroll. What is scrolled out of view
/// is looked at, too. GUI thread.
[[nodiscard]] std::vector<std::string> layoutFaults(const QQuickItem& root);

} // namespace tests
