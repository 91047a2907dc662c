#include "lockscreen/LookDocument.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

using platform::CGRect;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace lumora {
namespace {

template<class T>
concept Fielded = requires {
    T::fields();
};

std::string letter(Surface surface) {
    return {static_cast<char>(surface)};
}

Value valueOf(bool value) {
    return value;
}
Value valueOf(int value) {
    return value;
}
Value valueOf(double value) {
    return value;
}
Value valueOf(const std::string& value) {
    return value;
}
Value valueOf(Surface surface) {
    return letter(surface);
}
Value valueOf(const CGRect& rect) {
    return List{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}
Value valueOf(const Color& color) {
    return List{color.red, color.green, color.blue};
}
template<class T>
Value valueOf(const std::vector<T>& list);

template<Fielded T>
Value valueOf(const T& part) {
    std::vector<Dictionary::Entry> entries;
    std::apply(
        [&](const auto&... field) {
            (entries.emplace_back(std::string(field.name), valueOf(part.*field.member)), ...);
        },
        T::fields());
    return Dictionary(std::move(entries));
}

template<class T>
Value valueOf(const std::vector<T>& list) {
    List values;
    values.reserve(list.size());
    for (const T& entry : list)
        values.push_back(valueOf(entry));
    return values;
}

/// Notes where two values differ, under the path of both.
class Comparison {
  public:
    template<class T>
    void compare(const std::string& path, const T& before, const T& after) {
        if (!(before == after)) paths.push_back(path);
    }
    template<Fielded T>
    void compare(const std::string& path, const T& before, const T& after) {
        if (before == after) return;
        std::apply(
            [&](const auto&... field) {
                (compare(path.empty() ? std::string(field.name) : path + "." + std::string(field.name),
                         before.*field.member, after.*field.member),
                 ...);
            },
            T::fields());
    }
    template<Fielded T>
    void compare(const std::string& path, const std::vector<T>& before, const std::vector<T>& after) {
        if (before.size() != after.size()) {
            paths.push_back(path);
            return;
        }
        for (std::size_t i = 0; i < before.size(); ++i)
            compare(path + "[" + std::to_string(i) + "]", before[i], after[i]);
    }

    std::vector<std::string> paths;
};

/// Gathers the frames of parts that differ.
class Surrounding {
  public:
    template<class T>
    [[nodiscard]] bool visit(const T& before, const T& after) {
        return !(before == after); // a field of the part that it is in
    }
    template<std::derived_from<Part> T>
    bool visit(const T& before, const T& after) {
        if (before == after) return false;
        bool ownDiffers = false;
        std::apply(
            [&](const auto&... field) { ((ownDiffers |= visit(before.*field.member, after.*field.member)), ...); },
            T::fields());
        if (ownDiffers) {
            add(before);
            add(after);
        }
        return false;
    }
    template<std::derived_from<Part> T>
    bool visit(const std::vector<T>& before, const std::vector<T>& after) {
        const std::size_t common = std::min(before.size(), after.size());
        for (std::size_t i = 0; i < common; ++i)
            visit(before[i], after[i]);
        for (const auto* list : {&before, &after})
            std::for_each(list->begin() + static_cast<std::ptrdiff_t>(common), list->end(),
                          [&](const T& part) { add(part); });
        return false;
    }
    void visit(const Look& before, const Look& after) {
        std::apply(
            [&](const auto&... field) { (static_cast<void>(visit(before.*field.member, after.*field.member)), ...); },
            Look::fields());
    }

    std::optional<CGRect> frame;

  private:
    void add(const Part& part) {
        if (part.visible) frame = frame ? CGRectUnion(*frame, part.frame) : part.frame;
    }
};

} // namespace

std::optional<CGRect> changedFrame(const Look& before, const Look& after) {
    Surrounding surrounding;
    surrounding.visit(before, after);
    return surrounding.frame;
}

std::vector<std::string> diff(const Look& before, const Look& after) {
    Comparison comparison;
    comparison.compare("", before, after);
    return std::move(comparison.paths);
}

Value documentOf(const Look& look) {
    return valueOf(look);
}

Value documentOf(const State& state) {
    const Value opened =
        state.opened ? Value(Dictionary{{"identifier", state.opened->identifier}, {"alone", state.opened->alone}})
                     : Value();
    return Dictionary{{"surface", letter(state.surface)},
                      {"page", state.page},
                      {"asleep", state.asleep},
                      {"noticesHidden", state.noticesHidden},
                      {"locked", state.locked},
                      {"typed", static_cast<std::int64_t>(state.typed.size())},
                      {"opened", opened}};
}

} // namespace lumora
