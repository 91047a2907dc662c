#pragma once

#include "platform/foundation/BinaryReader.h"
#include "platform/foundation/PropertyList.h"

#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

/// Keeps the tree that is built from a binary property list in proportion to its bytes.
///
/// Objects may be referred to any number of times, so the tree that a few bytes stand for can have any size and even
/// contain itself. Each container is therefore built once and all else at most twice, and shared from then on; the size
/// of what it expands to is counted again at each reference; and objects, which in a sound file do not overlap, may
/// together not be longer than twice the file. False always comes with a reason in the reader's problem().
class Expansion {
  public:
    explicit Expansion(BinaryReader& reader);

    /// Counts one value that is no container, of so many bytes (0 for numbers and the like).
    [[nodiscard]] bool charge(std::size_t bytes = 0) {
        if (valuesLeft_ < 1 || bytesLeft_ < bytes) return reader_.fail(tooLarge);
        valuesLeft_ -= 1;
        bytesLeft_ -= bytes;
        return true;
    }

    /// What is known about an object before it is looked at.
    enum class State : std::uint8_t { fresh, shared, refused };
    /// `shared` gives the value built earlier, counted once more at this depth; an object inside itself is refused.
    [[nodiscard]] State recall(std::size_t reference, unsigned depth, Value& value) {
        // An object that is not there is for the reader to refuse.
        if (reference >= built_.size() || built_[reference] <= metOnce) return State::fresh;
        return recallKnown(reference, depth, value);
    }

    /// Builds a value of what is no container, nil or UID.
    [[nodiscard]] bool buildLeaf(std::size_t reference, const BinaryObject& object, Value& value);
    /// Remembers a value that is no container, already charged. Always true.
    bool keep(std::size_t reference, std::size_t bytes, const Value& value) {
        // Most texts are met once. One that is met again is built again, and only then worth remembering.
        if (std::exchange(built_[reference], metOnce) != notMet) remember(reference, {value, 1, bytes, 0});
        return true;
    }

    /// Stands around the building of a container; depth counts from 1 for the outermost.
    struct Opened {
        std::size_t values, bytes;
        unsigned deepest;
    };
    [[nodiscard]] bool open(std::size_t reference, unsigned depth, Opened& opened);
    void close(std::size_t reference, unsigned depth, const Opened& opened, const Value& value);

    /// Counts an object's own bytes, once for each object that is built from.
    [[nodiscard]] bool consume(const BinaryObject& object) {
        if (inputLeft_ < object.contentsSize) return reader_.fail("objects overlap");
        inputLeft_ -= object.contentsSize;
        return true;
    }

  private:
    static constexpr const char* tooLarge = "shared objects stand for too large a value";
    /// What stands in built_; from firstPlace on it is a place in shared_.
    enum : std::uint32_t { notMet, metOnce, beingBuilt, firstPlace };

    struct Built {
        Value value;
        std::size_t values, bytes; ///< what it expands to
        unsigned levels;           ///< of containers inside it, itself included
    };
    /// Short texts are allocated a few together, with their characters: the texts of a long list would otherwise spend
    /// most of their time in the allocator. One of them keeps its neighbours alive, so there are few, and none is long.
    struct Batch {
        std::array<std::string_view, 16> texts;
        std::array<char, 512> characters;
        std::size_t textCount = 0, characterCount = 0;
    };
    static constexpr std::size_t longestInBatch = 64;
    [[nodiscard]] bool buildContents(std::size_t reference, const BinaryObject& object, Value& value);
    [[nodiscard]] Value share(std::string_view text);

    [[nodiscard]] State recallKnown(std::size_t reference, unsigned depth, Value& value);
    void remember(std::size_t reference, Built built);
    State refuse(const char* problem) {
        reader_.fail(problem);
        return State::refused;
    }

    BinaryReader& reader_;
    std::size_t valuesLeft_, bytesLeft_;
    std::size_t inputLeft_;
    unsigned deepest_ = 0; ///< container met since the last one was opened
    std::vector<std::uint32_t>
        built_; ///< by reference: not met, met once, being built, or firstPlace + place in shared_
    std::vector<Built> shared_;
    std::shared_ptr<Batch> batch_;
};

/// What a decoder that is made with a reader builds of a whole binary property list. `visits`, if given, receives how
/// many references were followed.
template<class Decoder>
Result<Value> decodeBinary(const Data& bytes, std::size_t* visits) {
    if (visits != nullptr) *visits = 0;
    Result<BinaryReader> opened = BinaryReader::open(bytes);
    if (!opened) return Result<Value>::failure(opened.error());
    BinaryReader reader = std::move(opened).value();
    Value value;
    const bool decoded = Decoder(reader).decode(value);
    if (visits != nullptr) *visits = reader.visits();
    return decoded ? Result<Value>(std::move(value)) : Result<Value>::failure(reader.problem());
}

} // namespace platform
