#include "lockscreen/Gesture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

using platform::Result;

namespace lumora {
namespace {

constexpr std::array<std::string_view, 8> kWords{"tap", "hold", "swipe", "slide", "pull", "key", "home", "wait"};

std::optional<double> readNumber(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number) || number < 0) return {};
    return number;
}

std::string_view nextWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(" \t\r"));
    line.remove_prefix(word.size());
    return word;
}

} // namespace

Result<Gesture> Gesture::read(std::string_view line) {
    const auto refuse = [](const char* why) { return Result<Gesture>::failure(why); };
    const auto word = std::ranges::find(kWords, nextWord(line));
    if (word == kWords.end()) return refuse("no gesture begins so");
    Gesture gesture{static_cast<Kind>(word - kWords.begin()), {}, 0};
    if (gesture.kind == Kind::wait) {
        const auto seconds = readNumber(nextWord(line));
        if (!seconds) return refuse("takes a number of seconds");
        gesture.amount = *seconds;
    } else {
        gesture.target = nextWord(line);
        const std::string_view amount = nextWord(line);
        gesture.amount = 1;
        if (!amount.empty()) {
            const auto share = readNumber(amount);
            if (!share) return refuse("takes a share of the width");
            gesture.amount = *share;
        }
    }
    if (!nextWord(line).empty()) return refuse("there is more than a gesture has");
    return gesture;
}

std::string Gesture::line() const {
    std::string line(kWords.at(static_cast<std::size_t>(kind)));
    if (!target.empty()) line += " " + target;
    if (kind == Kind::wait || (kind == Kind::swipe && amount != 1)) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), amount).ptr;
        line += " " + std::string(digits.data(), end);
    }
    return line;
}

std::optional<std::size_t> placeIn(std::string_view path, std::string_view list) {
    if (!path.starts_with(list) || !path.ends_with(']') || path.size() < list.size() + 3 || path[list.size()] != '[')
        return {};
    const std::string_view digits = path.substr(list.size() + 1, path.size() - list.size() - 2);
    std::size_t place = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), place);
    if (error != std::errc() || end != digits.data() + digits.size()) return {};
    return place;
}

} // namespace lumora
