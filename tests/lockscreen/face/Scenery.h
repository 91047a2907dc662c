#pragma once

#include "lockscreen/LookDocument.h"
#include "lockscreen/app/Studio.h"

#include "link/PreferenceKeys.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/services/PictureDecoder.h"

#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace tests {

/// The studio of all tests, with what is installed under their device root. It ends before the toolkit's application.
class Scenery : public testing::Environment {
  public:
    static lumora::Studio& studio() {
        if (!kept()) {
            platform::setDeviceRoot(LUMORA_TEST_ROOT);
            platform::PicturePatience::makeEndless();
            kept() = std::make_unique<lumora::Studio>();
        }
        return *kept();
    }
    void TearDown() override { kept().reset(); }

  private:
    static std::unique_ptr<lumora::Studio>& kept() {
        static std::unique_ptr<lumora::Studio> kept;
        return kept;
    }
};
inline const auto* const scenery = testing::AddGlobalTestEnvironment(new Scenery);

inline lumora::Options upright() {
    lumora::Options options;
    options.phone.time = lumora::timeFrom("2026-11-20T18:36");
    return options;
}

inline lumora::Taken taken(const lumora::Options& options, const platform::Dictionary& settings,
                           const std::string& gestures = {}) {
    auto taken = Scenery::studio().take(options, {{}, lumora::gesturesIn(gestures).value(), {}}, settings);
    EXPECT_TRUE(taken) << taken.error();
    return taken ? std::move(taken).value() : lumora::Taken();
}

inline platform::Value settingOfApps() {
    platform::List apps;
    for (const char* name : {"Phone", "Messages", "Music", "Camera", "Mail", "Maps", "Weather", "Photos"})
        apps.emplace_back("org.lumora.samples." + std::string(name));
    return apps;
}

/// With eight applications and two App Views.
inline platform::Dictionary enhanced(const platform::Dictionary& others = {}) {
    platform::Dictionary settings{
        {lumora::kTweakEnabled, true},
        {lumora::kAppsEnabled, settingOfApps()},
        {lumora::kAppViewsEnabled, platform::List{"org.lumora.plugins.weather", "org.lumora.plugins.music"}}};
    for (const auto& [key, value] : others)
        settings.set(key, value);
    return settings;
}

inline QRectF frameOf(const platform::Value& part) {
    const platform::List* frame = part["frame"].list();
    if (!frame || frame->size() != 4) return {};
    return {(*frame)[0].doubleValue(), (*frame)[1].doubleValue(), (*frame)[2].doubleValue(), (*frame)[3].doubleValue()};
}

/// Visits each part of a look's document that is visible, with its path.
inline void eachVisible(const platform::Value& value, const std::string& path,
                        const std::function<void(const std::string&, const platform::Value&)>& visit) {
    if (const platform::List* list = value.list()) {
        for (std::size_t i = 0; i < list->size(); ++i)
            eachVisible((*list)[i], path + "[" + std::to_string(i) + "]", visit);
    } else if (const platform::Dictionary* fields = value.dictionary()) {
        if (value["visible"].boolean().value_or(false)) visit(path, value);
        for (const auto& [name, field] : *fields)
            eachVisible(field, path.empty() ? std::string(name) : path + "." + std::string(name), visit);
    }
}

} // namespace tests
