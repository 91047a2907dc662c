#include "Form.h"

#include <bit>
#include <charconv>
#include <sstream>

namespace tests {

using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

std::string bitsOf(double real) {
    Data bytes;
    for (unsigned shift = 64; shift > 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(std::bit_cast<std::uint64_t>(real) >> (shift - 8)));
    return hexOf(bytes);
}

template<class Number>
std::optional<Number> number(std::string_view digits, int base) {
    Number number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return number;
}

std::optional<double> realOf(std::string_view bits) {
    const auto number = tests::number<std::uint64_t>(bits, 16);
    if (bits.size() != 16 || !number) return std::nullopt;
    return std::bit_cast<double>(*number);
}

std::optional<std::string> textOf(std::string_view hex) {
    const auto bytes = bytesOf(hex);
    if (!bytes) return std::nullopt;
    return std::string(bytes->begin(), bytes->end());
}

void append(const Value& value, std::string& form);

void append(const Dictionary& dictionary, std::string& form) {
    form += '{';
    for (const auto& [key, entry] : dictionary) {
        form += ' ';
        append(key, form);
        form += ' ';
        append(entry, form);
    }
    form += " }";
}

void append(const List& list, std::string& form) {
    form += '[';
    for (const Value& entry : list) {
        form += ' ';
        append(entry, form);
    }
    form += " ]";
}

void append(const Value& value, std::string& form) {
    switch (value.kind()) {
    case Value::Kind::nil:
        form += 'n';
        return;
    case Value::Kind::boolean:
        form += *value.boolean() ? 't' : 'f';
        return;
    case Value::Kind::integer:
        form += 'i' + std::to_string(*value.integer());
        return;
    case Value::Kind::real:
        form += 'r' + bitsOf(*value.real());
        return;
    case Value::Kind::text:
        form += 's' + hexOf(Data(value.text()->begin(), value.text()->end()));
        return;
    case Value::Kind::data:
        form += 'd' + hexOf(*value.data());
        return;
    case Value::Kind::date:
        form += 'w' + bitsOf(value.date()->seconds);
        return;
    case Value::Kind::list:
        return append(*value.list(), form);
    case Value::Kind::dictionary:
        return append(*value.dictionary(), form);
    }
}

template<class Contents>
std::optional<Value> valueOf(const std::optional<Contents>& contents) {
    return contents ? std::optional(Value(*contents)) : std::nullopt;
}

std::optional<Value> readToken(std::istream& tokens, const std::string& token);

/// Up to the closing bracket.
std::optional<List> readEntries(std::istream& tokens, const std::string& closing) {
    List entries;
    for (std::string token; tokens >> token;) {
        if (token == closing) return entries;
        auto entry = readToken(tokens, token);
        if (!entry) return std::nullopt;
        entries.push_back(std::move(*entry));
    }
    return std::nullopt;
}

std::optional<Value> readDictionary(std::istream& tokens) {
    const auto parts = readEntries(tokens, "}");
    if (!parts || parts->size() % 2 != 0) return std::nullopt;
    std::vector<Dictionary::Entry> entries;
    for (std::size_t i = 0; i < parts->size(); i += 2) {
        const std::string_view* key = (*parts)[i].text();
        if (key == nullptr) return std::nullopt;
        entries.emplace_back(*key, (*parts)[i + 1]);
    }
    return Dictionary(std::move(entries));
}

std::optional<Value> readToken(std::istream& tokens, const std::string& token) {
    const std::string_view rest = std::string_view(token).substr(1);
    switch (token[0]) {
    case 'n':
        return Value();
    case 't':
    case 'f':
        return Value(token[0] == 't');
    case 'i':
        return valueOf(number<std::int64_t>(rest, 10));
    case 'r':
        return valueOf(realOf(rest));
    case 'w': {
        const auto seconds = realOf(rest);
        return seconds ? std::optional(Value(Date{*seconds})) : std::nullopt;
    }
    case 's':
        return valueOf(textOf(rest));
    case 'd':
        return valueOf(bytesOf(rest));
    case '[':
        return valueOf(readEntries(tokens, "]"));
    case '{':
        return readDictionary(tokens);
    default:
        return std::nullopt;
    }
}

} // namespace

std::string form(const Value& value) {
    std::string form;
    append(value, form);
    return form;
}

std::optional<Value> readForm(const std::string& line) {
    std::istringstream tokens(line);
    std::string token;
    if (!(tokens >> token)) return std::nullopt;
    auto value = readToken(tokens, token);
    return tokens >> token ? std::nullopt : value;
}

std::string hexOf(const Data& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        hex += digits[byte >> 4U];
        hex += digits[byte & 15U];
    }
    return hex;
}

std::optional<Data> bytesOf(std::string_view hex) {
    if (hex.size() % 2 != 0) return std::nullopt;
    Data bytes;
    bytes.reserve(hex.size() / 2);
    for (; !hex.empty(); hex.remove_prefix(2)) {
        const auto byte = number<std::uint8_t>(hex.substr(0, 2), 16);
        if (!byte) return std::nullopt;
        bytes.push_back(*byte);
    }
    return bytes;
}

} // namespace tests
