#include "history/ChangeRecord.h"

#include "history/PlainLine.h"
#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace lumora;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

const Moment kSomeMoment = *momentOf("2026-11-20T18:36:00.123Z");

ChangeRecord someRecord(std::int64_t revision, const std::string& key = "kSleepTime") {
    return {revision, revision, kSomeMoment, key, Value(10), Value(30)};
}

std::string linesOf(const std::vector<ChangeRecord>& records) {
    std::string lines;
    for (const ChangeRecord& record : records)
        lines += lineOf(record).value();
    return lines;
}

} // namespace

TEST(ChangeRecord, IsALineOfJsonAndBack) {
    EXPECT_EQ(lineOf(someRecord(12)).value(),
              R"({"revision":12,"time":"2026-11-20T18:36:00.123Z","key":"kSleepTime","old":10,"new":30})"
              "\n");
    const std::vector<ChangeRecord> records{
        someRecord(1),
        {3, 2, kSomeMoment, "a\nb\"{", std::nullopt, Value(List{1, 1.0, true, Dictionary{{"$a", "\u202E"}}})},
        {4, 4, kSomeMoment, "", Value(platform::Data{1, 2}), std::nullopt},
        {5, 5, kSomeMoment, "kAutoUnlockPasscode", std::nullopt, std::nullopt, Withheld::secure},
        {6, 6, kSomeMoment, "com.example.large", std::nullopt, std::nullopt, Withheld::large}};
    const std::string text = linesOf(records);
    const RecordsRead read = readRecords(text);
    EXPECT_EQ(read.records, records);
    EXPECT_EQ(read.foreign, 0U);
    EXPECT_EQ(read.whole, text.size());
    ASSERT_EQ(read.places.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        EXPECT_EQ(text.substr(read.places[i].begin, read.places[i].size), lineOf(records[i]).value());
}

TEST(ChangeRecord, IsReadAlikeFromAPlainLineAndFromJson) {
    const std::vector<Value> values{0,       -7,          std::numeric_limits<std::int64_t>::max(),
                                    0.5,     -0.25,       100.0,
                                    1e300,   1e-300,      "",
                                    "a",     "Grüße",     "\"quoted\"",
                                    "a\nb",  true,        false,
                                    List{1}, Dictionary{}};
    int plain = 0;
    for (const Value& value : values) {
        ChangeRecord record = someRecord(9);
        record.first = 7;
        record.before = value;
        record.after = value;
        std::string line = lineOf(record).value();
        line.pop_back();
        EXPECT_EQ(recordOf(readJson(line).value()).value(), record) << line;
        const auto quickly = readPlainLine(line);
        EXPECT_EQ(quickly.value_or(record), record) << line;
        plain += quickly.has_value() ? 1 : 0;
    }
    EXPECT_GE(plain, 11);
    for (const std::string wrong :
         {"01", "-", "1.", ".5", "+1", "nan", "1e5", "9223372036854775808", "\"\xFF\"", "tru", ""})
        EXPECT_FALSE(readPlainLine(R"({"revision":1,"time":"2026-11-20T18:36:00.123Z","key":"k","new":)" + wrong + "}"))
            << wrong;
}

TEST(ChangeRecord, TakesThePlaceOfThoseThatItStandsFor) {
    ChangeRecord folded = someRecord(4);
    folded.first = 2;
    const auto all = {someRecord(1), someRecord(2), someRecord(3), folded, someRecord(5, "other")};
    EXPECT_THAT(readRecords(linesOf(all)).records, testing::ElementsAre(someRecord(1), folded, someRecord(5, "other")));
}

TEST(ChangeRecord, LosesNothingButTheLineThatWasTorn) {
    const std::string text = linesOf({someRecord(1), someRecord(2), someRecord(3)});
    const std::size_t length = text.size() / 3;
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const RecordsRead read = readRecords(std::string_view(text).substr(0, size));
        EXPECT_EQ(read.records.size(), size / length);
        EXPECT_EQ(read.whole, size / length * length);
        EXPECT_EQ(read.foreign, 0U);
        EXPECT_TRUE(isTornLine(std::string_view(text).substr(read.whole, size - read.whole)));
    }
    EXPECT_FALSE(isTornLine(std::string_view("\0\0", 2)));
    EXPECT_FALSE(isTornLine("# a file of somebody else"));
}

TEST(ChangeRecord, CountsLinesThatAreNoRecordsAndReadsTheOthers) {
    const std::string time = R"("time":"2026-11-20T18:36:00.123Z")";
    const std::vector<std::string> wrong{"no JSON",
                                         "[1]",
                                         "{}",
                                         R"({"revision":0,)" + time + R"(,"key":"k"})",
                                         R"({"revision":9007199254740993,)" + time + R"(,"key":"k"})",
                                         R"({"revision":5,"first":6,)" + time + R"(,"key":"k"})",
                                         R"({"revision":5,"first":0,)" + time + R"(,"key":"k"})",
                                         R"({"revision":5,"time":"soon","key":"k"})",
                                         R"({"revision":5,)" + time + "}",
                                         R"({"revision":5,)" + time + R"(,"key":"k","new":null})",
                                         R"({"revision":5,)" + time + R"(,"key":"k","new":1,"withheld":"secure"})",
                                         R"({"revision":1,)" + time + R"(,"key":"again"})"};
    std::string text = linesOf({someRecord(1)});
    for (const std::string& line : wrong)
        text += line + "\n";
    text += "\n" + linesOf({someRecord(2)});
    const RecordsRead read = readRecords(text);
    EXPECT_THAT(read.records, testing::ElementsAre(someRecord(1), someRecord(2)));
    EXPECT_EQ(read.foreign, wrong.size());
}

TEST(ChangeRecord, OverlooksWhatLaterVersionsMayAdd) {
    Dictionary document = documentOf(someRecord(1));
    document.set("by", "somebody");
    EXPECT_EQ(recordOf(document).value(), someRecord(1));
}

TEST(ChangeRecord, IsNoLineIfJsonCannotHoldIt) {
    EXPECT_FALSE(lineOf(someRecord(1, "\xFF")));
}
