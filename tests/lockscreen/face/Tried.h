#pragma once

#include "lockscreen/face/FaceModel.h"
#include "tests/lockscreen/SampleDevice.h"

#include <QCoreApplication>
#include <QPointF>
#include <QTimer>

#include <string>
#include <vector>

namespace tests {

constexpr const char* kPhone = "org.lumora.samples.Phone";
constexpr const char* kWeather = "org.lumora.samples.Weather";
constexpr const char* kMessages = "org.lumora.samples.Messages";

/// Two icons, the second of which has an App View, and two App Views.
inline platform::Dictionary enabled(std::vector<platform::Dictionary::Entry> others = {}) {
    others.emplace_back(lumora::kTweakEnabled, true);
    others.emplace_back(lumora::kAppsEnabled, platform::List{kPhone, kWeather});
    others.emplace_back(lumora::kAppViewsEnabled,
                        platform::List{"org.lumora.plugins.weather", "org.lumora.plugins.clock"});
    return platform::Dictionary(std::move(others));
}

/// A face with the sample phone, at a time that the test goes through.
class Tried {
  public:
    explicit Tried(platform::Dictionary chosen = enabled(), const std::string& passcode = "1234")
        : settings(std::move(chosen)) {
        face.resize(390, 844);
        face.setPhone(sampleDevice(false, passcode));
        face.setSettings(settings, {});
    }

    /// Lets time pass, and has the face do what is due then.
    void pass(lumora::Seconds seconds) {
        now += seconds;
        face.setSettings(settings, {}); // looks at the clock
        QCoreApplication::processEvents();
    }
    void change(std::string_view key, const platform::Value& value) {
        settings.set(std::string(key), value);
        face.setSettings(settings, {std::string(key)});
    }
    void drag(QPointF from, QPointF by) {
        face.press(from);
        face.move(from + by / 2);
        face.move(from + by);
    }
    [[nodiscard]] lumora::Look look() const {
        return lookOf(face.behaviour().settings(), face.behaviour().device(), face.behaviour().state());
    }
    [[nodiscard]] QPointF middleOf(const lumora::Part& part) const { return lumora::toQt(part.frame).center(); }
    [[nodiscard]] lumora::Surface surface() const { return face.behaviour().state().surface; }
    [[nodiscard]] bool isAsleep() const { return face.behaviour().state().asleep; }
    [[nodiscard]] const QTimer& timer() const { return *face.findChild<QTimer*>(); }
    /// What has been logged since the last time.
    std::vector<std::string> logged() { return std::exchange(log, {}); }
    /// Only what came of the gestures.
    std::vector<std::string> outcomes() {
        std::vector<std::string> outcomes;
        for (const std::string& line : logged())
            if (line.starts_with("-> ")) outcomes.push_back(line.substr(3));
        return outcomes;
    }

    lumora::Seconds now = 1000;
    std::vector<std::string> log;
    platform::Dictionary settings;
    HalfWidths widths;
    lumora::Backdrop backdrop;
    lumora::IconStore icons;
    lumora::FaceModel face{backdrop, icons, widths, [this](const std::string& line) { log.push_back(line); },
                           [this] { return now; }};
};

} // namespace tests
