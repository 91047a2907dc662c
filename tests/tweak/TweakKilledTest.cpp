#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "platform/foundation/PropertyList.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <random>
#include <thread>

using namespace tests;
using platform::Value;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRounds = 40;
#else
constexpr int kRounds = 200;
#endif
constexpr std::int64_t kKeysOfAClient = 20;

/// A client that changes its own keys, one after the other, to ever greater numbers, and remembers which were answered.
class Client {
  public:
    explicit Client(int number) : prefix_("com.example.client-" + std::to_string(number) + ".") {}

    /// Goes on until the tweak answers no more, with its numbers where the last run left them.
    void run(std::atomic<std::int64_t>& answeredByAll) {
        while (true) {
            const std::int64_t number = ++sent_;
            const auto slot = static_cast<std::size_t>(number % kKeysOfAClient);
            if (!change(prefix_ + std::to_string(slot), number).empty()) return;
            answered_[slot] = number;
            answeredByAll.fetch_add(1);
        }
    }

    /// An answered number stands on disk, or a later one of the same key that was sent and not answered.
    void expectNothingMissing(const Value& onDisk) const {
        for (std::size_t slot = 0; slot < answered_.size(); ++slot) {
            if (answered_[slot] == 0) continue;
            const auto kept = onDisk[prefix_ + std::to_string(slot)].integer();
            ASSERT_TRUE(kept) << prefix_ << slot << " is missing, answered was " << answered_[slot];
            EXPECT_GE(*kept, answered_[slot]) << prefix_ << slot;
            EXPECT_LE(*kept, sent_) << prefix_ << slot;
        }
    }

  private:
    std::string prefix_;
    std::int64_t sent_ = 0;
    std::array<std::int64_t, kKeysOfAClient> answered_{};
};

} // namespace

TEST(TweakKilled, LosesNoAnsweredChangeHoweverOftenItIsKilled) {
    const unsigned seed = std::random_device()();
    RecordProperty("seed", std::to_string(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const Sandbox sandbox;
    std::array<Client, 3> clients{Client(0), Client(1), Client(2)};
    std::int64_t answeredInAll = 0;

    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Program tweak({LUMORA_TWEAK, "--settings", sandbox.settings()});
        const int before = std::uniform_int_distribution(-10, 60)(random);
        if (before >= 0) {
            ASSERT_TRUE(tweak.readLine().starts_with("lumora-tweak ready")) << tweak.errors();
            std::atomic<std::int64_t> answered = 0;
            std::vector<std::thread> threads;
            for (Client& client : clients)
                threads.emplace_back([&client, &answered] { client.run(answered); });
            // The other clients' changes are under way whenever this one condition comes true.
            {
                const Deadline deadline("answers of the tweak");
                while (answered < before)
                    std::this_thread::yield();
            }
            tweak.kill();
            for (std::thread& thread : threads)
                thread.join();
            answeredInAll += answered;
        }
        // Below zero it is killed while it starts.
        tweak.kill();
        EXPECT_EQ(tweak.errors(), "");

        if (!std::filesystem::exists(sandbox.settings())) {
            EXPECT_EQ(answeredInAll, 0);
            continue;
        }
        const auto onDisk = platform::readPropertyList(bytesOf(readFile(sandbox.settings())));
        ASSERT_TRUE(onDisk) << onDisk.error();
        for (const Client& client : clients)
            client.expectNothingMissing(onDisk.value());
    }
    EXPECT_GT(answeredInAll, kRounds);

    const RunningTweak tweak({LUMORA_TWEAK, "--settings", sandbox.settings()});
    const Value settings = askForSettings();
    for (const Client& client : clients)
        client.expectNothingMissing(settings);
}
