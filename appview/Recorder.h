#pragma once

#include <lumora/AppView.h>

#include "appview/Drawing.h"
#include "appview/TextExtents.h"

#include "platform/foundation/Result.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lumora {

/// The canvas that a plug-in draws upon: records its steps, up to the limits. One thread.
///
///     Recorder recorder(extents);
///     plugin.draw(recorder.canvas(), drawing);
///     auto steps = recorder.take();
class Recorder {
  public:
    explicit Recorder(const TextExtents& extents);
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    [[nodiscard]] const LumoraCanvas& canvas() const { return canvas_; }
    /// What was drawn. Fails if that was too much.
    [[nodiscard]] platform::Result<std::vector<DrawingStep>> take();

  private:
    struct Canvas : LumoraCanvas {
        Recorder* recorder = nullptr;
    };
    static Recorder& of(const LumoraCanvas* canvas) { return *static_cast<const Canvas*>(canvas)->recorder; }

    /// Unless a number is not finite.
    void add(DrawingStep::Kind kind, std::vector<double> numbers, std::string text = {});
    void addPath(const LumoraPathPart* parts, std::size_t count, double thickness);
    LumoraExtent addText(const LumoraText& text);

    const TextExtents& extents_;
    Canvas canvas_;
    std::vector<DrawingStep> steps_;
    std::size_t bytes_ = 0;
    std::string tooMuch_;
};

} // namespace lumora
