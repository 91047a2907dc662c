#include "platform/services/PictureDecoder.h"

#include "decoder/Picture.h"
#include "platform/messaging/Dispatch.h"
#include "tests/applist/Desktop.h"
#include "tests/support/Waiting.h"

#include <csignal>
#include <fstream>
#include <future>
#include <thread>

namespace {

using namespace platform;
using tests::write;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

const fs::path kProgram = fs::path(LUMORA_BINARIES) / "lumora-pictures";

const auto notTold = [](const PictureDecoder::Drawn&) {};

/// A drawing of a few hundred bytes that takes hours.
const std::string kDear = R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="100" height="100"><filter id="f">
<feTurbulence baseFrequency="0.05" numOctaves="1000000"/><feGaussianBlur stdDeviation="100000"/></filter>
<rect width="100" height="100" filter="url(#f)"/></svg>)svg";

struct Decoders : tests::FolderTest {
    PictureDecoder::Limits limits{.processor = 300ms, .clock = tests::kLongEnough};

    fs::path picture(const std::string& name, const std::string& contents) const {
        write(folder / name, contents);
        return folder / name;
    }
    fs::path red() const { return picture("red.svg", tests::svg(7, 7, "#ff0000")); }
    fs::path dear(const std::string& name = "dear.svg") const { return picture(name, kDear); }
    /// A program in the place of the real one.
    fs::path script(const std::string& lines) const {
        const fs::path file = picture("program", "#!/bin/sh\n" + lines);
        fs::permissions(file, fs::perms::owner_all);
        return file;
    }
    static std::string real() { return "exec " + kProgram.string() + "\n"; }
    /// The real one, which writes down its number first.
    fs::path numbered() const { return script("echo $$ > " + (folder / "number").string() + "\n" + real()); }
    pid_t number() const {
        pid_t number = 0;
        std::ifstream(folder / "number") >> number;
        return number;
    }

    /// Nothing when it does not come.
    static std::optional<Data> draw(PictureDecoder& decoder, const fs::path& file, int pixels = 29) {
        PicturePatience patience(tests::kLongEnough);
        const auto order = decoder.order({{file, pixels}});
        const auto drawn = decoder.wait(order, patience, notTold);
        return drawn ? std::optional<Data>(drawn->at(0)) : std::nullopt;
    }
    static Data here(const fs::path& file, int pixels = 29) { return decoder::drawPicture(file, pixels); }
};

TEST_F(Decoders, DrawAThousandPicturesAsThisProcessWould) {
    constexpr int many = 1000;
    PictureDecoder decoder(kProgram, {});
    std::vector<PictureWanted> wanted;
    for (int i = 0; i < many; ++i) {
        char colour[8];
        std::snprintf(colour, sizeof colour, "#%06x", i * 16'001);
        const std::string name = std::to_string(i);
        const fs::path file = i % 3 == 0
                                  ? picture(name + ".png", tests::png(1 + i % 70, 1 + i % 50, unsigned(i) * 4'001'003))
                                  : picture(name + ".svg", tests::svg(1 + i % 31, 1 + i % 37, colour));
        wanted.push_back({file, i % 2 == 0 ? 29 : 58});
    }
    PicturePatience patience(tests::kLongEnough);
    const auto order = decoder.order(wanted);
    const auto drawn = decoder.wait(order, patience, notTold);
    ASSERT_TRUE(drawn) << "the pictures do not come";
    ASSERT_EQ(drawn->size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i)
        ASSERT_EQ(drawn->at(i), here(wanted[i].file, wanted[i].pixels)) << wanted[i].file;
    EXPECT_EQ(decoder.starts(), 1);
}

TEST_F(Decoders, GiveUpAPictureThatIsTooDearAndRememberIt) {
    PictureDecoder decoder(kProgram, limits);
    EXPECT_EQ(draw(decoder, dear()), Data());
    EXPECT_EQ(draw(decoder, red()), here(red()));
    EXPECT_EQ(decoder.starts(), 2);
    EXPECT_EQ(draw(decoder, folder / "dear.svg"), Data());
    EXPECT_EQ(draw(decoder, folder / "dear.svg", 58), Data()) << "it is dear at any size";
    EXPECT_EQ(decoder.starts(), 2) << "it was tried again";
    picture("dear.svg", tests::svg(29, 29, "#00ff00"));
    EXPECT_EQ(draw(decoder, folder / "dear.svg"), here(folder / "dear.svg")) << "it has become another one";
}

TEST_F(Decoders, GiveUpAPictureForWhichTheProgramTakesTooLong) {
    PictureDecoder decoder(script("sleep 1000\n"), {.processor = tests::kLongEnough, .clock = 50ms});
    EXPECT_EQ(draw(decoder, red()), Data());
    EXPECT_EQ(decoder.starts(), 1);
}

TEST_F(Decoders, TryAPictureOnceMoreWhenTheProgramDies) {
    const std::string marker = (folder / "died").string();
    PictureDecoder decoder(
        script("[ -e " + marker + " ] && " + real() + "touch " + marker + "\nhead -c 1\nkill -9 $$\n"), {});
    EXPECT_EQ(draw(decoder, red()), here(red()));
    EXPECT_EQ(decoder.starts(), 2);
}

TEST_F(Decoders, DrawTheNextPictureWhenTheProgramWasKilledBetweenTwo) {
    PictureDecoder decoder(numbered(), {});
    EXPECT_EQ(draw(decoder, red(), 29), here(red(), 29));
    ASSERT_GT(number(), 1);
    ASSERT_EQ(::kill(number(), SIGKILL), 0);
    EXPECT_EQ(draw(decoder, red(), 58), here(red(), 58));
    EXPECT_EQ(decoder.starts(), 2);
}

TEST_F(Decoders, RefuseMalformedAnswers) {
    const std::vector<std::string> answers{
        "yes",                                                    // goes on for ever
        "head -c 100000 /dev/zero",                               // no mark
        R"(printf 'LUPA\007\000\000\000\000\000\000\000')",       // another's number
        R"(printf 'LUPA\00'$n'\000\000\000\377\377\377\377')",    // longer than any picture of that size
        R"(printf 'LUPA\00'$n'\000\000\000\004\000\000\000junk')" // no picture
    };
    for (const std::string& answer : answers) {
        const std::string count = (folder / "count").string();
        write(count, "");
        PictureDecoder decoder(script("echo >> " + count + "\nn=$(wc -l < " + count + ")\nhead -c 1 > " +
                                      (folder / "asked").string() + "\n" + answer + "\nsleep 1000\n"),
                               {.processor = tests::kLongEnough, .clock = tests::kLongEnough});
        EXPECT_EQ(draw(decoder, red()), Data()) << answer;
        EXPECT_EQ(decoder.starts(), 2) << answer;
    }
}

TEST_F(Decoders, DrawNothingWithoutTheirProgram) {
    PictureDecoder decoder(folder / "missing", {});
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(draw(decoder, red()), Data());
    EXPECT_EQ(decoder.starts(), 0);
}

TEST_F(Decoders, StopStartingAProgramThatOnlyDies) {
    PictureDecoder decoder(script("exit 1\n"), {});
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(draw(decoder, picture(std::to_string(i) + ".svg", tests::svg(1, 1, "#000000"))), Data());
    EXPECT_EQ(decoder.starts(), 100);
}

TEST_F(Decoders, DrawNothingForWhatIsNoFile) {
    PictureDecoder decoder(kProgram, {});
    EXPECT_EQ(draw(decoder, folder / "missing.png"), Data());
    EXPECT_EQ(draw(decoder, folder), Data());
    EXPECT_EQ(draw(decoder, "/dev/zero"), Data());
    EXPECT_EQ(draw(decoder, std::string(5000, 'a')), Data());
    EXPECT_EQ(draw(decoder, red(), 0), Data());
    EXPECT_EQ(draw(decoder, red(), 1025), Data());
    EXPECT_EQ(decoder.starts(), 0) << "the program is not asked";
}

TEST_F(Decoders, LimitTheMemoryOfTheProgram) {
    const fs::path told = folder / "told";
    PictureDecoder decoder(script("ulimit -v > " + told.string() + "\n" + real()), {.memory = 512 << 20});
    EXPECT_EQ(draw(decoder, red()), here(red()));
    std::string kibibytes;
    std::ifstream(told) >> kibibytes;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    EXPECT_EQ(kibibytes, "unlimited") << "sanitizers go without a limit";
#else
    EXPECT_EQ(kibibytes, "524288");
#endif
}

TEST_F(Decoders, LeaveNothingBehind) {
    const auto use = [&] {
        PictureDecoder decoder(numbered(), limits);
        EXPECT_EQ(draw(decoder, dear()), Data());
        EXPECT_EQ(draw(decoder, red()), here(red()));
    };
    use();
    const auto descriptors = tests::descriptorCount();
    const auto threads = tests::threadCount();
    use();
    EXPECT_EQ(tests::descriptorCount(), descriptors);
    EXPECT_EQ(tests::threadCount(), threads);
    EXPECT_EQ(::kill(number(), 0), -1) << "the program lives on";
}

TEST_F(Decoders, DrawNothingForAnOrderThatIsDropped) {
    PictureDecoder decoder(kProgram, limits);
    const auto first = decoder.order({{dear("first.svg"), 29}});
    auto unwanted = decoder.order({{dear("second.svg"), 29}});
    unwanted.reset();
    EXPECT_EQ(draw(decoder, red()), here(red()));
    EXPECT_EQ(decoder.starts(), 2) << "one before and one after the first picture";
}

/// The queue on which views hear of what came late.
void runMainQueue() {
    static std::once_flag once;
    std::call_once(once, [] { std::thread([] { dispatch_main(); }).detach(); });
}

TEST_F(Decoders, WaitNoLongerThanThePatienceAllowsAndTellLater) {
    runMainQueue();
    PictureDecoder decoder(kProgram, limits);
    PicturePatience patience(20ms);
    const auto dearOne = decoder.order({{dear(), 29}});
    const auto good = red(); // written once: a file that is written anew is another picture
    const auto goodOne = decoder.order({{good, 29}, {good, 58}});
    EXPECT_FALSE(decoder.wait(dearOne, patience, notTold));
    std::promise<PictureDecoder::Drawn> told;
    ASSERT_FALSE(decoder.wait(goodOne, patience, [&](const PictureDecoder::Drawn& drawn) { told.set_value(drawn); }));
    auto drawn = told.get_future();
    ASSERT_EQ(drawn.wait_for(tests::kLongEnough), std::future_status::ready) << "it is not told";
    EXPECT_EQ(drawn.get(), (PictureDecoder::Drawn{here(good, 29), here(good, 58)}));
    // What is known takes no patience.
    EXPECT_TRUE(decoder.wait(decoder.order({{good, 58}}), patience, notTold));
}

TEST_F(Decoders, TellNothingForAnOrderThatIsDropped) {
    runMainQueue();
    PictureDecoder decoder(kProgram, limits);
    PicturePatience patience(0ns);
    std::atomic<bool> told = false;
    auto order = decoder.order({{dear(), 29}});
    EXPECT_FALSE(decoder.wait(order, patience, [&](const PictureDecoder::Drawn&) { told = true; }));
    order.reset();
    EXPECT_EQ(draw(decoder, red()), here(red()));
    std::promise<void> after;
    dispatch_async(dispatch_get_main_queue(), [&] { after.set_value(); });
    ASSERT_EQ(after.get_future().wait_for(tests::kLongEnough), std::future_status::ready);
    EXPECT_FALSE(told);
}

} // namespace
