#include "platform/foundation/PropertyList.h"

#include "Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace platform {

namespace {

template<class Number>
std::string shortest(Number number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), end.ptr};
}

std::string dateText(Date date) {
    using namespace std::chrono;
    // Beyond the years that the calendar knows, the bare number is all there is to say.
    constexpr double farthest = 1e11;
    if (!(std::abs(date.seconds) < farthest)) return shortest(date.seconds);
    const auto point = sys_days(2001y / January / 1) + seconds(static_cast<std::int64_t>(std::floor(date.seconds)));
    const auto midnight = floor<days>(point);
    const year_month_day day(midnight);
    const hh_mm_ss time(point - midnight);
    std::array<char, 64> text{};
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000", static_cast<int>(day.year()),
        static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

/// Old-style property-list text. Recursion ends at the depth that readers accept too, and a text that grows beyond all
/// reason ends in an ellipsis.
class Describer {
  public:
    void describe(const Value& value, unsigned level);
    std::string text;

  private:
    static constexpr std::size_t longestText = 16U << 20U;

    void describeList(const List& list, unsigned level);
    void describeDictionary(const Dictionary& dictionary, unsigned level);
    void describeData(const Data& data);
    void quote(std::string_view contents);
    void escape(char32_t character);
    void indent(unsigned level) { text.append(std::size_t{4} * level, ' '); }
};

void Describer::describe(const Value& value, unsigned level) {
    switch (value.kind()) {
    case Value::Kind::nil:
        quote("<null>");
        break;
    case Value::Kind::boolean:
        text += *value.boolean() ? '1' : '0';
        break;
    case Value::Kind::integer:
        quote(shortest(*value.integer()));
        break;
    case Value::Kind::real:
        quote(shortest(*value.real()));
        break;
    case Value::Kind::text:
        quote(*value.text());
        break;
    case Value::Kind::data:
        describeData(*value.data());
        break;
    case Value::Kind::date:
        quote(dateText(*value.date()));
        break;
    case Value::Kind::list:
        describeList(*value.list(), level);
        break;
    case Value::Kind::dictionary:
        describeDictionary(*value.dictionary(), level);
        break;
    }
}

void Describer::describeList(const List& list, unsigned level) {
    // A container begins with an indentation of its own, also behind "key = ": so the platform writes it.
    indent(level);
    text += "(\n";
    for (std::size_t i = 0; i < list.size(); ++i) {
        indent(level + 1);
        if (level == PropertyListLimits::depth || text.size() > longestText) {
            text += "...\n";
            break;
        }
        describe(list[i], level + 1);
        text += i + 1 < list.size() ? ",\n" : "\n";
    }
    indent(level);
    text += ')';
}

void Describer::describeDictionary(const Dictionary& dictionary, unsigned level) {
    indent(level);
    text += "{\n";
    for (std::size_t i = 0; i < dictionary.size(); ++i) {
        indent(level + 1);
        if (level == PropertyListLimits::depth || text.size() > longestText) {
            text += "...\n";
            break;
        }
        const auto& [key, value] = dictionary.inKeyOrder(i);
        quote(key);
        text += " = ";
        describe(value, level + 1);
        text += ";\n";
    }
    indent(level);
    text += '}';
}

void Describer::describeData(const Data& data) {
    constexpr std::string_view digits = "0123456789abcdef";
    text += '<';
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (i > 0 && i % 4 == 0) text += ' ';
        text += digits[data[i] >> 4U];
        text += digits[data[i] & 0x0FU];
    }
    text += '>';
}

void Describer::quote(std::string_view contents) {
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    if (!contents.empty() && std::ranges::all_of(contents, plain)) {
        text += contents;
        return;
    }
    text += '"';
    while (!contents.empty())
        escape(takeCharacter(contents));
    text += '"';
}

void Describer::escape(char32_t character) {
    switch (character) {
    case '"':
        text += "\\\"";
        return;
    case '\\':
        text += "\\\\";
        return;
    case '\n':
        text += "\\n";
        return;
    case '\r':
        text += "\\r";
        return;
    case '\t':
        text += "\\t";
        return;
    default:
        break;
    }
    if (character >= ' ' && character < 0x7F) {
        text += static_cast<char>(character);
        return;
    }
    forEachUnit(character, [this](std::uint16_t unit) {
        std::array<char, 8> escaped{};
        std::snprintf(escaped.data(), escaped.size(), "\\U%04x", unsigned{unit});
        text += escaped.data();
    });
}

} // namespace

std::string description(const Value& value) {
    if (value.isNil()) return "(null)";
    if (const std::string_view* text = value.text()) return std::string(*text);
    if (const auto integer = value.integer()) return shortest(*integer);
    if (const auto real = value.real()) return shortest(*real);
    if (const auto date = value.date()) return dateText(*date);
    Describer describer;
    describer.describe(value, 0);
    return std::move(describer.text);
}

} // namespace platform
