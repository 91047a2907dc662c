#pragma once

#include "platform/foundation/Value.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

/// What a trailer says where it does not say what is so.
struct RawTrailer {
    std::optional<std::uint64_t> offsetSize{}, referenceSize{}, count{}, root{}, table{};
};

/// A binary property list put together byte by byte, sound or not. The first object is the root.
///
///     Data bytes = RawList(1).add({0xA1, 1}).add("hello").bytes();   // ["hello"]
class RawList {
  public:
    explicit RawList(std::size_t referenceSize) : referenceSize_(referenceSize) {}

    RawList& add(std::initializer_list<int> object) {
        offsets_.push_back(bytes_.size());
        for (const int byte : object)
            appendByte(byte);
        return *this;
    }
    /// One more byte of the object that was added last.
    RawList& appendByte(int byte) {
        bytes_.push_back(static_cast<std::uint8_t>(byte));
        return *this;
    }
    RawList& add(std::string_view text) {
        addMarker(0x5, text.size());
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return *this;
    }
    RawList& addList(const std::vector<std::size_t>& references) {
        addMarker(0xA, references.size());
        for (const std::size_t reference : references)
            append(reference, referenceSize_);
        return *this;
    }
    /// By the references to keys and values.
    RawList& addDictionary(const std::vector<std::pair<std::size_t, std::size_t>>& entries) {
        addMarker(0xD, entries.size());
        for (const auto& entry : entries)
            append(entry.first, referenceSize_);
        for (const auto& entry : entries)
            append(entry.second, referenceSize_);
        return *this;
    }
    /// An object that lies where another one does, so many bytes further on.
    RawList& addAlias(std::size_t object, std::size_t further) {
        offsets_.push_back(offsets_[object] + further);
        return *this;
    }

    [[nodiscard]] platform::Data bytes(const RawTrailer& trailer = {}) const {
        RawList whole = *this;
        const std::uint64_t offsetSize = trailer.offsetSize.value_or(bytes_.size() < 0x100     ? 1
                                                                     : bytes_.size() < 0x10000 ? 2
                                                                                               : 4);
        for (const std::size_t offset : offsets_)
            whole.append(offset, static_cast<std::size_t>(std::clamp<std::uint64_t>(offsetSize, 1, 8)));
        whole.append(0, 6);
        whole.append(offsetSize, 1);
        whole.append(trailer.referenceSize.value_or(referenceSize_), 1);
        whole.append(trailer.count.value_or(offsets_.size()), 8);
        whole.append(trailer.root.value_or(0), 8);
        whole.append(trailer.table.value_or(bytes_.size()), 8);
        return whole.bytes_;
    }

  private:
    void append(std::uint64_t number, std::size_t size) {
        for (std::size_t i = size; i > 0; --i)
            bytes_.push_back(static_cast<std::uint8_t>(number >> (8 * (i - 1))));
    }
    void addMarker(unsigned type, std::size_t count) {
        offsets_.push_back(bytes_.size());
        bytes_.push_back(static_cast<std::uint8_t>(type << 4U | (count < 15 ? count : 15)));
        if (count < 15) return;
        bytes_.push_back(0x12);
        append(count, 4);
    }

    std::size_t referenceSize_;
    static constexpr std::string_view magic = "bplist00";
    platform::Data bytes_ = platform::Data(magic.begin(), magic.end());
    std::vector<std::size_t> offsets_;
};
