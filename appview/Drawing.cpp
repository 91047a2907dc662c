#include "appview/Drawing.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

using platform::Data;
using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

using Kind = DrawingStep::Kind;

/// What the numbers of a step are: a coordinate "c", a length or size "l", an angle "a", a share "s", a role "r", a
/// weight "w", an alignment "i".
struct Shape {
    std::string_view name;
    std::string_view numbers; ///< of a path, those before its parts
    bool hasText = false;
};

constexpr std::array<Shape, 10> kShapes{{{"color", "rssss"},
                                         {"gradient", "ccrssssccrssss"},
                                         {"rectangle", "cclll"},
                                         {"line", "ccccl"},
                                         {"arc", "cclaal"},
                                         {"path", "l"},
                                         {"text", "ccllwi", true},
                                         {"picture", "ccl", true},
                                         {"clip", "cclll"},
                                         {"caption", "", true}}};

const Shape& shapeOf(Kind kind) {
    return kShapes.at(static_cast<std::size_t>(kind));
}

bool isWhole(double number, double least, double most) {
    return number >= least && number <= most && number == std::floor(number);
}

bool fits(char what, double number) {
    switch (what) {
    case 'l':
        return number >= 0 && number <= DrawingLimits::points;
    case 's':
        return number >= 0 && number <= 1;
    case 'r':
        return isWhole(number, 0, 4);
    case 'w':
        return number >= 100 && number <= 900;
    case 'i':
        return isWhole(number, 0, 2);
    default: // false for what is no number
        return std::abs(number) <= DrawingLimits::points;
    }
}

/// Whether the numbers behind a path's thickness are not too many parts, of which the first is a move.
bool arePathParts(const std::vector<double>& numbers) {
    std::size_t parts = 0;
    for (std::size_t at = 1; at < numbers.size();) {
        if (++parts > DrawingLimits::pathParts) return false;
        const double kind = numbers[at++];
        if (!isWhole(kind, 0, 3) || (at == 2 && kind != 0)) return false;
        for (std::size_t left = coordinatesOf(static_cast<PathPart>(kind)); left > 0; --left, ++at)
            if (at >= numbers.size() || !fits('c', numbers[at])) return false;
    }
    return true;
}

bool isSound(const DrawingStep& step) {
    const Shape& shape = shapeOf(step.kind);
    const bool isPath = step.kind == Kind::path;
    if (isPath ? step.numbers.empty() : step.numbers.size() != shape.numbers.size()) return false;
    for (std::size_t i = 0; i < shape.numbers.size(); ++i)
        if (!fits(shape.numbers[i], step.numbers[i])) return false;
    if (isPath && !arePathParts(step.numbers)) return false;
    if (step.kind == Kind::picture && !isPictureName(step.text)) return false;
    return shape.hasText ? step.text.size() <= DrawingLimits::textBytes && platform::isUtf8(step.text)
                         : step.text.empty();
}

/// Nothing for what is no step.
std::optional<DrawingStep> stepOf(const Value& value) {
    const List* list = value.list();
    if (!list || list->empty() || !list->front().text()) return {};
    const auto shape = std::ranges::find(kShapes, *list->front().text(), &Shape::name);
    if (shape == kShapes.end()) return {};
    DrawingStep step;
    step.kind = static_cast<Kind>(shape - kShapes.begin());
    std::size_t end = list->size();
    if (shape->hasText) {
        const std::string_view* text = list->back().text();
        if (!text || end < 2) return {};
        step.text = *text;
        --end;
    }
    step.numbers.reserve(end - 1);
    for (std::size_t i = 1; i < end; ++i) {
        if (!(*list)[i].isNumber()) return {};
        step.numbers.push_back((*list)[i].doubleValue());
    }
    return isSound(step) ? std::optional(std::move(step)) : std::nullopt;
}

bool isPause(double seconds) {
    return seconds >= 0 && seconds <= DrawingLimits::again;
}

} // namespace

bool isPictureName(std::string_view name) {
    constexpr std::size_t longest = 100;
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
    return !name.empty() && name.size() <= longest && name.front() != '.' &&
           name.find_first_not_of(letters) == std::string_view::npos;
}

Result<Data> writeDrawing(const Drawing& drawing) {
    const auto fail = [](const char* why) { return Result<Data>::failure(why); };
    if (drawing.steps.size() > DrawingLimits::steps) return fail("it draws too many steps");
    if (!isPause(drawing.again)) return fail("it waits for no time");
    List steps;
    steps.reserve(drawing.steps.size());
    for (const DrawingStep& step : drawing.steps) {
        if (!isSound(step)) return fail("a step is none");
        const Shape& shape = shapeOf(step.kind);
        List list{shape.name};
        list.reserve(step.numbers.size() + 2);
        list.insert(list.end(), step.numbers.begin(), step.numbers.end());
        if (shape.hasText) list.emplace_back(step.text);
        steps.emplace_back(std::move(list));
    }
    auto archive = platform::NSKeyedArchiver::archivedDataWithRootObject(
        Dictionary{{"again", drawing.again}, {"steps", std::move(steps)}});
    if (!archive || archive->size() > DrawingLimits::bytes) return fail("its drawing is too large");
    return std::move(*archive);
}

Result<Drawing> readDrawing(const Data& archive) {
    const auto fail = [](const char* why) { return Result<Drawing>::failure(why); };
    if (archive.size() > DrawingLimits::bytes) return fail("its drawing is too large");
    const Result<Value> root = platform::NSKeyedUnarchiver::unarchive(archive);
    if (!root) return fail("its drawing is no archive");
    Drawing drawing;
    const Value again = root.value()["again"];
    drawing.again = again.doubleValue();
    if (!again.isNumber() || !isPause(drawing.again)) return fail("it waits for no time");
    const Value steps = root.value()["steps"];
    if (!steps.list()) return fail("its drawing has no steps");
    if (steps.list()->size() > DrawingLimits::steps) return fail("it draws too many steps");
    drawing.steps.reserve(steps.list()->size());
    // An archive of a few bytes may share its lists, and so stand for many numbers.
    std::size_t left = DrawingLimits::bytes;
    for (const Value& value : *steps.list()) {
        auto step = stepOf(value);
        if (!step) return fail("a step is none");
        const std::size_t size = sizeof(double) * step->numbers.size() + step->text.size();
        if (size > left) return fail("its drawing is too large");
        left -= size;
        drawing.steps.push_back(std::move(*step));
    }
    return drawing;
}

} // namespace lumora
