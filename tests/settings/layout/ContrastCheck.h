#pragma once

#include <QImage>
#include <QQuickItem>

#include <string>
#include <vector>

namespace tests {

/// The least contrast of what is drawn with its ground, where 1 is none and 21 is black on white.
struct Contrast {
    double texts;
    double signs; ///< chevrons, check marks, handles, the ring around what has the focus
    double edges; ///< of a switch and a slider, of which two parts stand out from each other and from the ground
};

/// What a person with weak eyes could not make out in a picture of a window, a sentence for each. Only the items' places
/// are taken from the window: how they look is read from the pixels. What is disabled may be faint. GUI thread.
///
///     for (const std::string& fault : contrastFaults(*window.contentItem(), window.grabWindow(), {4.5, 3, 3}))
///         complain(fault);
[[nodiscard]] std::vector<std::string> contrastFaults(const QQuickItem& root, const QImage& picture, Contrast least);

} // namespace tests
