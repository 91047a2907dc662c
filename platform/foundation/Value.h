#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

class Value;
class Dictionary;

/// Raw bytes: message bodies, archives, file contents.
using Data = std::vector<std::uint8_t>;

/// A list keeps its order; entries may be of mixed kinds.
using List = std::vector<Value>;

/// A point in time, in seconds since 2001-01-01 00:00:00 UTC (the epoch that archives count from).
struct Date {
    double seconds = 0;
    friend bool operator==(const Date&, const Date&) = default;
};

/// Anything a keyed archive can hold: nil, boolean, integer, real, text, data, date, list, dictionary.
///
///     Value change = Dictionary{{"key", "kSleepTime"}, {"object", 30}};
///     change["object"].integer();   // 30
///
/// A value copies like an int: its contents are immutable and shared, so a copy costs one reference count however
/// large the value is. Numbers and booleans stay apart (`true` never equals `1`), and so do integers and reals.
/// Texts are UTF-8 and may hold NUL. Any thread may read a value, and threads may hold copies of one.
class PLATFORM_EXPORT Value {
  public:
    enum class Kind : std::uint8_t { nil, boolean, integer, real, text, data, date, list, dictionary };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool boolean) : contents_(boolean) {}
    Value(int integer) : contents_(std::int64_t{integer}) {}
    Value(std::int64_t integer) : contents_(integer) {}
    Value(double real) : contents_(real) {}
    Value(float real) : contents_(double{real}) {}
    Value(const char* text);
    Value(std::string text);
    Value(std::string_view text);
    /// Shares a text that is there already, with the characters that it refers to; never null.
    explicit Value(std::shared_ptr<const std::string_view> text) : contents_(std::move(text)) {}
    Value(Data data);
    Value(Date date) : contents_(date) {}
    Value(List list);
    Value(Dictionary dictionary);

    [[nodiscard]] Kind kind() const { return static_cast<Kind>(contents_.index()); }
    [[nodiscard]] bool isNil() const { return kind() == Kind::nil; }
    /// True for an integer or a real, false for a boolean.
    [[nodiscard]] bool isNumber() const { return kind() == Kind::integer || kind() == Kind::real; }

    /// What the value holds if it is of that kind, else nothing. No kind is converted into another.
    [[nodiscard]] std::optional<bool> boolean() const { return copy<bool>(); }
    [[nodiscard]] std::optional<std::int64_t> integer() const { return copy<std::int64_t>(); }
    [[nodiscard]] std::optional<double> real() const { return copy<double>(); }
    [[nodiscard]] std::optional<Date> date() const { return copy<Date>(); }
    /// Null when the value is of another kind. What it points to, and a text's characters, live as long as any copy of
    /// this value.
    [[nodiscard]] const std::string_view* text() const { return pointer<std::string_view>(); }
    [[nodiscard]] const Data* data() const { return pointer<Data>(); }
    [[nodiscard]] const List* list() const { return pointer<List>(); }
    [[nodiscard]] const Dictionary* dictionary() const { return pointer<Dictionary>(); }

    /// The platform's lenient reading: a number or boolean as a number, everything else as 0.
    [[nodiscard]] double doubleValue() const;
    /// True for `true` and for any number but zero.
    [[nodiscard]] bool boolValue() const { return doubleValue() != 0; }

    /// The entry of a dictionary; nil for a missing key, and for any other kind of value.
    [[nodiscard]] Value operator[](std::string_view key) const;

    /// Deep equality: kinds must agree, the order of a dictionary does not count, and NaN equals nothing.
    friend PLATFORM_EXPORT bool operator==(const Value& a, const Value& b);

  private:
    template<class T>
    using Shared = std::shared_ptr<const T>;
    template<class T>
    std::optional<T> copy() const {
        const T* found = std::get_if<T>(&contents_);
        return found ? std::optional<T>(*found) : std::nullopt;
    }
    template<class T>
    const T* pointer() const {
        const auto* found = std::get_if<Shared<T>>(&contents_);
        return found ? found->get() : nullptr;
    }

    std::variant<std::monostate, bool, std::int64_t, double, Shared<std::string_view>, Shared<Data>, Date, Shared<List>,
                 Shared<Dictionary>>
        contents_;
};

/// A dictionary from text to value that keeps its insertion order.
///
/// Setting a known key keeps its place. Lookup takes O(log n) comparisons for any keys: keys that arrive from other
/// processes must not be able to make it slow.
class PLATFORM_EXPORT Dictionary {
  public:
    using Entry = std::pair<std::string, Value>;

    Dictionary() = default;
    Dictionary(std::initializer_list<Entry> entries) : Dictionary(std::vector<Entry>(entries)) {}
    /// Takes all entries at once, in O(n log n). Of entries with equal keys, the first gives the place and the last the
    /// value.
    explicit Dictionary(std::vector<Entry> entries);

    [[nodiscard]] std::size_t size() const { return entries_.size(); }
    [[nodiscard]] bool empty() const { return entries_.empty(); }
    [[nodiscard]] bool contains(std::string_view key) const { return find(key) != nullptr; }
    /// Null when the key is absent. Valid until the dictionary is changed.
    [[nodiscard]] const Value* find(std::string_view key) const;
    /// nil when the key is absent.
    [[nodiscard]] Value operator[](std::string_view key) const;

    void set(std::string_view key, Value value);
    /// False when there was no such key.
    bool remove(std::string_view key);

    /// In insertion order.
    [[nodiscard]] std::vector<Entry>::const_iterator begin() const { return entries_.begin(); }
    [[nodiscard]] std::vector<Entry>::const_iterator end() const { return entries_.end(); }
    /// The entry at a place in the order of the keys' bytes; place < size().
    [[nodiscard]] const Entry& inKeyOrder(std::size_t place) const { return entries_[byKey_[place]]; }

    friend PLATFORM_EXPORT bool operator==(const Dictionary& a, const Dictionary& b);

  private:
    /// Where the key stands in byKey_, or would stand.
    [[nodiscard]] std::size_t placeOf(std::string_view key) const;

    std::vector<Entry> entries_;
    std::vector<std::uint32_t> byKey_; ///< positions in entries_, sorted by key
};

/// Like ==, but NaN means the same as NaN, however deep it stands: false where it is a change to set one in place of the
/// other. Any thread.
[[nodiscard]] PLATFORM_EXPORT bool meansTheSame(const Value& a, const Value& b);
[[nodiscard]] PLATFORM_EXPORT bool meansTheSame(const Dictionary& a, const Dictionary& b);

/// The value as the platform's "%@" shows it: old-style property-list text, dictionary keys sorted. A top-level text
/// stands bare, nil is "(null)". For NSLog(); secure values are shown as they are. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::string description(const Value& value);

} // namespace platform
