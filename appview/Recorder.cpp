#include "appview/Recorder.h"

#include "appview/ScreenFont.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumora {
namespace {

using Kind = DrawingStep::Kind;

/// What an archive needs for a number, at the least, and for a step.
constexpr std::size_t kBytesOfNumber = 9;
constexpr std::size_t kBytesOfStep = 16;
constexpr double kLargestText = 1000;

double coordinate(double number) {
    return std::clamp(number, -DrawingLimits::points, DrawingLimits::points);
}

double length(double number) {
    return std::clamp(number, 0.0, DrawingLimits::points);
}

double share(double number) {
    return std::clamp(number, 0.0, 1.0);
}

void append(std::vector<double>& numbers, const LumoraColor& color) {
    const double role = color.role <= LUMORA_ROLE_SEPARATOR ? color.role : LUMORA_ROLE_NONE;
    numbers.insert(numbers.end(),
                   {role, share(color.red), share(color.green), share(color.blue), share(color.opacity)});
}

/// On one line, of characters that show; empty for what is not UTF-8.
std::string plain(const char* text) {
    std::string_view rest = text ? text : "";
    if (rest.size() > DrawingLimits::textBytes) {
        std::size_t end = DrawingLimits::textBytes;
        while (end > 0 && (static_cast<unsigned char>(rest[end]) & 0xC0U) == 0x80U)
            --end;
        rest = rest.substr(0, end);
    }
    std::string line;
    if (!platform::isUtf8(rest)) return line;
    while (!rest.empty()) {
        const std::size_t before = rest.size();
        const char* const beginning = rest.data();
        const char32_t character = platform::takeCharacter(rest);
        if (character < U' ' || character == 0x7F)
            line += ' ';
        else
            line.append(beginning, before - rest.size());
    }
    return line;
}

} // namespace

Recorder::Recorder(const TextExtents& extents) : extents_(extents) {
    canvas_.recorder = this;
    canvas_.version = LUMORA_APP_VIEW_VERSION;
    canvas_.fillColor = [](const LumoraCanvas* on, LumoraColor color) {
        std::vector<double> numbers;
        append(numbers, color);
        of(on).add(Kind::color, std::move(numbers));
    };
    canvas_.fillGradient = [](const LumoraCanvas* on, double x1, double y1, LumoraColor from, double x2, double y2,
                              LumoraColor to) {
        std::vector<double> numbers{coordinate(x1), coordinate(y1)};
        append(numbers, from);
        numbers.insert(numbers.end(), {coordinate(x2), coordinate(y2)});
        append(numbers, to);
        of(on).add(Kind::gradient, std::move(numbers));
    };
    canvas_.rectangle = [](const LumoraCanvas* on, double x, double y, double width, double height, double radius) {
        of(on).add(Kind::rectangle, {coordinate(x), coordinate(y), length(width), length(height), length(radius)});
    };
    canvas_.line = [](const LumoraCanvas* on, double x1, double y1, double x2, double y2, double thickness) {
        of(on).add(Kind::line, {coordinate(x1), coordinate(y1), coordinate(x2), coordinate(y2), length(thickness)});
    };
    canvas_.arc = [](const LumoraCanvas* on, double x, double y, double radius, double from, double sweep,
                     double thickness) {
        of(on).add(Kind::arc, {coordinate(x), coordinate(y), length(radius), std::fmod(from, 360),
                               std::clamp(sweep, -360.0, 360.0), length(thickness)});
    };
    canvas_.path = [](const LumoraCanvas* on, const LumoraPathPart* parts, std::size_t count, double thickness) {
        of(on).addPath(parts, parts ? count : 0, thickness);
    };
    canvas_.text = [](const LumoraCanvas* on, const LumoraText* text) {
        return text ? of(on).addText(*text) : LumoraExtent{0, 0};
    };
    canvas_.picture = [](const LumoraCanvas* on, const char* name, double x, double y, double edge) {
        if (name && isPictureName(name)) of(on).add(Kind::picture, {coordinate(x), coordinate(y), length(edge)}, name);
    };
    canvas_.clip = [](const LumoraCanvas* on, double x, double y, double width, double height, double radius) {
        of(on).add(Kind::clip, {coordinate(x), coordinate(y), length(width), length(height), length(radius)});
    };
    canvas_.caption = [](const LumoraCanvas* on, const char* text) { of(on).add(Kind::caption, {}, plain(text)); };
}

platform::Result<std::vector<DrawingStep>> Recorder::take() {
    if (!tooMuch_.empty()) return platform::Result<std::vector<DrawingStep>>::failure(tooMuch_);
    return std::exchange(steps_, {});
}

void Recorder::add(Kind kind, std::vector<double> numbers, std::string text) {
    if (!tooMuch_.empty() || !std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); })) return;
    bytes_ += kBytesOfStep + kBytesOfNumber * numbers.size() + text.size();
    if (steps_.size() == DrawingLimits::steps)
        tooMuch_ = "it draws too many steps";
    else if (bytes_ > DrawingLimits::bytes)
        tooMuch_ = "its drawing is too large";
    else
        steps_.push_back({kind, std::move(numbers), std::move(text)});
}

void Recorder::addPath(const LumoraPathPart* parts, std::size_t count, double thickness) {
    if (count > DrawingLimits::pathParts) {
        if (tooMuch_.empty()) tooMuch_ = "a path has too many parts";
        return;
    }
    std::vector<double> numbers{length(thickness)};
    for (std::size_t i = 0; i < count; ++i) {
        const LumoraPathPart& part = parts[i];
        const auto add = [&](PathPart kind, std::initializer_list<double> points) {
            numbers.push_back(static_cast<double>(kind));
            for (const double point : points)
                numbers.push_back(coordinate(point));
        };
        switch (part.kind) {
        case 'M':
            add(PathPart::move, {part.x, part.y});
            break;
        case 'L':
            add(PathPart::line, {part.x, part.y});
            break;
        case 'C':
            add(PathPart::curve, {part.x1, part.y1, part.x2, part.y2, part.x, part.y});
            break;
        case 'Z':
            add(PathPart::close, {});
            break;
        default:
            return; // no path at all
        }
    }
    if (count > 0 && parts[0].kind == 'M') add(Kind::path, std::move(numbers));
}

LumoraExtent Recorder::addText(const LumoraText& text) {
    LumoraExtent extent{0, 0};
    const std::string words = plain(text.text);
    if (words.empty() || !(text.size > 0) || !std::isfinite(text.width)) return extent;
    const double size = std::min(text.size, kLargestText);
    const double weight = std::clamp(text.weight, 100U, 900U);
    const double align = text.align <= LUMORA_ALIGN_RIGHT ? text.align : LUMORA_ALIGN_LEFT;
    const double before = align == LUMORA_ALIGN_LEFT ? 0 : align == LUMORA_ALIGN_CENTER ? 0.5 : 1;
    const double box = length(text.width);
    double top = text.y;
    for (const std::string& line : extents_.lines(words, size, weight, box, std::max(1U, text.lines))) {
        const double width = extents_.width(line, size, weight);
        const double wide = box > 0 ? std::min(width, box) : width;
        const double x = text.x + (box - wide) * before; // without a box, from its begin, middle or end on
        add(Kind::text, {coordinate(x), coordinate(top + kTextAscent * size), length(wide), size, weight, align}, line);
        extent.width = std::max(extent.width, wide);
        top += kTextLine * size;
    }
    extent.height = top - text.y;
    return extent;
}

} // namespace lumora
