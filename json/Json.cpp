#include "json/Json.h"

#include "platform/foundation/Base64.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Timestamp.h"
#include "platform/foundation/Unicode.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

using nlohmann::ordered_json;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::PropertyListLimits;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

constexpr const char* kData = "$data";
constexpr const char* kDate = "$date";
constexpr const char* kReal = "$real";

std::string tooDeep(unsigned depth) {
    return "lists and dictionaries are nested more than " + std::to_string(depth) + " deep";
}

using Entries = std::vector<Dictionary::Entry>;

ordered_json single(const char* key, ordered_json value) {
    ordered_json object = ordered_json::object();
    object[key] = std::move(value);
    return object;
}

/// What a text stands for, if it is the very text that is written for that; a year has four digits and is not 0000.
std::optional<Date> momentOf(std::string_view text) {
    const auto date = platform::dateFromTimestamp(text);
    return date && platform::timestamp(*date) == text && !text.starts_with("0000") ? date : std::nullopt;
}

std::optional<Data> dataOf(std::string_view text) {
    auto data = platform::dataFromBase64(text);
    return data && platform::base64(*data) == text ? std::move(data) : std::nullopt;
}

/// Turns a value into the JSON library's own tree.
class Writer {
  public:
    ordered_json write(const Value& value) {
        switch (value.kind()) {
        case Value::Kind::nil:
            return nullptr;
        case Value::Kind::boolean:
            return *value.boolean();
        case Value::Kind::integer:
            return *value.integer();
        case Value::Kind::real:
            return real(*value.real());
        case Value::Kind::text:
            return *value.text();
        case Value::Kind::data:
            return single(kData, platform::base64(*value.data()));
        case Value::Kind::date:
            return date(*value.date());
        case Value::Kind::list:
            return nested([&] { return list(*value.list()); });
        case Value::Kind::dictionary:
            return nested([&] { return dictionary(*value.dictionary()); });
        }
        return nullptr;
    }

    [[nodiscard]] bool tooDeep() const { return tooDeep_; }

  private:
    static ordered_json real(double real) {
        if (std::isfinite(real)) return real;
        return single(kReal, std::isnan(real) ? "nan" : real > 0 ? "inf" : "-inf");
    }

    static ordered_json date(Date date) {
        const bool negativeZero = date.seconds == 0 && std::signbit(date.seconds); // would come back as plain zero
        if (const auto text = platform::timestamp(date); text && momentOf(*text) == date && !negativeZero)
            return single(kDate, *text);
        return single(kDate, real(date.seconds));
    }

    template<class Make>
    ordered_json nested(Make make) {
        if (depth_ == PropertyListLimits::depth) {
            tooDeep_ = true;
            return nullptr;
        }
        ++depth_;
        ordered_json made = make();
        --depth_;
        return made;
    }

    ordered_json list(const List& list) {
        ordered_json array = ordered_json::array();
        for (const Value& entry : list)
            array.push_back(write(entry));
        return array;
    }

    ordered_json dictionary(const Dictionary& dictionary) {
        ordered_json object = ordered_json::object();
        // Beneath, the object is a plain list of pairs. Its own insertion would look through all of them each time, and
        // a dictionary's keys differ anyway.
        auto& entries = object.get_ref<ordered_json::object_t&>();
        for (const auto& [key, value] : dictionary)
            entries.push_back({key.starts_with('$') ? "$" + key : key, write(value)});
        return object;
    }

    unsigned depth_ = 0;
    bool tooDeep_ = false;
};

/// The characters of a text, which count its lines while they are read. Copies count as one.
class CountedCharacters {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountedCharacters(const char* at, std::size_t& line) : at_(at), line_(&line) {}
    reference operator*() const { return *at_; }
    CountedCharacters& operator++() {
        if (*at_++ == '\n') ++*line_;
        return *this;
    }
    friend bool operator==(const CountedCharacters& a, const CountedCharacters& b) { return a.at_ == b.at_; }

  private:
    const char* at_;
    std::size_t* line_;
};

/// Builds values from what the JSON parser reports, one call for each thing that it meets.
class Reader {
  public:
    /// For readJson().
    Reader() = default;
    /// For readJsonDocument(), with the line that is read at each call.
    Reader(const JsonLimits& limits, const std::size_t& line) : limits_(limits), line_(&line) {}

    bool null() { return add(nullptr); }
    bool boolean(bool value) { return add(value); }
    bool number_integer(std::int64_t value) { return add(value); }
    bool number_unsigned(std::uint64_t value) {
        if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return beyond(std::to_string(value));
        return add(static_cast<std::int64_t>(value));
    }
    bool number_float(double value, const std::string& digits) {
        // The parser reports an integer that is too large as a real.
        if (digits.find_first_of(".eE") == std::string::npos) return beyond(digits);
        return add(value);
    }
    bool string(std::string& text) { return add(std::move(text)); }
    bool binary(const ordered_json::binary_t&) { return fail("JSON has no binary values"); }

    bool start_array(std::size_t) { return open(); }
    bool end_array() {
        List list;
        list.reserve(open_.back().entries.size());
        for (auto& [key, value] : open_.back().entries)
            list.push_back(std::move(value));
        open_.pop_back();
        return add(std::move(list));
    }
    bool start_object(std::size_t) { return open(); }
    bool key(std::string& key) {
        if (++keyCount_ > limits_.keys) return fail("there are more than " + std::to_string(limits_.keys) + " keys");
        if (line_) {
            open_.back().lines.push_back(*line_);
            if (open_.size() <= 2)
                keys_.push_back(
                    {static_cast<unsigned>(open_.size()), key.starts_with("$$") ? key.substr(1) : key, *line_});
        }
        open_.back().key = std::move(key);
        return true;
    }
    bool end_object() {
        Entries entries = std::move(open_.back().entries);
        const std::vector<std::size_t> lines = std::move(open_.back().lines);
        open_.pop_back();
        for (const auto& [key, value] : entries)
            if (key.starts_with('$') && !key.starts_with("$$")) return special(entries);
        std::unordered_set<std::string_view> seen;
        for (const auto& [key, value] : entries)
            if (!seen.insert(key).second)
                return failAt(lines, seen.size(), "the key \"" + key + "\" stands there twice");
        for (auto& [key, value] : entries)
            if (key.starts_with('$')) key.erase(0, 1);
        return add(Dictionary(std::move(entries)));
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) {
        // What the library says begins with a code of its own in brackets.
        const std::string_view what = error.what();
        const std::size_t code = what.find("] ");
        if (!line_) return fail(std::string(code == std::string_view::npos ? what : what.substr(code + 2)));
        // Behind a place of its own comes what may repeat a secret. A number that is too large has no place.
        const std::size_t place = what.find(": ");
        if (place == std::string_view::npos) return fail("a number is beyond what a real can be");
        return fail(std::string(what.substr(place + 2, what.find("; last read: ") - place - 2)));
    }

    Result<Value> result() && { return std::move(root_); }
    [[nodiscard]] const std::vector<JsonKey>& keys() const { return keys_; }

  private:
    /// A list or dictionary that is not closed yet. Entries of a list have empty keys.
    struct Open {
        std::string key;
        Entries entries;
        std::vector<std::size_t> lines; ///< of each key, in a document
    };

    bool open() {
        if (open_.size() == limits_.depth) return fail(tooDeep(limits_.depth));
        open_.emplace_back();
        return true;
    }

    bool add(Value value) {
        if (open_.empty()) {
            root_ = std::move(value);
        } else {
            open_.back().entries.emplace_back(std::move(open_.back().key), std::move(value));
        }
        return true;
    }

    /// A dictionary with a key that begins with a single "$".
    bool special(const Entries& entries) {
        const auto& [key, value] = entries.front();
        if (entries.size() == 1) {
            if (auto known = specialValue(key, value)) return add(std::move(*known));
            for (const char* form : {kData, kDate, kReal})
                if (key == form) return fail("this is no value for \"" + key + "\"");
        }
        return fail(R"(only {"$data": …}, {"$date": …} and {"$real": …}, alone, have a key with "$" before it; )"
                    R"(a key of your own is written with "$$")");
    }

    static std::optional<Value> specialValue(std::string_view key, const Value& value) {
        const std::string_view* text = value.text();
        if (key == kData && text) {
            if (auto data = dataOf(*text)) return Value(std::move(*data));
        } else if (key == kDate && text) {
            if (auto date = momentOf(*text)) return Value(*date);
        } else if (key == kDate && value.isNumber()) {
            return Value(Date{value.doubleValue()});
        } else if (key == kReal && text) {
            if (*text == "nan") return Value(std::numeric_limits<double>::quiet_NaN());
            if (*text == "inf" || *text == "-inf")
                return Value(std::copysign(std::numeric_limits<double>::infinity(), *text == "inf" ? 1.0 : -1.0));
        }
        return std::nullopt;
    }

    bool beyond(const std::string& digits) { return fail((line_ ? "a number" : digits) + " is beyond 64 signed bits"); }

    bool fail(const std::string& why) {
        const std::string line = line_ ? "line " + std::to_string(*line_) + ": " : "";
        root_ = Result<Value>::failure(line + why);
        return false;
    }

    /// The same for a key that was read a while ago; without lines, fail().
    bool failAt(const std::vector<std::size_t>& lines, std::size_t place, const std::string& why) {
        if (place >= lines.size()) return fail(why);
        root_ = Result<Value>::failure("line " + std::to_string(lines[place]) + ": " + why);
        return false;
    }

    JsonLimits limits_{PropertyListLimits::depth, std::numeric_limits<std::size_t>::max()};
    const std::size_t* line_ = nullptr; ///< null for readJson()
    std::size_t keyCount_ = 0;
    std::vector<JsonKey> keys_;
    std::vector<Open> open_;
    Result<Value> root_ = Value();
};

/// JSON for a terminal or a log, with nothing lost: a character that would command a terminal is written \uXXXX. Line
/// breaks stay, since JSON has them only between values.
std::string fitToShow(std::string_view json) {
    std::string printed;
    printed.reserve(json.size());
    while (!json.empty()) {
        const char32_t character = platform::takeCharacter(json);
        if (character == '\n' || platform::isVisible(character))
            platform::appendCharacter(printed, character);
        else
            platform::appendEscaped(printed, character, 'u');
    }
    return printed;
}

} // namespace

Result<std::string> writeJson(const Value& value, JsonLayout layout) {
    Writer writer;
    const ordered_json tree = writer.write(value);
    if (writer.tooDeep()) return Result<std::string>::failure(tooDeep(PropertyListLimits::depth));
    try {
        return fitToShow(tree.dump(layout == JsonLayout::indented ? 2 : -1));
    } catch (const ordered_json::type_error&) {
        // The library refuses to write nothing else.
        return Result<std::string>::failure("a text is not valid UTF-8");
    }
}

Result<Value> readJson(std::string_view text) {
    Reader reader;
    ordered_json::sax_parse(text, &reader);
    return std::move(reader).result();
}

Result<JsonDocument> readJsonDocument(std::string_view text, const JsonLimits& limits) {
    std::size_t line = 1;
    Reader reader(limits, line);
    const char* const end = text.data() + text.size();
    ordered_json::sax_parse(CountedCharacters(text.data(), line), CountedCharacters(end, line), &reader);
    std::vector<JsonKey> keys = reader.keys();
    Result<Value> value = std::move(reader).result();
    if (!value) return Result<JsonDocument>::failure(value.error());
    return JsonDocument{std::move(value).value(), std::move(keys)};
}

} // namespace lumora
