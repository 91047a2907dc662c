#pragma once

#include "lockscreen/Gesture.h"
#include "lockscreen/Look.h"

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string>
#include <vector>

namespace lumora {

/// A picture of a tour.
struct TourScene {
    std::string name; ///< of its file, without ".png"
    platform::Dictionary settings;
    Surface surface = Surface::notices; ///< where the gestures begin
    std::vector<Gesture> gestures;
    std::string wallpaper = "dusk";
    bool landscape = false;
    double ratio = 1;   ///< pixels to a point
    int textSize = 100; ///< of texts in App Views, in percent
};

/// Reads a document of scenes:
///
///     {"settings": {"kTweakEnabled": true},      of all scenes
///      "scenes": [{"name": "passcode-typed", "settings": {"kLSPButtonDiam": 10}, "surface": "P",
///                  "gestures": ["key 1", "key 2"], "wallpaper": "night", "landscape": true, "ratio": 2,
///                  "textSize": 200}]}
///
/// A scene needs no more than a name. Fails for what no scene has.
[[nodiscard]] platform::Result<std::vector<TourScene>> scenesIn(const platform::Value& document);

} // namespace lumora
