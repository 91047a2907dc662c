#include "XmlPropertyList.h"

#include "platform/foundation/Base64.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Timestamp.h"

#include <glib.h>

#include <array>
#include <charconv>

namespace platform {

namespace {

/// The kinds of element, by name.
enum class Element : std::uint8_t { plist, dict, array, key, string, integer, real, true_, false_, date, data };

constexpr std::array<std::string_view, 11> elementNames{"plist", "dict", "array", "key",  "string", "integer",
                                                        "real",  "true", "false", "date", "data"};

std::optional<Element> elementNamed(std::string_view name) {
    for (std::size_t i = 0; i < elementNames.size(); ++i)
        if (elementNames[i] == name) return static_cast<Element>(i);
    return std::nullopt;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\r\n";
    const std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

template<class Number>
std::optional<Value> numberFrom(std::string_view text, int base = 10) {
    Number number{};
    std::from_chars_result result{};
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    if constexpr (std::is_integral_v<Number>) {
        result = std::from_chars(text.data(), text.data() + text.size(), number, base);
    } else {
        result = std::from_chars(text.data(), text.data() + text.size(), number);
    }
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return Value(number);
}

std::optional<Value> integerFrom(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal && text.find_first_of("+-") == std::string_view::npos)
        return numberFrom<std::int64_t>(text.substr(2), 16);
    return numberFrom<std::int64_t>(text);
}

Result<void> refuse(const char* why) {
    return Result<void>::failure(why);
}

/// Receives the parser's events and builds the value, with a stack of its own in place of recursion.
class Builder {
  public:
    Result<void> start(std::string_view name);
    Result<void> text(std::string_view text);
    Result<void> end();
    [[nodiscard]] bool complete() const { return root_.has_value() && open_.empty(); }
    [[nodiscard]] Value take() { return std::move(*root_); }

  private:
    struct Open {
        Element element;
        std::string characters{};
        std::optional<std::string> key{}; ///< of a dictionary, while its value is still to come
        List list{};
        std::vector<Dictionary::Entry> entries{};
    };

    Result<void> put(Value value);
    [[nodiscard]] static std::optional<Value> valueOf(Open& element);

    std::vector<Open> open_;
    std::optional<Value> root_;
};

Result<void> Builder::start(std::string_view name) {
    const auto element = elementNamed(name);
    if (!element) return refuse("an element that property lists do not have");
    if (open_.empty()) {
        if (element != Element::plist) return refuse("not a property list");
    } else {
        const Open& parent = open_.back();
        const bool container =
            parent.element == Element::plist || parent.element == Element::array || parent.element == Element::dict;
        if (!container || element == Element::plist) return refuse("an element where none may be");
        if (parent.element == Element::dict && (element == Element::key) == parent.key.has_value())
            return refuse("keys and values do not take turns");
        if (parent.element != Element::dict && element == Element::key) return refuse("a key outside a dictionary");
    }
    // The outermost element is no value, so it does not count.
    if (open_.size() > PropertyListLimits::depth) {
        const bool container = element == Element::dict || element == Element::array;
        if (container || open_.size() > PropertyListLimits::depth + 1) return refuse("nested too deeply");
    }
    open_.push_back({*element});
    return {};
}

Result<void> Builder::text(std::string_view text) {
    if (open_.empty()) return {};
    Open& element = open_.back();
    switch (element.element) {
    case Element::plist:
    case Element::dict:
    case Element::array:
    case Element::true_:
    case Element::false_:
        return trimmed(text).empty() ? Result<void>() : refuse("characters outside a value");
    default:
        element.characters += text;
        return {};
    }
}

Result<void> Builder::end() {
    Open element = std::move(open_.back());
    open_.pop_back();
    if (element.element == Element::plist) return root_ ? Result<void>() : refuse("an empty property list");
    if (element.element == Element::key) {
        open_.back().key = std::move(element.characters);
        return {};
    }
    if (element.element == Element::dict && element.key) return refuse("a key without a value");
    auto value = valueOf(element);
    return value ? put(std::move(*value)) : refuse("a value that cannot be read");
}

std::optional<Value> Builder::valueOf(Open& element) {
    switch (element.element) {
    case Element::dict:
        return Value(Dictionary(std::move(element.entries)));
    case Element::array:
        return Value(std::move(element.list));
    case Element::string:
        return Value(std::move(element.characters));
    case Element::integer:
        return integerFrom(trimmed(element.characters));
    case Element::real:
        return numberFrom<double>(trimmed(element.characters));
    case Element::true_:
        return Value(true);
    case Element::false_:
        return Value(false);
    case Element::date:
        return dateFromTimestamp(trimmed(element.characters));
    case Element::data:
        return dataFromBase64(element.characters);
    case Element::plist:
    case Element::key:
        break;
    }
    return std::nullopt;
}

Result<void> Builder::put(Value value) {
    Open& parent = open_.back();
    if (parent.element == Element::array) {
        parent.list.push_back(std::move(value));
    } else if (parent.element == Element::dict) {
        parent.entries.emplace_back(std::move(*parent.key), std::move(value));
        parent.key.reset();
    } else {
        if (root_) return refuse("more than one value");
        root_ = std::move(value);
    }
    return {};
}

void complain(GError** error, const Result<void>& taken) {
    if (!taken) g_set_error_literal(error, G_MARKUP_ERROR, G_MARKUP_ERROR_INVALID_CONTENT, taken.error().c_str());
}

constexpr GMarkupParser events{
    [](GMarkupParseContext* /*context*/, const gchar* name, const gchar** /*names*/, const gchar** /*values*/,
       gpointer builder, GError** error) { complain(error, static_cast<Builder*>(builder)->start(name)); },
    [](GMarkupParseContext* /*context*/, const gchar* /*name*/, gpointer builder, GError** error) {
        complain(error, static_cast<Builder*>(builder)->end());
    },
    [](GMarkupParseContext* /*context*/, const gchar* text, gsize size, gpointer builder, GError** error) {
        complain(error, static_cast<Builder*>(builder)->text({text, size}));
    },
    nullptr, // comments and the document type mean nothing here
    nullptr,
};

} // namespace

Result<Value> readXmlPropertyList(std::string_view document) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (document.starts_with(byteOrderMark)) document.remove_prefix(byteOrderMark.size());
    if (!trimmed(document).starts_with('<')) return Result<Value>::failure("neither a binary nor an XML property list");

    Builder builder;
    const std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_free)> context(
        g_markup_parse_context_new(&events, G_MARKUP_TREAT_CDATA_AS_TEXT, &builder, nullptr),
        &g_markup_parse_context_free);
    GError* problem = nullptr;
    const bool parsed = g_markup_parse_context_parse(context.get(), document.data(),
                                                     static_cast<gssize>(document.size()), &problem) != FALSE &&
                        g_markup_parse_context_end_parse(context.get(), &problem) != FALSE;
    if (!parsed) {
        const std::unique_ptr<GError, decltype(&g_error_free)> owned(problem, &g_error_free);
        return Result<Value>::failure(owned->message);
    }
    if (!builder.complete()) return Result<Value>::failure("not a property list");
    return builder.take();
}

} // namespace platform
