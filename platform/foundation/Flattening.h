#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string_view>
#include <vector>

namespace platform {

/// A value laid out as a row of numbered objects, as both written forms need it: containers refer to their entries by
/// number, and equal texts are one object. The value must outlive it.
class Flattening {
  public:
    /// Stands for nil among the references.
    static constexpr std::uint32_t nil = UINT32_MAX;

    /// Either a value or the text of a dictionary's key.
    struct Object {
        const Value* value;                   ///< null for a key
        std::optional<std::string_view> text; ///< nothing for all but texts
        std::uint32_t firstReference;
        std::uint32_t count; ///< a container's entries; a text's uses
    };

    /// Fails on a value that no reader could take: too deep, or too large.
    [[nodiscard]] static Result<Flattening> of(const Value& root);

    /// The outermost value comes first; none if that is nil.
    [[nodiscard]] const std::vector<Object>& objects() const { return objects_; }
    /// The numbers of a list's entries; of a dictionary's keys, then of its values.
    [[nodiscard]] std::uint32_t reference(std::size_t index) const { return references_[index]; }
    [[nodiscard]] bool holdsNil() const { return holdsNil_; }
    /// About how long the texts and data are together.
    [[nodiscard]] std::size_t contentsSize() const { return contentsSize_; }

  private:
    using Number = Result<std::uint32_t>;

    [[nodiscard]] Number add(const Value& value, unsigned depth);
    [[nodiscard]] Number addContainer(const Value& value, unsigned depth);
    [[nodiscard]] std::uint32_t addObject(const Value* value, std::optional<std::string_view> text);
    [[nodiscard]] std::uint32_t addText(const Value* value, std::string_view text);
    void growTexts();

    struct Known {
        std::uint32_t hash = 0;
        std::uint32_t number = nil;
    };

    std::vector<Object> objects_;
    std::vector<std::uint32_t> references_;
    std::vector<Known> texts_; ///< a hash table; its size is a power of two
    std::size_t textCount_ = 0;
    std::size_t contentsSize_ = 0;
    bool holdsNil_ = false;
};

} // namespace platform
