#include "Fuzzer.h"

#include "platform/messaging/PortFrame.h"

#include <algorithm>
#include <vector>

using fuzz::require;
using platform::PortFrame;
using platform::PortFrameReader;

namespace {

using Bytes = std::span<const std::uint8_t>;

struct Outcome {
    std::vector<PortFrame> frames;
    bool broken = false;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome readInPieces(Bytes stream, std::size_t pieceSize) {
    Outcome outcome;
    PortFrameReader reader;
    while (!stream.empty() && !outcome.broken) {
        auto piece = stream.first(std::min(pieceSize, stream.size()));
        stream = stream.subspan(piece.size());
        while (!piece.empty() && !outcome.broken) {
            const auto used = reader.feed(piece);
            require(used > 0 && used <= piece.size());
            piece = piece.subspan(used);
            if (reader.state() == PortFrameReader::State::complete) outcome.frames.push_back(reader.take());
            outcome.broken = reader.state() == PortFrameReader::State::broken;
        }
    }
    return outcome;
}

} // namespace

/// The first byte says how large the pieces are in which the rest arrives. However a stream is cut, the same frames
/// come out of it, and never more bytes than went in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const Bytes stream(data + 1, size - 1);
    const auto whole = readInPieces(stream, size);
    require(readInPieces(stream, std::size_t{data[0]} + 1) == whole);

    if (!whole.frames.empty()) ++fuzz::taken;
    std::size_t bytes = 0;
    for (const auto& frame : whole.frames)
        bytes += PortFrame::headerSize + (frame.body ? frame.body->size() : 0);
    require(bytes <= stream.size());
    return 0;
}
