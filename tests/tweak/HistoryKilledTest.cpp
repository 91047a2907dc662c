#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "history/ChangeRecord.h"
#include "platform/foundation/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>
#include <random>

using namespace tests;
using lumora::ChangeRecord;
using lumora::Withheld;
using platform::Value;

namespace {

constexpr const char* kSecretOfTheKilled = "zq24680xy";

int kills() {
    const char* wanted = std::getenv("LUMORA_KILLS");
    return wanted ? std::atoi(wanted) : 100;
}

/// A tweak that is killed again and again while a client changes settings, and what that client knows.
class HistoryKilled : public testing::Test {
  protected:
    /// One life of the tweak: up to that write of its own, of which so many thousandths are done.
    void live(int writes, int part) {
        answered_.clear();
        Program tweak({"/usr/bin/env", std::string("LD_PRELOAD=") + LUMORA_KILLED_AT_WRITE,
                       "LUMORA_KILL_AT=" + std::to_string(writes), "LUMORA_KILL_PART=" + std::to_string(part),
                       LUMORA_TWEAK, "--settings", sandbox.settings()});
        if (tweak.readLine().starts_with("lumora-tweak ready"))
            while (changeSomething()) {
            }
        ASSERT_EQ(tweak.wait(), -SIGKILL);
        ASSERT_EQ(tweak.errors(), "");
    }

    /// False when the tweak has died of it.
    bool changeSomething() {
        static const std::array<const char*, 6> keys{"kSleepTime",      "kAppsPerRow",     "kAutoUnlockPasscode",
                                                     "com.example.one", "com.example.two", "com.example.three"};
        suspect_ = keys.at(random_() % keys.size());
        sent_ = suspect_ == "kAutoUnlockPasscode" ? Value(kSecretOfTheKilled + std::to_string(++number_))
                : random_() % 4 == 0 && suspect_.starts_with("com.") ? Value(std::string(random_() % 6'000, 'x'))
                                                                     : Value(++number_);
        if (!change(suspect_, sent_).empty()) return false;
        answered_[suspect_] = sent_;
        return true;
    }

    /// Adds what other settings would have left, so that the history is nearly full.
    void fill() {
        auto records = lumora::readRecords(readFile(file)).records;
        std::string lines = readFile(file);
        if (!lines.empty() && lines.back() != '\n') return;
        std::int64_t revision = records.empty() ? 0 : records.back().revision;
        for (std::size_t i = records.size(); i < 4'995; ++i) {
            ++revision;
            lines += lumora::lineOf({revision, revision, {}, "com.example.filling"}).value();
        }
        writeFile(file, lines);
    }

    /// What the client has been told is in both files, and they agree but for the change that was under way.
    void expectAgreement() const {
        const std::string bytes = readFile(file);
        ASSERT_EQ(bytes.find(kSecretOfTheKilled), std::string::npos);
        const auto read = lumora::readRecords(bytes);
        ASSERT_EQ(read.foreign, 0U);
        ASSERT_LE(read.records.size(), 5'000U);
        const auto settings = platform::readPropertyList(bytesOf(readFile(sandbox.settings())));
        if (!settings) return; // none was kept yet
        std::map<std::string, const ChangeRecord*> last;
        for (const ChangeRecord& record : read.records) {
            const ChangeRecord*& before = last[record.key];
            const bool isTold = before && record.withheld == Withheld::nothing && before->withheld == Withheld::nothing;
            ASSERT_TRUE(!isTold || record.before == before->after) << record.key << " at " << record.revision;
            before = &record;
        }
        for (const auto& [key, record] : last) {
            if (record->withheld != Withheld::nothing || key == suspect_) continue;
            const Value value = settings.value()[key];
            ASSERT_EQ(record->after.value_or(Value()), value) << key;
        }
        for (const auto& [key, value] : answered_) {
            const Value kept = settings.value()[key];
            ASSERT_TRUE(kept == value || (key == suspect_ && kept == sent_)) << key;
            ASSERT_TRUE(last.contains(key)) << key << " was answered and is not recorded";
            const ChangeRecord& record = *last.at(key);
            ASSERT_TRUE(record.withheld != Withheld::nothing || record.after == value ||
                        (key == suspect_ && record.after == sent_))
                << key;
        }
    }

    Sandbox sandbox;
    std::filesystem::path file = sandbox.path() / "settings.history";
    unsigned seed = std::random_device()();

  private:
    std::mt19937 random_{seed};
    std::int64_t number_ = 0;
    std::string suspect_; ///< the key that was changed last
    Value sent_;          ///< its value
    std::map<std::string, Value> answered_;
};

} // namespace

TEST_F(HistoryKilled, AgreesWithTheSettingsButForTheLastChangeAtWhicheverWriteItIs) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "their libraries have to be the first that are loaded";
#endif
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed + 1);
    const int count = kills();
    for (int i = 0; i < count && !HasFailure(); ++i) {
        SCOPED_TRACE("life " + std::to_string(i));
        if (i % 8 == 7) fill();
        live(1 + static_cast<int>(random() % 40), static_cast<int>(random() % 1001));
        expectAgreement();
    }
    const RunningTweak tweak({LUMORA_TWEAK, "--settings", sandbox.settings()});
    const Value settings = askForSettings();
    std::map<std::string, ChangeRecord> last;
    for (ChangeRecord& record : lumora::readRecords(readFile(file)).records)
        last[record.key] = record;
    for (const auto& [key, record] : last)
        EXPECT_TRUE(record.withheld != Withheld::nothing || record.after.value_or(Value()) == settings[key])
            << key << ", once it has caught up";
}
