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
/// Any number of references may lead to one object, so the tree that a few bytes stand for can have any size and even
/// contain itself. Therefore each container is built once, everything else at most twice, and shared from then on; each
/// reference is charged for the whole size of what it expands to; and all objects together, which do not overlap in a
/// sound file, may be twice as long as the file at most. False always comes with a reason in the reader's problem().
class Expansion {
  public:
    explicit Expansion(BinaryReader& reader);

    /// Counts one value, and the bytes of a text or data. open() counts a container.
    [[nodiscard]] bool charge(std::size_t bytes = 0) {
        if (valuesLeft_ < 1 || bytesLeft_ < bytes) return reader_.fail(tooLarge);
        valuesLeft_ -= 1;
        bytesLeft_ -= bytes;
        return true;
    }

    /// What is known about an object before it is looked at.
    enum class State : std::uint8_t { fresh, shared, refused };
    /// `shared` gives the value built earlier and counts it once more at this depth. An object that contains itself is
    /// refused.
    [[nodiscard]] State recall(std::size_t reference, unsigned depth, Value& value) {
        // A reference to no object is refused by the reader.
        if (reference >= built_.size() || built_[reference] <= metOnce) return State::fresh;
        return recallKnown(reference, depth, value);
    }

    /// Builds the value of a boolean, number, date, text or data.
    [[nodiscard]] bool buildLeaf(std::size_t reference, const BinaryObject& object, Value& value);
    /// The same for a short ASCII text. Most values are, so this path has no step more than it needs.
    [[nodiscard]] static bool isShortText(const BinaryObject& object) {
        return object.kind == BinaryObject::Kind::ascii && object.count <= longestInBatch;
    }
    [[nodiscard]] bool buildShortText(std::size_t reference, const BinaryObject& object, Value& value);
    /// Remembers such a value once it has been charged. Always true.
    bool keep(std::size_t reference, std::size_t bytes, const Value& value) {
        // Most texts are met once. One that is met again is built again, and remembered only then.
        if (std::exchange(built_[reference], metOnce) != notMet) remember(reference, {value, 1, bytes, 0});
        return true;
    }

    /// open() and close() enclose the building of a container; the outermost has the depth 1.
    struct Opened {
        std::uint64_t values, bytes;
        unsigned deepest;
    };
    [[nodiscard]] bool open(std::size_t reference, unsigned depth, Opened& opened);
    void close(std::size_t reference, unsigned depth, const Opened& opened, const Value& value);

    /// Counts an object's own bytes, once for each object from which a value is built.
    [[nodiscard]] bool consume(const BinaryObject& object) {
        if (inputLeft_ < object.contentsSize) return reader_.fail("objects overlap");
        inputLeft_ -= object.contentsSize;
        return true;
    }

  private:
    static constexpr const char* tooLarge = "shared objects stand for too large a value";
    /// The entries of built_; from firstPlace on they are places in shared_.
    enum : std::uint32_t { notMet, metOnce, beingBuilt, firstPlace };

    struct Built {
        Value value;
        std::uint64_t values, bytes; ///< what it expands to
        unsigned levels;             ///< of containers inside it, itself included
    };
    /// Short texts are allocated a few at a time, with their characters: reading a long list of texts would otherwise
    /// be mostly allocating. One text keeps its neighbours alive, so they are few and short.
    struct Batch {
        std::array<std::string_view, 16> texts;
        std::array<char, 512> characters;
        std::size_t textCount = 0, characterCount = 0;
    };
    static constexpr std::size_t longestInBatch = 64;
    [[nodiscard]] bool buildContents(const BinaryObject& object, Value& value);

    [[nodiscard]] State recallKnown(std::size_t reference, unsigned depth, Value& value);
    void remember(std::size_t reference, Built built);
    State refuse(const char* problem) {
        reader_.fail(problem);
        return State::refused;
    }

    BinaryReader& reader_;
    std::uint64_t valuesLeft_, bytesLeft_; ///< which a size of 32 bits cannot count
    std::size_t inputLeft_;
    unsigned deepest_ = 0;             ///< container met since the last one was opened
    std::vector<std::uint32_t> built_; ///< by reference
    std::vector<Built> shared_;
    std::shared_ptr<Batch> batch_;
};

/// The value of a whole binary property list, as a decoder builds it that takes a BinaryReader. `visits`, if given,
/// receives the number of references that were followed.
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
