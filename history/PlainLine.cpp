#include "history/PlainLine.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <charconv>
#include <utility>

using platform::Value;

namespace lumora {
namespace {

bool isDecimal(char character) {
    return character >= '0' && character <= '9';
}

/// Takes a line apart from its front. What returns nothing, or false, may have taken some of it.
class PlainReader {
  public:
    explicit PlainReader(std::string_view line) : rest_(line) {}

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

    bool take(std::string_view text) {
        if (!rest_.starts_with(text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    std::optional<std::int64_t> takeInteger() {
        const auto number = takeNumber();
        return number ? number->integer() : std::nullopt;
    }

    /// Up to the closing quotation mark, the opening one of which has been taken.
    std::optional<std::string_view> takeText() {
        const auto end = std::ranges::find_if(
            rest_, [](char one) { return one == '"' || one == '\\' || static_cast<unsigned char>(one) < 0x20U; });
        const std::string_view text = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(text.size());
        return take("\"") && platform::isUtf8(text) ? std::optional(text) : std::nullopt;
    }

    std::optional<Value> takeValue() {
        if (take("true")) return Value(true);
        if (take("false")) return Value(false);
        if (!take("\"")) return takeNumber();
        const auto text = takeText();
        return text ? std::optional(Value(*text)) : std::nullopt;
    }

  private:
    /// "0", "-12", "0.25"; none with an exponent.
    std::optional<Value> takeNumber() {
        const char* const begin = rest_.data();
        if (rest_.starts_with('-')) rest_.remove_prefix(1);
        const bool hasZero = rest_.starts_with('0');
        const std::size_t digits = takeDigits();
        if (digits == 0 || (hasZero && digits > 1)) return std::nullopt;
        if (!take(".")) return numberFrom<std::int64_t>(begin);
        return takeDigits() > 0 ? numberFrom<double>(begin) : std::nullopt;
    }

    std::size_t takeDigits() {
        const auto end = std::ranges::find_if_not(rest_, isDecimal);
        const auto count = static_cast<std::size_t>(end - rest_.begin());
        rest_.remove_prefix(count);
        return count;
    }

    template<class Number>
    [[nodiscard]] std::optional<Value> numberFrom(const char* begin) const {
        Number number{};
        const auto read = std::from_chars(begin, rest_.data(), number);
        return read.ec == std::errc() && read.ptr == rest_.data() ? std::optional(Value(number)) : std::nullopt;
    }

    std::string_view rest_;
};

} // namespace

std::optional<ChangeRecord> readPlainLine(std::string_view line) {
    PlainReader reader(line);
    ChangeRecord record;
    if (!reader.take(R"({"revision":)")) return std::nullopt;
    const auto revision = reader.takeInteger();
    const auto first = reader.take(R"(,"first":)") ? reader.takeInteger() : revision;
    if (!revision || !first || !reader.take(R"(,"time":")")) return std::nullopt;
    record.revision = *revision;
    record.first = *first;
    if (!isPossible(record)) return std::nullopt;
    const auto time = reader.takeText();
    const auto moment = time ? momentOf(*time) : std::nullopt;
    if (!moment || !reader.take(R"(,"key":")")) return std::nullopt;
    record.time = *moment;
    const auto key = reader.takeText();
    if (!key) return std::nullopt;
    record.key = *key;
    for (const auto& [name, value] : {std::pair(R"(,"old":)", &record.before), std::pair(R"(,"new":)", &record.after)})
        if (reader.take(name) && !(*value = reader.takeValue())) return std::nullopt;
    if (!record.before && !record.after && reader.take(R"(,"withheld":"secure")")) record.withheld = Withheld::secure;
    return reader.take("}") && reader.isAtEnd() ? std::optional(std::move(record)) : std::nullopt;
}

} // namespace lumora
