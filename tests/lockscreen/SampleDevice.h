#pragma once

#include "lockscreen/Behaviour.h"
#include "lockscreen/KeyTable.h"
#include "lockscreen/LookOf.h"

#include "link/PreferenceKeys.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tests {

/// Every character is half as wide as its font is large.
class HalfWidths : public lumora::TextMeasure {
  public:
    double width(const std::string& text, const std::string&, double size) const override {
        return static_cast<double>(text.size()) * size / 2;
    }
    bool has(const std::string& font) const override { return font == "DejaVuSans"; }
};

/// A phone with the sample applications and App Views, three notices and a dark picture.
inline lumora::Device sampleDevice(bool landscape = false, std::string passcode = "1234") {
    static const HalfWidths widths;
    lumora::Device device;
    device.texts = &widths;
    if (landscape) std::swap(device.size.width, device.size.height);
    device.time = "18:36";
    device.date = "Friday · 20 November";
    device.battery = 0.82;
    device.passcode = std::move(passcode);
    for (const std::string name : {"Books", "Camera", "Clock", "Mail", "Messages", "Music", "Phone", "Weather"})
        device.applications.push_back({"org.lumora.samples." + name, name});
    device.views = {{"org.lumora.plugins.clock", "Clock", "org.lumora.samples.Clock", false},
                    {"org.lumora.plugins.weather", "Weather", "org.lumora.samples.Weather", false},
                    {"org.lumora.plugins.notes", "Notes", "org.lumora.samples.Notes", true}};
    device.notices = {{"org.lumora.samples.Messages", "Ines", "The ridge is glowing, come outside!", "now"},
                      {"org.lumora.samples.Mail", "Boathouse", "Your key is ready at the front desk", "17:52"}};
    device.badges = {{"org.lumora.samples.Messages", 3}, {"org.lumora.samples.Mail", 120}};
    return device;
}

/// A behaviour at the beginning of a scene, and what it logs.
class Player {
  public:
    Player(platform::Dictionary settings, lumora::Device device)
        : behaviour(std::move(settings), std::move(device), [this](const std::string& line) { log += line + "\n"; }) {
        behaviour.show(lumora::Surface::notices, now);
    }

    /// Plays gestures, one a line; "wait" lets time pass.
    Player& play(const std::string& lines) {
        std::istringstream all(lines);
        for (std::string line; std::getline(all, line);) {
            const lumora::Gesture gesture = lumora::Gesture::read(line).value();
            if (gesture.kind == lumora::Gesture::Kind::wait) now += gesture.amount;
            behaviour.apply(gesture, now);
        }
        return *this;
    }
    /// What came of it: the log without the gestures themselves.
    [[nodiscard]] std::vector<std::string> outcomes() const {
        std::vector<std::string> outcomes;
        std::istringstream all(log);
        for (std::string line; std::getline(all, line);)
            if (line.starts_with("-> ")) outcomes.push_back(line.substr(3));
        return outcomes;
    }
    [[nodiscard]] lumora::Look look() const {
        return lookOf(behaviour.settings(), behaviour.device(), behaviour.state());
    }
    [[nodiscard]] lumora::Surface surface() const { return behaviour.state().surface; }

    std::string log;
    lumora::Seconds now = 100;
    lumora::Behaviour behaviour;
};

} // namespace tests
