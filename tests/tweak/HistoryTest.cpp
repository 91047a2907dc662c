#include "tests/support/FullDisk.h"
#include "tests/tweak/DeviceSync.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/History.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class HistoryTest : public testing::Test {
  protected:
    std::unique_ptr<History> open() {
        auto opened = History::open(file, log, limits, [this] { return now; });
        if (opened) return std::move(opened).value();
        failure = opened.error();
        return nullptr;
    }
    /// A change that follows the last one after a while.
    void change(History& history, const std::string& key, const Value& before, const Value& after,
                std::chrono::milliseconds later = std::chrono::minutes(1)) {
        now += later;
        history.record(history.revision() + 1, key, before, after);
    }
    static std::vector<ChangeRecord> records(const History& history) { return history.part(0).value().records; }
    [[nodiscard]] std::vector<ChangeRecord> onDisk() const { return readRecords(readFile(file)).records; }

    Sandbox sandbox;
    std::filesystem::path file = sandbox.path() / "com.nevo.lumora.history";
    Moment now = *momentOf("2026-11-20T18:36:00.123Z");
    HistoryLimits limits;
    std::vector<std::string> lines;
    std::string failure;
    Log log = [this](const std::string& line) { lines.push_back(line); };
};

/// Revision, first of those folded, old and new value.
auto isChange(std::int64_t revision, std::int64_t first, const Value& before, const Value& after) {
    return testing::AllOf(testing::Field(&ChangeRecord::revision, revision),
                          testing::Field(&ChangeRecord::first, first),
                          testing::Field(&ChangeRecord::before, std::optional(before)),
                          testing::Field(&ChangeRecord::after, std::optional(after)));
}

} // namespace

TEST_F(HistoryTest, StandsBesideTheSettings) {
    EXPECT_EQ(History::besideSettings("/a/com.nevo.lumora.plist"), "/a/com.nevo.lumora.history");
    EXPECT_EQ(History::besideSettings("/a.b/settings"), "/a.b/settings.history");
    EXPECT_EQ(History::besideSettings("/a/a.history"), "/a/a.history.history");
}

TEST_F(HistoryTest, KeepsEachChangeForItsUserAlone) {
    ::umask(0);
    const auto history = open();
    change(*history, "kSleepTime", 10, 30);
    history->record(2, "com.example.text", std::nullopt, Value("new")); // which may be a plug-in's passcode
    history->record(3, "com.example.key", std::nullopt, Value(1));
    EXPECT_EQ(readFile(file),
              R"({"revision":1,"time":"2026-11-20T18:37:00.123Z","key":"kSleepTime","old":10,"new":30})"
              "\n"
              R"({"revision":2,"time":"2026-11-20T18:37:00.123Z","key":"com.example.text","withheld":"secure"})"
              "\n"
              R"({"revision":3,"time":"2026-11-20T18:37:00.123Z","key":"com.example.key","new":1})"
              "\n");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(records(*history), onDisk());
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(HistoryTest, GoesOnWhereItLeftOff) {
    change(*open(), "kSleepTime", 10, 30);
    const auto history = open();
    EXPECT_EQ(history->revision(), 1);
    change(*history, "kSleepTime", 30, 40);
    EXPECT_THAT(records(*history), ElementsAre(isChange(1, 1, 10, 30), isChange(2, 2, 30, 40)));
}

TEST_F(HistoryTest, FoldsChangesOfAKeyThatFollowOneAnotherClosely) {
    using std::chrono::milliseconds;
    auto history = open();
    change(*history, "a", 0, 1);
    for (int i = 1; i < 100; ++i)
        change(*history, "a", i, i + 1, milliseconds(1999));
    EXPECT_THAT(records(*history), ElementsAre(isChange(100, 1, 0, 100)));
    EXPECT_EQ(records(*history)[0].time, now);
    history.reset();
    history = open();
    change(*history, "a", 100, 101, milliseconds(1)); // even across a new start
    change(*history, "a", 101, 102, milliseconds(2000));
    change(*history, "b", 0, 1, milliseconds(1));
    change(*history, "a", 102, 103, milliseconds(1));
    change(*history, "a", 103, 104, milliseconds(-1)); // the clock is set back
    EXPECT_THAT(records(*history),
                ElementsAre(isChange(101, 1, 0, 101), isChange(102, 102, 101, 102), isChange(103, 103, 0, 1),
                            isChange(104, 104, 102, 103), isChange(105, 105, 103, 104)));
    EXPECT_EQ(onDisk(), records(*history));
}

TEST_F(HistoryTest, KeepsWhatIsTakenBackAtOnceAsARecordOfItsOwn) {
    const auto history = open();
    change(*history, "a", false, true);
    change(*history, "a", true, false, std::chrono::milliseconds(1));
    change(*history, "a", false, true, std::chrono::milliseconds(1));
    EXPECT_THAT(records(*history),
                ElementsAre(isChange(1, 1, false, true), isChange(2, 2, true, false), isChange(3, 3, false, true)));
    history->record(4, "kSleepTime", std::nullopt, Value(30));
    history->record(5, "kSleepTime", Value(30), Value(10)); // its default
    EXPECT_EQ(records(*history).size(), 5U);
}

TEST_F(HistoryTest, TellsOfPasscodesOnlyThatTheyHaveChanged) {
    const auto history = open();
    change(*history, "kAutoUnlockPasscode", "24680", "13579");
    change(*history, "kAutoUnlockPasscode", "13579", "97531", std::chrono::milliseconds(1));
    ASSERT_EQ(records(*history).size(), 1U);
    EXPECT_EQ(records(*history)[0].withheld, Withheld::secure);
    EXPECT_EQ(records(*history)[0].first, 1);
    for (const char* passcode : {"24680", "13579", "97531"})
        EXPECT_THAT(readFile(file), Not(HasSubstr(passcode)));
}

TEST_F(HistoryTest, ForgetsPasscodesThatSomebodyElsePutThere) {
    const std::string line =
        R"({"revision":7,"time":"2026-11-20T18:37:00.123Z","key":"kAutoUnlockPasscode","new":"24680"})";
    change(*open(), "a", 1, 2);
    writeFile(file, readFile(file) + line + "\n");
    const auto history = open();
    EXPECT_THAT(records(*history), ElementsAre(isChange(1, 1, 1, 2)));
    EXPECT_THAT(readFile(file), Not(HasSubstr("24680")));
    writeFile(file, readFile(file) + line + "\n"); // while it runs
    for (const ChangeRecord& record : records(*history))
        EXPECT_FALSE(record.key == "kAutoUnlockPasscode" && record.after);
}

TEST_F(HistoryTest, TellsOfLongValuesOnlyThatTheyHaveChanged) {
    limits.line = 300;
    const auto history = open();
    change(*history, "kLSDateSubtitle", 1, std::string(300, 'x'));
    change(*history, "kLSDateSubtitle", std::string(300, 'x'), 2);
    change(*history, "kLSDateSubtitle", 2, 3);
    const auto kept = records(*history);
    ASSERT_EQ(kept.size(), 3U);
    EXPECT_EQ(kept[0].withheld, Withheld::large);
    EXPECT_EQ(kept[1].withheld, Withheld::large);
    EXPECT_THAT(kept[2], isChange(3, 3, 2, 3));
}

TEST_F(HistoryTest, HasNoMoreRecordsThanItsLimitAndForgetsTheOldest) {
    limits.records = 10;
    const auto history = open();
    for (int i = 0; i < 100; ++i) {
        change(*history, "key" + std::to_string(i % 3), i, i + 1);
        const auto kept = records(*history);
        ASSERT_LE(kept.size(), 10U);
        ASSERT_GE(kept.size(), std::min<std::size_t>(static_cast<std::size_t>(i) + 1, 8U));
        ASSERT_THAT(kept.back(), isChange(i + 1, i + 1, i, i + 1));
        for (std::size_t one = 1; one < kept.size(); ++one)
            ASSERT_EQ(kept[one].revision, kept[one - 1].revision + 1);
        ASSERT_EQ(onDisk(), kept);
    }
}

TEST_F(HistoryTest, TakesNoMoreRoomThanItsLimitHoweverOftenASettingIsDragged) {
    limits.bytes = 2'000;
    auto history = open();
    change(*history, "a", 0, 1);
    for (int i = 1; i < 500; ++i) {
        change(*history, "b", i, i + 1, std::chrono::milliseconds(10));
        ASSERT_LE(readFile(file).size(), 2'000U);
    }
    EXPECT_THAT(records(*history), ElementsAre(isChange(1, 1, 0, 1), isChange(500, 2, 1, 500)));
    limits.bytes = 150;
    history.reset();
    history = open();
    EXPECT_THAT(records(*history), ElementsAre(isChange(500, 2, 1, 500))) << "a smaller limit than before";
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(HistoryTest, LosesOnlyWhatWasTornAndSaysNothing) {
    change(*open(), "a", 1, 2);
    const std::string whole = readFile(file);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeFile(file, whole + whole.substr(0, size));
        const auto history = open();
        ASSERT_THAT(records(*history), ElementsAre(isChange(1, 1, 1, 2))) << size;
        change(*history, "b", 3, 4);
        ASSERT_THAT(onDisk(), ElementsAre(isChange(1, 1, 1, 2), isChange(2, 2, 3, 4))) << size;
    }
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(HistoryTest, LeavesOutLinesThatAreNoRecordsAndSaysSoOnce) {
    change(*open(), "a", 1, 2);
    writeFile(file, "one\n" + readFile(file) + "two\n" + std::string(100, '\0'));
    EXPECT_THAT(records(*open()), ElementsAre(isChange(1, 1, 1, 2)));
    EXPECT_THAT(lines, ElementsAre(file.string() + ": lines that are no records are left out: 3"));
    lines.clear();
    EXPECT_THAT(records(*open()), ElementsAre(isChange(1, 1, 1, 2)));
    EXPECT_THAT(lines, IsEmpty()) << "they are gone";
}

TEST_F(HistoryTest, SetsAForeignFileAside) {
    limits.largest = 2'000;
    for (const std::string& foreign :
         {std::string("somebody's own\nfile\n"), std::string(100, '\0'), std::string("x"), std::string(3'000, 'x')}) {
        lines.clear();
        writeFile(file, foreign);
        const auto history = open();
        ASSERT_TRUE(history) << failure;
        EXPECT_THAT(records(*history), IsEmpty());
        EXPECT_EQ(readFile(file.string() + ".unreadable"), foreign);
        EXPECT_THAT(lines, ElementsAre(HasSubstr(" holds no history (")));
        change(*history, "a", 1, 2);
        EXPECT_EQ(onDisk().size(), 1U);
    }
}

TEST_F(HistoryTest, OpensNothingButARegularFileOfItsOwn) {
    std::filesystem::create_directory(file);
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, testing::StartsWith("cannot keep a history in " + file.string() + ": "));
    std::filesystem::remove(file);
    writeFile(sandbox.path() / "own", "a file of its user");
    std::filesystem::create_symlink("own", file);
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, HasSubstr("it is a link"));
    EXPECT_EQ(readFile(sandbox.path() / "own"), "a file of its user");
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, HasSubstr("it is no regular file"));
    std::filesystem::remove(file);
    const auto first = open();
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, HasSubstr("another lumora-tweak uses it"));
}

TEST_F(HistoryTest, AnswersInPartsFromARevisionOn) {
    limits.answer = 250;
    const auto history = open();
    for (int i = 1; i <= 7; ++i)
        change(*history, "key" + std::to_string(i), 0, i);
    std::vector<std::int64_t> revisions;
    std::int64_t since = 1;
    for (bool more = true; more;) {
        const History::Part part = history->part(since).value();
        ASSERT_LE(part.records.size(), 3U);
        for (const ChangeRecord& record : part.records)
            revisions.push_back(record.revision);
        more = part.more;
        since = part.upTo;
    }
    EXPECT_THAT(revisions, ElementsAre(2, 3, 4, 5, 6, 7));
    EXPECT_EQ(since, 7);
    EXPECT_THAT(history->part(7).value().records, IsEmpty());
    EXPECT_THAT(history->part(99).value().records, IsEmpty());
}

TEST_F(HistoryTest, IsClearedAndGoesOn) {
    const auto history = open();
    change(*history, "a", 1, 2);
    ASSERT_TRUE(history->clear());
    EXPECT_EQ(readFile(file), "");
    change(*history, "a", 2, 3, std::chrono::milliseconds(1));
    EXPECT_THAT(records(*history), ElementsAre(isChange(2, 2, 2, 3))) << "not folded into what is forgotten";
}

TEST_F(HistoryTest, ReplacesItsFileOnlyByOneThatIsOnTheDevice) {
    const auto history = open();
    change(*history, "a", 1, 2);
    const std::string before = readFile(file);
    syncingFails = true;
    const auto cleared = history->clear();
    syncingFails = false;
    ASSERT_FALSE(cleared);
    EXPECT_THAT(cleared.error(), HasSubstr("Input/output error"));
    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(records(*history), onDisk());
}

TEST_F(HistoryTest, BeginsAnewWhenItsFileIsRemovedOrEmptied) {
    const auto history = open();
    change(*history, "a", 1, 2);
    std::filesystem::remove(file);
    change(*history, "a", 2, 3);
    EXPECT_THAT(onDisk(), ElementsAre(isChange(2, 2, 2, 3)));
    EXPECT_EQ(records(*history), onDisk());
    writeFile(file, "");
    change(*history, "a", 3, 4);
    EXPECT_THAT(onDisk(), ElementsAre(isChange(3, 3, 3, 4)));
    EXPECT_EQ(records(*history), onDisk());
}

TEST_F(HistoryTest, DropsWhatSomebodyElseWritesIntoItsFile) {
    const auto history = open();
    change(*history, "a", 1, 2);
    writeFile(file, readFile(file) + "and this");
    change(*history, "a", 2, 3);
    EXPECT_THAT(onDisk(), ElementsAre(isChange(1, 1, 1, 2), isChange(2, 2, 2, 3)));
    EXPECT_EQ(records(*history), onDisk());
}

TEST_F(HistoryTest, TakesAFormerFileThatIsPutInItsPlace) {
    using std::chrono::milliseconds;
    const auto history = open();
    change(*history, "a", 1, 2);
    change(*history, "b", 1, 2);
    const std::string former = readFile(file);
    change(*history, "c", 1, 2, milliseconds(1));
    writeFile(file, former);
    change(*history, "b", 2, 3, milliseconds(1));
    EXPECT_THAT(records(*history), ElementsAre(isChange(1, 1, 1, 2), isChange(4, 2, 1, 3)));
    writeFile(sandbox.path() / "former", former);
    std::filesystem::rename(sandbox.path() / "former", file);
    change(*history, "d", 1, 2);
    EXPECT_THAT(records(*history), ElementsAre(isChange(1, 1, 1, 2), isChange(2, 2, 1, 2), isChange(5, 5, 1, 2)));
    EXPECT_EQ(onDisk(), records(*history));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(HistoryTest, BeginsAnewWhenItsFileIsMovedAway) {
    const auto history = open();
    change(*history, "a", 1, 2);
    std::filesystem::rename(file, sandbox.path() / "moved");
    change(*history, "a", 2, 3);
    EXPECT_THAT(onDisk(), ElementsAre(isChange(2, 2, 2, 3)));
}

TEST_F(HistoryTest, SetsAFileThatIsPutInItsPlaceAsideIfItsRevisionsAreStillToCome) {
    const auto history = open();
    change(*history, "a", 1, 2);
    const std::string later = R"({"revision":7,"time":"2026-11-20T18:37:00.123Z","key":"b","new":1})"
                              "\n";
    writeFile(file, later);
    change(*history, "a", 2, 3);
    EXPECT_THAT(onDisk(), ElementsAre(isChange(2, 2, 2, 3)));
    EXPECT_EQ(records(*history), onDisk());
    EXPECT_EQ(readFile(file.string() + ".unreadable"), later);
    EXPECT_THAT(lines, ElementsAre(HasSubstr("its revisions are still to come")));
}

TEST_F(HistoryTest, CatchesUpWithWhatHasChangedWithoutIt) {
    {
        const auto history = open();
        change(*history, "same", 1, 2);
        change(*history, "other", 1, 2);
        change(*history, "gone", 1, 2);
        change(*history, "kAutoUnlockPasscode", "1", "2");
    }
    now += std::chrono::minutes(1);
    const auto history = open();
    history->catchUp(Dictionary{{"same", 2}, {"other", 3}, {"kAutoUnlockPasscode", "4"}, {"unheard-of", 1}});
    const auto kept = records(*history);
    ASSERT_EQ(kept.size(), 6U);
    EXPECT_EQ(kept[4].key, "gone");
    EXPECT_EQ(kept[4].before, Value(2));
    EXPECT_EQ(kept[4].after, std::nullopt);
    EXPECT_EQ(kept[5].key, "other");
    EXPECT_THAT(kept[5], isChange(6, 6, 2, 3));
    EXPECT_EQ(history->revision(), 6);
}

TEST_F(HistoryTest, SaysOnceThatItsDiskIsFullAndGoesOnWhenThereIsRoom) {
    const auto history = open();
    change(*history, "a", 0, 1);
    const std::string before = readFile(file);
    {
        const FullDisk full(before.size() + 20);
        for (int i = 1; i < 4; ++i)
            change(*history, "a", i, i + 1);
    }
    EXPECT_EQ(readFile(file), before) << "nothing is left of what could not be written whole";
    EXPECT_THAT(lines, ElementsAre(file.string() + " cannot be written: File too large; changes are made without being "
                                                   "recorded"));
    change(*history, "a", 4, 5);
    EXPECT_THAT(onDisk(), ElementsAre(isChange(1, 1, 0, 1), isChange(5, 5, 4, 5)));
    EXPECT_EQ(lines.size(), 1U);
}

TEST_F(HistoryTest, WaitsAWhileUntilItTriesToMakeRoomAgain) {
    limits.records = 5;
    const auto history = open();
    for (int i = 0; i < 5; ++i)
        change(*history, "a", i, i + 1);
    const std::string before = readFile(file);
    {
        const FullDisk full(10);
        change(*history, "a", 5, 6);
    }
    change(*history, "a", 6, 7, std::chrono::seconds(59));
    EXPECT_EQ(readFile(file), before);
    change(*history, "a", 7, 8, std::chrono::seconds(1));
    EXPECT_THAT(records(*history).back(), isChange(8, 8, 7, 8));
    EXPECT_LE(records(*history).size(), 5U);
    EXPECT_EQ(lines.size(), 1U);
}
