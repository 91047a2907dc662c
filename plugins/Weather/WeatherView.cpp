// The Weather application's App View, with a settings page. What the page sets, the drawing reads under the same keys.
#include <lumora/SettingsController.h>

#include "Forecast.h"

namespace {

using platform::Dictionary;
using platform::selector;
using platform::Value;

class WeatherPage final : public lumora::SettingsPage {
  public:
    WeatherPage() : SettingsPage(lumora::sessionOf<WeatherPage>()) {}

    /// The tweak does not know our defaults, so the page fills in what was never set.
    Value valueOrDefault(platform::PSSpecifier& row) {
        static const Dictionary defaults{{"org.lumora.plugins.weather.units", "celsius"},
                                         {"org.lumora.plugins.weather.tomorrow", true},
                                         {"org.lumora.plugins.weather.hours", 6.0}};
        const Value value = getValue(row);
        return value.isNil() ? defaults[row.identifier()] : value;
    }

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        make.setGetAction(selector(&WeatherPage::valueOrDefault));
        return {
            make.header("Temperature", "Temperatures are rounded to whole degrees."),
            make.specifier(make.link("Units", "org.lumora.plugins.weather.units", {"Celsius", "Fahrenheit", "Kelvin"},
                                     {"celsius", "fahrenheit", "kelvin"}),
                           "thermometer"),

            make.header("Forecast", "The forecast begins with the current hour."),
            make.specifier(make.toggle("Show Tomorrow", "org.lumora.plugins.weather.tomorrow"), "sun"),
            make.specifier(make.static_("Hours Ahead"), "hours"),
            make.slider("org.lumora.plugins.weather.hours", 1, 24),
        };
    }
};

LUMORA_SETTINGS_CONTROLLER(WeatherPage, settingsController)

const LumoraAppView weatherView{
    .version = LUMORA_APP_VIEW_VERSION,
    .identifier = [] { return "org.lumora.plugins.weather"; },
    .name = [] { return "Weather"; },
    .appID = [] { return "org.lumora.samples.Weather"; },
    .settingsController = settingsController,
    .flags = 0,
    .draw = weather::drawForecast,
};

const LumoraAppView* sharedInstance() {
    return &weatherView;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(WeatherView, sharedInstance)
