#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Timestamp.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace platform {

namespace {

template<class Number>
std::string shortest(Number number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), end.ptr};
}

/// "2001-01-01 00:00:00 +0000"; in the far past and future the bare number is all there is to say.
std::string dateText(Date date) {
    constexpr double farthest = 1e11;
    std::string text = timestamp(date).value_or("");
    if (text.empty() || std::abs(date.seconds) >= farthest) return shortest(date.seconds);
    return text.replace(text.find('T'), 1, " ").replace(text.size() - 1, 1, " +0000");
}

/// Old-style property-list text. Recursion ends at the depth that readers accept too, and a text that grows beyond all
/// reason ends in an ellipsis.
class Describer {
  public:
    void describe(const Value& value, unsigned level);
    std::string text;

  private:
    static constexpr std::size_t longestText = 16U << 20U;

    template<class DescribeEntry>
    void describeEntries(char opening, char closing, std::size_t count, unsigned level, DescribeEntry describeEntry);
    void describeData(const Data& data);
    void quote(std::string_view contents);
    void escape(char32_t character);
    void indent(unsigned level) { text.append(std::size_t{4} * level, ' '); }
};

void Describer::describe(const Value& value, unsigned level) {
    switch (value.kind()) {
    case Value::Kind::nil:
        return quote("<null>");
    case Value::Kind::boolean:
        text += *value.boolean() ? '1' : '0';
        return;
    case Value::Kind::integer:
        return quote(shortest(*value.integer()));
    case Value::Kind::real:
        return quote(shortest(*value.real()));
    case Value::Kind::text:
        return quote(*value.text());
    case Value::Kind::data:
        return describeData(*value.data());
    case Value::Kind::date:
        return quote(dateText(*value.date()));
    case Value::Kind::list: {
        const List& list = *value.list();
        return describeEntries('(', ')', list.size(), level, [&](std::size_t i) {
            describe(list[i], level + 1);
            if (i + 1 < list.size()) text += ',';
        });
    }
    case Value::Kind::dictionary:
        return describeEntries('{', '}', value.dictionary()->size(), level, [&](std::size_t i) {
            const auto& [key, entry] = value.dictionary()->inKeyOrder(i);
            quote(key);
            text += " = ";
            describe(entry, level + 1);
            text += ';';
        });
    }
}

template<class DescribeEntry>
void Describer::describeEntries(char opening, char closing, std::size_t count, unsigned level,
                                DescribeEntry describeEntry) {
    // A container begins with an indentation of its own, also behind "key = ": so the platform writes it.
    indent(level);
    text += opening;
    text += '\n';
    for (std::size_t i = 0; i < count; ++i) {
        indent(level + 1);
        if (level == PropertyListLimits::depth || text.size() > longestText) {
            text += "...\n";
            break;
        }
        describeEntry(i);
        text += '\n';
    }
    indent(level);
    text += closing;
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
    constexpr std::u32string_view special = U"\"\\\n\r\t";
    const std::size_t known = special.find(character);
    if (known != std::u32string_view::npos)
        text += {'\\', "\"\\nrt"[known]};
    else if (character >= ' ' && character < 0x7F)
        text += static_cast<char>(character);
    else
        appendEscaped(text, character, 'U');
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
