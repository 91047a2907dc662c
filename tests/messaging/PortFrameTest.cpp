#include "platform/messaging/PortFrame.h"
#include "platform/messaging/CFMessagePort.h"
#include "tests/support/RawSocket.h"

#include <gtest/gtest.h>
#include <malloc.h>

using namespace platform;
using namespace tests;
using State = PortFrameReader::State;

namespace {

State stateAfter(const Data& stream) {
    PortFrameReader reader;
    reader.feed(stream);
    return reader.state();
}

} // namespace

TEST(PortFrameReader, ReadsFramesThatArriveByteByByte) {
    Data stream = frameWith(bytes("hello"), 7);
    for (const auto byte : frameWithoutBody(-1))
        stream.push_back(byte);

    PortFrameReader reader;
    std::vector<PortFrame> frames;
    for (const auto byte : stream) {
        EXPECT_EQ(reader.feed({&byte, 1}), 1U);
        if (reader.state() == State::complete) frames.push_back(reader.take());
    }
    EXPECT_EQ(frames, (std::vector<PortFrame>{{7, bytes("hello")}, {-1, std::nullopt}}));
}

TEST(PortFrameReader, StopsAtTheEndOfAFrame) {
    Data stream = frameWith(bytes("ab"));
    stream.push_back('L');
    PortFrameReader reader;
    EXPECT_EQ(reader.feed(stream), stream.size() - 1);
    EXPECT_EQ(reader.feed(stream), 0U) << "a complete frame takes nothing more until it was handed out";
}

TEST(PortFrameReader, TellsAnEmptyBodyFromNone) {
    PortFrameReader reader;
    reader.feed(frameWith({}));
    EXPECT_EQ(reader.take().body, Data());
    reader.feed(frameWithoutBody());
    EXPECT_EQ(reader.take().body, std::nullopt);
}

TEST(PortFrameReader, RefusesWhatIsNoFrame) {
    EXPECT_EQ(stateAfter(frameBytes(0, -1, {}, "LMP2")), State::broken);
    EXPECT_EQ(stateAfter(frameBytes(0, -2)), State::broken);
    EXPECT_EQ(stateAfter(frameBytes(0, INT64_MIN)), State::broken);
    EXPECT_EQ(stateAfter(frameBytes(0, INT64_MAX)), State::broken);
    EXPECT_EQ(stateAfter(frameBytes(0, kMaximumMessageBody + 1)), State::broken);
    EXPECT_EQ(stateAfter(frameBytes(0, kMaximumMessageBody)), State::partial);
}

TEST(PortFrameReader, TakesMemoryForWhatArrivedNotForWhatWasPromised) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer's allocator keeps no such count";
#endif
    const auto inUse = [] {
        const auto info = ::mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    const auto before = inUse();
    std::vector<PortFrameReader> readers(100);
    for (auto& reader : readers)
        reader.feed(frameBytes(0, kMaximumMessageBody, bytes("only this")));
    EXPECT_LT(inUse() - before, 100U << 10);
}
