#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <ctime>
#include <string_view>

namespace lumora {

/// What an App View's plug-in is told of what it is to draw (LumoraDrawing).
struct DrawingQuestion {
    double width = 0; ///< in points of the view, as the height
    double height = 0;
    double textScale = 1;
    bool dark = true;
    std::tm time{};                ///< the phone's
    platform::Dictionary settings; ///< the plug-in's own

    /// Whether the same drawing is asked for; the time does not count.
    [[nodiscard]] bool isLike(const DrawingQuestion& other) const;
};

/// Those settings of which the keys begin with the plug-in's identifier and a dot.
[[nodiscard]] platform::Dictionary ownSettings(const platform::Dictionary& all, std::string_view identifier);

/// As a keyed archive; nothing fails but for settings that no archive can hold. Any thread.
[[nodiscard]] platform::Result<platform::Data> writeQuestion(const DrawingQuestion& question);
[[nodiscard]] platform::Result<DrawingQuestion> readQuestion(const platform::Data& archive);

} // namespace lumora
