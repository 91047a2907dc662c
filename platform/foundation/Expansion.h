#pragma once

#include "platform/foundation/BinaryReader.h"
#include "platform/foundation/PropertyList.h"

#include <array>
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
    [[nodiscard]] bool charge(std::size_t bytes = 0);

    /// What is known about an object before it is looked at.
    enum class State : std::uint8_t { fresh, shared, refused };
    /// `shared` gives the value built earlier, counted once more at this depth; an object inside itself is refused.
    [[nodiscard]] State recall(std::size_t reference, unsigned depth, Value& value);

    /// Builds a text or data object.
    [[nodiscard]] bool buildLeaf(std::size_t reference, const BinaryObject& object, Value& value);
    /// Remembers a value that is no container, already charged. Always true.
    bool keep(std::size_t reference, std::size_t bytes, const Value& value);

    /// Stands around the building of a container; depth counts from 1 for the outermost.
    struct Opened {
        std::size_t values, bytes;
        unsigned deepest;
    };
    [[nodiscard]] bool open(std::size_t reference, unsigned depth, Opened& opened);
    void close(std::size_t reference, unsigned depth, const Opened& opened, const Value& value);

    /// Counts an object's own bytes, once for each object that is built from.
    [[nodiscard]] bool consume(const BinaryObject& object);

  private:
    struct Built {
        Value value;
        std::size_t values, bytes; ///< what it expands to
        unsigned levels;           ///< of containers inside it, itself included
    };
    /// Short texts are allocated a few together: the texts of a long list would otherwise spend most of their time in
    /// the allocator. One of them keeps its neighbours alive, so there are few, and none is long.
    static constexpr std::size_t batchSize = 16;
    static constexpr std::size_t longestInBatch = 64;
    using Batch = std::array<std::string, batchSize>;
    [[nodiscard]] std::shared_ptr<std::string> roomForText(std::size_t size);

    void remember(std::size_t reference, Built built);

    BinaryReader& reader_;
    std::size_t valuesLeft_, bytesLeft_;
    std::size_t inputLeft_;
    unsigned deepest_ = 0; ///< container met since the last one was opened
    std::vector<std::uint32_t>
        built_; ///< by reference: not met, met once, being built, or firstPlace + place in shared_
    std::vector<Built> shared_;
    std::shared_ptr<Batch> batch_;
    std::size_t batchUsed_ = batchSize;
};

} // namespace platform
