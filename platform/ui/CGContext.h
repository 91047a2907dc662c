#pragma once

#include "platform/ui/CGGeometry.h"
#include "platform/ui/CGGradient.h"

#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

/// What a view has drawn into itself, as steps that the window repeats on its screen. Immutable once made; any thread.
struct CGDrawing {
    struct SaveState {};
    struct RestoreState {};
    struct Clip {
        CGRect rect; ///< the part of the current clip inside this becomes the clip
    };
    struct LinearGradient {
        CGGradientRef gradient;
        CGPoint start;
        CGPoint end;
        unsigned options; ///< 1: the first colour goes on before the start; 2: the last goes on after the end; added up
    };
    using Step = std::variant<SaveState, RestoreState, Clip, LinearGradient>;

    CGSize size; ///< of the view when it drew, in points; a view of another size shows the drawing stretched
    std::vector<Step> steps;
};
using CGDrawingRef = std::shared_ptr<const CGDrawing>;

/// Where a view draws, in its own coordinates. Keeps steps instead of pixels, since only the screen knows how many
/// pixels a point has. Main thread.
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

/// The context of the view that is drawing itself, null when no view is. Main thread.
[[nodiscard]] PLATFORM_EXPORT CGContext* UIGraphicsGetCurrentContext();

} // namespace platform
