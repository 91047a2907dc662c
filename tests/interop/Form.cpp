#include "Form.h"

#include <bit>
#include <charconv>
#include <sstream>

namespace tests {

using namespace platform;

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
    std::string inside;
    switch (value.kind()) {
    case Value::Kind::nil:
        return "n";
    case Value::Kind::boolean:
        return *value.boolean() ? "t" : "f";
    case Value::Kind::integer:
        return 'i' + std::to_string(*value.integer());
    case Value::Kind::real:
        return 'r' + bitsOf(*value.real());
    case Value::Kind::text:
        return 's' + hexOf(Data(value.text()->begin(), value.text()->end()));
    case Value::Kind::data:
        return 'd' + hexOf(*value.data());
    case Value::Kind::date:
        return 'w' + bitsOf(value.date()->seconds);
    case Value::Kind::list:
        for (const Value& entry : *value.list())
            inside += ' ' + form(entry);
        return '[' + inside + " ]";
    case Value::Kind::dictionary:
        for (const auto& [key, entry] : *value.dictionary())
            inside += ' ' + form(key) + ' ' + form(entry);
    }
    return '{' + inside + " }";
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
