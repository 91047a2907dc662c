#include "platform/foundation/Value.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace platform {

namespace {

/// Destroying a list destroys its entries, which may be lists again, and so on: each level would take stack. So only
/// the first levels are destroyed in place; what lies deeper waits here until those have returned.
class Teardown {
  public:
    template<class Contents>
    static void destroy(Contents& contents) {
        if (current == nullptr) {
            Teardown outermost;
            current = &outermost;
            release(contents);
            outermost.drain();
            current = nullptr;
        } else if (current->depth_ < levelsInPlace) {
            ++current->depth_;
            release(contents);
            --current->depth_;
        } else {
            current->keep(contents);
        }
    }

  private:
    static constexpr unsigned levelsInPlace = 64;

    template<class Contents>
    static void release(Contents& contents) {
        Contents dying = std::move(contents);
    }
    void keep(List& list) { lists_.push_back(std::move(list)); }
    void keep(Dictionary& dictionary) { dictionaries_.push_back(std::move(dictionary)); }

    void drain() {
        while (!lists_.empty() || !dictionaries_.empty()) {
            std::vector<List> lists = std::move(lists_);
            std::vector<Dictionary> dictionaries = std::move(dictionaries_);
            lists_.clear();
            dictionaries_.clear();
        }
    }

    static thread_local Teardown* current;
    unsigned depth_ = 0;
    std::vector<List> lists_;
    std::vector<Dictionary> dictionaries_;
};

thread_local Teardown* Teardown::current = nullptr;

/// Holds a container for the values that share it.
template<class Contents>
struct Box {
    explicit Box(Contents&& taken) : contents(std::move(taken)) {}
    Box(const Box&) = delete;
    Box& operator=(const Box&) = delete;
    ~Box() { Teardown::destroy(contents); }

    Contents contents;
};

template<class Contents>
std::shared_ptr<const Contents> shared(Contents contents) {
    auto box = std::make_shared<Box<Contents>>(std::move(contents));
    const Contents* inside = &box->contents;
    return {std::move(box), inside};
}

/// Holds the characters of a text for the values that share it.
struct Text {
    explicit Text(std::string&& taken) : characters(std::move(taken)), text(characters) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() = default;

    std::string characters;
    std::string_view text;
};

std::shared_ptr<const std::string_view> shared(std::string characters) {
    auto held = std::make_shared<Text>(std::move(characters));
    const std::string_view* inside = &held->text;
    return {std::move(held), inside};
}

/// Compares two values of any depth: containers wait in a list until their turn comes, in place of recursion.
class Comparison {
  public:
    /// Whether NaN equals NaN.
    explicit Comparison(bool equatesNaN) : equatesNaN_(equatesNaN) {}

    bool equal(const Value& a, const Value& b) {
        if (a.kind() != b.kind()) return false;
        switch (a.kind()) {
        case Value::Kind::text:
            return *a.text() == *b.text();
        case Value::Kind::data:
            return *a.data() == *b.data();
        case Value::Kind::list:
        case Value::Kind::dictionary:
            waiting_.emplace_back(&a, &b);
            return true;
        default:
            if (equatesNaN_ && isNaN(a) && isNaN(b)) return true;
            return a.boolean() == b.boolean() && a.integer() == b.integer() && a.real() == b.real() &&
                   a.date() == b.date();
        }
    }

    bool equal(const Dictionary& a, const Dictionary& b) {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i) {
            const auto& [key, value] = a.inKeyOrder(i);
            const auto& [otherKey, otherValue] = b.inKeyOrder(i);
            if (key != otherKey || !equal(value, otherValue)) return false;
        }
        return true;
    }

    bool finish() {
        const auto equals = [this](const Value& a, const Value& b) { return equal(a, b); };
        while (!waiting_.empty()) {
            const auto [a, b] = waiting_.back();
            waiting_.pop_back();
            if (!(a->list() ? std::ranges::equal(*a->list(), *b->list(), equals)
                            : equal(*a->dictionary(), *b->dictionary())))
                return false;
        }
        return true;
    }

  private:
    static bool isNaN(const Value& value) {
        return std::isnan(value.date() ? value.date()->seconds : value.doubleValue());
    }

    bool equatesNaN_;
    std::vector<std::pair<const Value*, const Value*>> waiting_;
};

template<class T>
bool areEqual(const T& a, const T& b, bool equatesNaN) {
    Comparison comparison(equatesNaN);
    return comparison.equal(a, b) && comparison.finish();
}

} // namespace

Value::Value(const char* text) : Value(std::string(text)) {
}
Value::Value(std::string text) : contents_(shared(std::move(text))) {
}
Value::Value(std::string_view text) : Value(std::string(text)) {
}
Value::Value(Data data) : contents_(std::make_shared<const Data>(std::move(data))) {
}
Value::Value(List list) : contents_(shared(std::move(list))) {
}
Value::Value(Dictionary dictionary) : contents_(shared(std::move(dictionary))) {
}

double Value::doubleValue() const {
    switch (kind()) {
    case Kind::boolean:
        return *boolean() ? 1 : 0;
    case Kind::integer:
        return static_cast<double>(*integer());
    case Kind::real:
        return *real();
    default:
        return 0;
    }
}

Value Value::operator[](std::string_view key) const {
    const Dictionary* entries = dictionary();
    return entries != nullptr ? (*entries)[key] : Value();
}

bool operator==(const Value& a, const Value& b) {
    return areEqual(a, b, false);
}

bool meansTheSame(const Value& a, const Value& b) {
    return areEqual(a, b, true);
}

Dictionary::Dictionary(std::vector<Entry> entries) : entries_(std::move(entries)), byKey_(entries_.size()) {
    const auto key = [this](std::uint32_t position) -> const std::string& { return entries_[position].first; };
    std::iota(byKey_.begin(), byKey_.end(), 0U);
    std::ranges::sort(byKey_, [&key](std::uint32_t a, std::uint32_t b) {
        const int order = key(a).compare(key(b));
        return order != 0 ? order < 0 : a < b;
    });
    if (std::ranges::adjacent_find(byKey_, {}, key) == byKey_.end()) return;

    // Equal keys now stand side by side, earliest first: the first keeps its place and takes the last one's value.
    std::vector<bool> dropped(entries_.size());
    for (std::size_t first = 0, next = 1; next < byKey_.size(); ++next) {
        if (key(byKey_[first]) != key(byKey_[next])) {
            first = next;
        } else {
            entries_[byKey_[first]].second = std::move(entries_[byKey_[next]].second);
            dropped[byKey_[next]] = true;
        }
    }
    std::vector<Entry> kept;
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (!dropped[i]) kept.push_back(std::move(entries_[i]));
    *this = Dictionary(std::move(kept));
}

std::size_t Dictionary::placeOf(std::string_view key) const {
    const auto keyAt = [this](std::uint32_t position) -> std::string_view { return entries_[position].first; };
    return static_cast<std::size_t>(std::ranges::lower_bound(byKey_, key, {}, keyAt) - byKey_.begin());
}

const Value* Dictionary::find(std::string_view key) const {
    const std::size_t place = placeOf(key);
    if (place == size() || inKeyOrder(place).first != key) return nullptr;
    return &inKeyOrder(place).second;
}

Value Dictionary::operator[](std::string_view key) const {
    const Value* found = find(key);
    return found != nullptr ? *found : Value();
}

void Dictionary::set(std::string_view key, Value value) {
    const std::size_t place = placeOf(key);
    if (place < size() && inKeyOrder(place).first == key) {
        entries_[byKey_[place]].second = std::move(value);
        return;
    }
    const auto position = static_cast<std::uint32_t>(entries_.size());
    entries_.emplace_back(key, std::move(value));
    byKey_.insert(byKey_.begin() + static_cast<std::ptrdiff_t>(place), position);
}

bool Dictionary::remove(std::string_view key) {
    const std::size_t place = placeOf(key);
    if (place == size() || inKeyOrder(place).first != key) return false;
    const std::uint32_t position = byKey_[place];
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    byKey_.erase(byKey_.begin() + static_cast<std::ptrdiff_t>(place));
    for (std::uint32_t& later : byKey_)
        if (later > position) --later;
    return true;
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    return areEqual(a, b, false);
}

bool meansTheSame(const Dictionary& a, const Dictionary& b) {
    return areEqual(a, b, true);
}

} // namespace platform
