#include "platform/foundation/Value.h"

#include <algorithm>
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

/// Compares two values of any depth with a list of pairs still to be compared in place of recursion.
class Comparison {
  public:
    bool enqueue(const Value& a, const Value& b) {
        if (a.kind() != b.kind()) return false;
        switch (a.kind()) {
        case Value::Kind::nil:
            return true;
        case Value::Kind::boolean:
            return a.boolean() == b.boolean();
        case Value::Kind::integer:
            return a.integer() == b.integer();
        case Value::Kind::real:
            return a.real() == b.real();
        case Value::Kind::date:
            return a.date() == b.date();
        case Value::Kind::text:
            return *a.text() == *b.text();
        case Value::Kind::data:
            return *a.data() == *b.data();
        case Value::Kind::list:
            if (a.list()->size() != b.list()->size()) return false;
            lists_.emplace_back(a.list(), b.list());
            return true;
        case Value::Kind::dictionary:
            return enqueue(*a.dictionary(), *b.dictionary());
        }
        return false;
    }

    bool enqueue(const Dictionary& a, const Dictionary& b) {
        if (a.size() != b.size()) return false;
        dictionaries_.emplace_back(&a, &b);
        return true;
    }

    bool run() {
        while (!lists_.empty() || !dictionaries_.empty()) {
            if (!lists_.empty()) {
                const auto [a, b] = lists_.back();
                lists_.pop_back();
                for (std::size_t i = 0; i < a->size(); ++i)
                    if (!enqueue((*a)[i], (*b)[i])) return false;
            } else {
                const auto [a, b] = dictionaries_.back();
                dictionaries_.pop_back();
                for (std::size_t i = 0; i < a->size(); ++i) {
                    const Dictionary::Entry& entry = a->inKeyOrder(i);
                    const Dictionary::Entry& other = b->inKeyOrder(i);
                    if (entry.first != other.first || !enqueue(entry.second, other.second)) return false;
                }
            }
        }
        return true;
    }

  private:
    std::vector<std::pair<const List*, const List*>> lists_;
    std::vector<std::pair<const Dictionary*, const Dictionary*>> dictionaries_;
};

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

std::optional<bool> Value::boolean() const {
    const auto* boolean = std::get_if<bool>(&contents_);
    return boolean != nullptr ? std::optional(*boolean) : std::nullopt;
}

std::optional<std::int64_t> Value::integer() const {
    const auto* integer = std::get_if<std::int64_t>(&contents_);
    return integer != nullptr ? std::optional(*integer) : std::nullopt;
}

std::optional<double> Value::real() const {
    const auto* real = std::get_if<double>(&contents_);
    return real != nullptr ? std::optional(*real) : std::nullopt;
}

std::optional<Date> Value::date() const {
    const auto* date = std::get_if<Date>(&contents_);
    return date != nullptr ? std::optional(*date) : std::nullopt;
}

const std::string_view* Value::text() const {
    const auto* text = std::get_if<Shared<std::string_view>>(&contents_);
    return text != nullptr ? text->get() : nullptr;
}

const Data* Value::data() const {
    const auto* data = std::get_if<Shared<Data>>(&contents_);
    return data != nullptr ? data->get() : nullptr;
}

const List* Value::list() const {
    const auto* list = std::get_if<Shared<List>>(&contents_);
    return list != nullptr ? list->get() : nullptr;
}

const Dictionary* Value::dictionary() const {
    const auto* dictionary = std::get_if<Shared<Dictionary>>(&contents_);
    return dictionary != nullptr ? dictionary->get() : nullptr;
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

bool Value::boolValue() const {
    return doubleValue() != 0;
}

Value Value::operator[](std::string_view key) const {
    const Dictionary* entries = dictionary();
    return entries != nullptr ? (*entries)[key] : Value();
}

bool operator==(const Value& a, const Value& b) {
    Comparison comparison;
    return comparison.enqueue(a, b) && comparison.run();
}

Dictionary::Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<Entry> entries) : Dictionary(std::vector<Entry>(entries)) {
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

std::size_t Dictionary::size() const {
    return entries_.size();
}

bool Dictionary::empty() const {
    return entries_.empty();
}

bool Dictionary::contains(std::string_view key) const {
    return find(key) != nullptr;
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
    entries_.erase(entries_.begin() + position);
    byKey_.erase(byKey_.begin() + static_cast<std::ptrdiff_t>(place));
    for (std::uint32_t& later : byKey_)
        if (later > position) --later;
    return true;
}

std::vector<Dictionary::Entry>::const_iterator Dictionary::begin() const {
    return entries_.begin();
}

std::vector<Dictionary::Entry>::const_iterator Dictionary::end() const {
    return entries_.end();
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    Comparison comparison;
    return comparison.enqueue(a, b) && comparison.run();
}

} // namespace platform
