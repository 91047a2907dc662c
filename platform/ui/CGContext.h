#pragma once

#include "platform/ui/CGGeometry.h"
#include "platform/ui/CGGradient.h"

#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

/// What a view has drawn into itself, step by step, for whoever has a screen to repeat. Immutable once made.
struct CGDrawing {
    struct SaveState {};
    struct RestoreState {};
    struct Clip {
        CGRect rect; ///< the clip becomes what it was, within this
    };
    struct LinearGradient {
        CGGradientRef gradient;
        CGPoint start;
        CGPoint end;
        unsigned options; ///< whether the end colours go on before the start (1) and after the end (2)
    };
    using Step = std::variant<SaveState, RestoreState, Clip, LinearGradient>;

    CGSize size; ///< of the view when it drew; in a view of another size the drawing is stretched
    std::vector<Step> steps;
};
using CGDrawingRef = std::shared_ptr<const CGDrawing>;

/// Where a view draws, in its own coordinates: keeps the steps instead of making pixels, which only the screen knows
/// the number of. Main thread.
class CGContext {
  public:
    explicit CGContext(CGSize size) : drawing_{size, {}} {}

    void saveGState() { drawing_.steps.emplace_back(CGDrawing::SaveState{}); }
    void restoreGState() { drawing_.steps.emplace_back(CGDrawing::RestoreState{}); }
    void clipToRect(const CGRect& rect) { drawing_.steps.emplace_back(CGDrawing::Clip{rect}); }
    /// A null gradient draws nothing.
    void drawLinearGradient(CGGradientRef gradient, CGPoint start, CGPoint end, unsigned options) {
        if (gradient) drawing_.steps.emplace_back(CGDrawing::LinearGradient{std::move(gradient), start, end, options});
    }

    [[nodiscard]] CGDrawing take() && { return std::move(drawing_); }

  private:
    CGDrawing drawing_;
};

/// The context of the view that is drawing itself, null when none is. Main thread.
[[nodiscard]] PLATFORM_EXPORT CGContext* UIGraphicsGetCurrentContext();

} // namespace platform
