#include "Forecast.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>

namespace weather {
namespace {

enum class Sky : unsigned char { sunny, fair, cloudy, rain, clear };

struct Hour {
    Sky sky;
    double celsius;
};

/// The sample's weather of a day that clears up, from the present hour on.
constexpr std::array<Hour, 8> kAhead{{{Sky::fair, 14},
                                      {Sky::fair, 13},
                                      {Sky::cloudy, 12},
                                      {Sky::rain, 11},
                                      {Sky::clear, 10},
                                      {Sky::clear, 9},
                                      {Sky::cloudy, 9},
                                      {Sky::clear, 8}}};
constexpr double kFeelsLike = 12;

const LumoraColor kSun = lumora_rgb(0xFFCE5C, 1);
const LumoraColor kMoon = lumora_rgb(0xF6E7B4, 1);
const LumoraColor kDrop = lumora_rgb(0x7DB6FF, 1);

/// A canvas with what it is asked for.
class Sheet {
  public:
    Sheet(const LumoraCanvas& canvas, const LumoraDrawing& drawing) : on_(&canvas), drawing_(drawing) {}

    [[nodiscard]] const LumoraDrawing& drawing() const { return drawing_; }
    void ink(std::uint32_t role) const { on_->fillColor(on_, lumora_role(role, 1)); }
    LumoraExtent text(const std::string& words, double x, double y, double width, double size, std::uint32_t weight,
                      std::uint32_t align = LUMORA_ALIGN_LEFT) const {
        const LumoraText text{words.c_str(), x, y, width, size, weight, align, 1};
        return on_->text(on_, &text);
    }
    void caption(const char* words) const { on_->caption(on_, words); }
    void line(double x1, double y1, double x2, double y2, double thickness) const {
        on_->line(on_, x1, y1, x2, y2, thickness);
    }

    /// A sign of the sky in a square.
    void sky(Sky sky, double x, double y, double edge) const {
        const double u = edge / 10;
        switch (sky) {
        case Sky::sunny:
            sun(x + 5 * u, y + 5 * u, 2.1 * u, u);
            break;
        case Sky::fair:
            sun(x + 3.9 * u, y + 3.7 * u, 1.9 * u, u);
            cloud(x + 3.1 * u, y + 3.9 * u, u);
            break;
        case Sky::cloudy:
            cloud(x + 1.6 * u, y + 2.4 * u, 1.1 * u);
            break;
        case Sky::rain:
            cloud(x + 1.6 * u, y + 1.4 * u, 1.1 * u);
            on_->fillColor(on_, drawing_.dark ? kDrop : lumora_rgb(0x1F6FD6, 1));
            for (int i = 0; i < 3; ++i)
                line(x + (3.6 + 1.9 * i) * u, y + 7.6 * u, x + (2.9 + 1.9 * i) * u, y + 9.4 * u, 0.5 * u);
            break;
        case Sky::clear:
            moon(x + 4.6 * u, y + 5 * u, 3.4 * u);
            break;
        }
    }

  private:
    void sun(double x, double y, double radius, double u) const {
        on_->fillColor(on_, drawing_.dark ? kSun : lumora_rgb(0xE08A00, 1));
        on_->arc(on_, x, y, radius, 0, 360, 0);
        for (int i = 0; i < 8; ++i) {
            const double angle = i * std::acos(-1.0) / 4;
            const double near = radius + 0.7 * u;
            const double far = radius + 1.3 * u;
            line(x + near * std::sin(angle), y - near * std::cos(angle), x + far * std::sin(angle),
                 y - far * std::cos(angle), 0.36 * u);
        }
    }
    /// Six and a half units wide, four high.
    void cloud(double x, double y, double u) const {
        on_->fillColor(on_, drawing_.dark ? lumora_rgb(0xF2F5FC, 1) : lumora_rgb(0x66718A, 1));
        on_->arc(on_, x + 1.55 * u, y + 2.9 * u, 1.4 * u, 0, 360, 0);
        on_->arc(on_, x + 3.3 * u, y + 1.9 * u, 1.9 * u, 0, 360, 0);
        on_->arc(on_, x + 5.1 * u, y + 2.8 * u, 1.5 * u, 0, 360, 0);
        on_->rectangle(on_, x + 1.4 * u, y + 2.6 * u, 3.9 * u, 1.7 * u, 0.8 * u);
    }
    /// Two arcs, of which one takes a piece out of the other's circle.
    void moon(double x, double y, double r) const {
        on_->fillColor(on_, drawing_.dark ? kMoon : lumora_rgb(0x8A6D1E, 1));
        const double k = 0.5523 * r;
        const std::array<LumoraPathPart, 6> parts{{
            {'M', x, y - r, 0, 0, 0, 0},
            {'C', x - r, y, x - k, y - r, x - r, y - k},
            {'C', x, y + r, x - r, y + k, x - k, y + r},
            {'C', x + 0.93 * r, y + 0.36 * r, x + 0.42 * r, y + r, x + 0.78 * r, y + 0.74 * r},
            {'C', x, y - r, x + 0.1 * r, y + 0.75 * r, x - 0.65 * r, y - 0.2 * r},
            {'Z', 0, 0, 0, 0, 0, 0},
        }};
        on_->path(on_, parts.data(), parts.size(), 0);
    }

    const LumoraCanvas* on_;
    const LumoraDrawing& drawing_;
};

std::string degrees(const LumoraDrawing& drawing, double celsius) {
    const char* units = drawing.text(&drawing, "org.lumora.plugins.weather.units", "celsius");
    double value = celsius;
    if (std::strcmp(units, "fahrenheit") == 0) value = celsius * 9 / 5 + 32;
    if (std::strcmp(units, "kelvin") == 0) return std::to_string(std::lround(celsius + 273.15)) + " K";
    return std::to_string(std::lround(value)) + "°";
}

std::string twoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

} // namespace

double drawForecast(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    const Sheet on(*canvas, *drawing);
    const double scale = drawing->textScale;
    const double width = drawing->width;
    const bool tomorrow = drawing->number(drawing, "org.lumora.plugins.weather.tomorrow", 1) != 0;
    // Anybody may have set it to anything, or to what is no number, for which fmax() gives the other one.
    const double wanted = drawing->number(drawing, "org.lumora.plugins.weather.hours", 6);
    const int hours = static_cast<int>(std::fmin(std::fmax(wanted, 1), 24));
    on.caption("Lakeside");

    // The hours stand at the foot: as many as the user wants, if there is room for their texts.
    const double small = 13 * scale;
    const int most = std::max(1, static_cast<int>(width / (40 * std::max(1.0, scale * 0.9))));
    const int columns = std::min(hours, most);
    const double column = width / columns;
    const double sign = 26;
    const double foot = drawing->height - 4;
    const double top = foot - 2 * 1.22 * small - sign - 6;
    for (int i = 0; i < columns; ++i) {
        // With more hours than columns, the columns are hours apart.
        const int ahead = i * std::max(1, (hours + columns - 1) / columns);
        const Hour& hour = kAhead[static_cast<std::size_t>(ahead) % kAhead.size()];
        const double left = i * column;
        on.ink(LUMORA_ROLE_SECONDARY);
        on.text(ahead == 0 ? "Now" : twoDigits((drawing->hour + ahead) % 24), left, top, column, small, 500,
                LUMORA_ALIGN_CENTER);
        on.sky(hour.sky, left + (column - sign) / 2, top + 1.22 * small + 3, sign);
        on.ink(LUMORA_ROLE_TEXT);
        on.text(degrees(*drawing, hour.celsius), left, foot - 1.22 * small, column, small, 600, LUMORA_ALIGN_CENTER);
    }

    // What it is like now, in the room above.
    const double room = top - 6;
    const double title = 1.22 * 16 * scale;
    const double both = title + 1.22 * 14 * scale + 2;
    const bool isTight = room - both < 44;
    const double words = isTight ? title : both;
    const double large = std::clamp(room - words - 4, 24.0, 80.0);
    double y = std::max(0.0, (room - words - large * 1.1) / 3);
    on.sky(Sky::fair, width - large, y, large);
    on.ink(LUMORA_ROLE_TEXT);
    on.text(degrees(*drawing, kAhead.front().celsius), 0, y - 0.1 * large, width - large - 8, large, 200);
    y += 1.02 * large;
    if (y + words > top + 2) return 0;
    on.text("Clearing from the west", 2, y, width - 2, 16 * scale, 600);
    if (isTight) return 0;
    on.ink(LUMORA_ROLE_SECONDARY);
    const std::string line =
        tomorrow ? "Feels like " + degrees(*drawing, kFeelsLike) + " · tomorrow " + degrees(*drawing, 16) + ", sunny"
                 : "Feels like " + degrees(*drawing, kFeelsLike) + " · wind 9 km/h";
    on.text(line, 2, y + title + 2, width - 2, 14 * scale, 400);
    return 0;
}

} // namespace weather
