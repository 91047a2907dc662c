#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string_view>
#include <vector>

namespace platform {

/// A value laid out as a row of numbered objects, which both written forms need: containers refer to their entries by
/// number, and equal texts are one object. The value must outlive it. One thread.
class Flattening {
  public:
    /// Stands for nil among the references.
    static constexpr std::uint32_t nil = UINT32_MAX;

    /// A value, or the text of a dictionary's key.
    struct Object {
        const Value* value;                   ///< null for a key
        std::optional<std::string_view> text; ///< of a text or a key
        std::uint32_t firstReference;
        std::uint32_t count; ///< a container's entries; a text's uses
    };

    /// Fails for a value that is nested too deeply, or too large, for any reader.
    [[nodiscard]] static Result<Flattening> of(const Value& root);

    /// The outermost value comes first. Empty if that is nil.
    [[nodiscard]] const std::vector<Object>& objects() const { return objects_; }
    /// The number of an entry of a list; a dictionary has those of its keys, then those of its values.
    [[nodiscard]] std::uint32_t reference(std::size_t index) const { return references_[index]; }
    [[nodiscard]] bool holdsNil() const { return holdsNil_; }
    /// About how many bytes the texts and data have together.
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
