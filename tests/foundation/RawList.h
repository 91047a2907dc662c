#pragma once

#include "platform/foundation/Value.h"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

/// A binary property list put together byte by byte, sound or not. The first object is the root.
///
///     Data bytes = RawList(1).add({0xA1, 1}).add("hello").bytes();   // ["hello"]
class RawList {
  public:
    explicit RawList(std::size_t referenceSize) : referenceSize_(referenceSize) {}

    RawList& add(std::initializer_list<int> object) {
        offsets_.push_back(bytes_.size());
        for (const int byte : object)
            bytes_.push_back(static_cast<std::uint8_t>(byte));
        return *this;
    }
    /// One more byte of the object that was added last.
    RawList& appendByte(int byte) {
        append(static_cast<std::size_t>(byte), 1);
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
    /// Keys and values in turn.
    RawList& addDictionary(const std::vector<std::pair<std::size_t, std::size_t>>& entries) {
        addMarker(0xD, entries.size());
        for (const auto& entry : entries)
            append(entry.first, referenceSize_);
        for (const auto& entry : entries)
            append(entry.second, referenceSize_);
        return *this;
    }
    [[nodiscard]] std::size_t count() const { return offsets_.size(); }
    /// An object that lies where another one does, so many bytes further on.
    RawList& addAlias(std::size_t object, std::size_t further) {
        offsets_.push_back(offsets_[object] + further);
        return *this;
    }

    [[nodiscard]] platform::Data bytes() { return bytesWithTrailer(offsets_.size(), 0, bytes_.size()); }
    [[nodiscard]] platform::Data bytesWithTrailer(std::uint64_t count, std::uint64_t root, std::uint64_t table) {
        const platform::Data objects = bytes_;
        const std::size_t offsetSize = bytes_.size() < 0x100 ? 1 : bytes_.size() < 0x10000 ? 2 : 4;
        for (const std::size_t offset : offsets_)
            append(offset, offsetSize);
        bytes_.insert(bytes_.end(), 6, 0);
        append(offsetSize, 1);
        append(referenceSize_, 1);
        append(count, 8);
        append(root, 8);
        append(table, 8);
        platform::Data whole = bytes_;
        bytes_ = objects;
        return whole;
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
