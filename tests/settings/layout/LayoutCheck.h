#pragma once

#include <QQuickItem>

#include <string>
#include <vector>

namespace tests {

/// What a person could not read in a drawn window, a sentence for each: texts that are cut off, are larger than their
/// item, or stand out of their row or the window; texts and controls that overlap.
///
///     for (const std::string& fault : layoutFaults(*window.contentItem())) complain(fault);
///
/// The title of the navigation bar and the rows of a table may cut a text, because their height is fixed; assistive
/// tools have to be told all of it. Fields of one line scroll. What is scrolled out of view is looked at. GUI thread.
[[nodiscard]] std::vector<std::string> layoutFaults(const QQuickItem& root);

/// A sentence for each control and text that is neither in the window nor where scrolling brings it there.
[[nodiscard]] std::vector<std::string> reachFaults(const QQuickItem& root);

/// A sentence if what has the focus is out of view, or where the cursor is in a text of several lines.
[[nodiscard]] std::vector<std::string> focusFaults(const QQuickItem& root);

/// Each text that is seen and the size of its letters in pixels, so that two states of a window can be compared.
struct TextSize {
    const QQuickItem* item;
    QString text;
    int pixels;
};
[[nodiscard]] std::vector<TextSize> textSizes(const QQuickItem& root);
/// A sentence for each text that is smaller now than it is in the list.
[[nodiscard]] std::vector<std::string> smallerThan(const std::vector<TextSize>& before, const QQuickItem& root);

} // namespace tests
