#include "json/Json.h"

#include "platform/foundation/PropertyList.h"
#include "tests/foundation/RandomValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace lumora;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::PropertyListLimits;
using platform::Result;
using platform::Value;
using testing::HasSubstr;

namespace {

std::string line(const Value& value) {
    const Result<std::string> json = writeJson(value, JsonLayout::line);
    return json ? json.value() : "error: " + json.error();
}

std::string errorOf(std::string_view json) {
    const Result<Value> read = readJson(json);
    return read ? "no error" : read.error();
}

Value read(std::string_view json) {
    const Result<Value> read = readJson(json);
    EXPECT_TRUE(read) << json << ": " << read.error();
    return read ? read.value() : Value();
}

void expectRoundTrip(const Value& value, const std::string& json) {
    EXPECT_EQ(line(value), json);
    EXPECT_EQ(read(json), value) << json;
}

/// Equality in which NaN equals NaN and -0.0 is not 0.0: by the text, which tells them apart.
void expectSameAfterRoundTrip(const Value& value) {
    const std::string json = line(value);
    EXPECT_EQ(line(read(json)), json);
}

} // namespace

TEST(Json, KeepsIntegersRealsAndBooleansApart) {
    expectRoundTrip(1, "1");
    expectRoundTrip(1.0, "1.0");
    expectRoundTrip(true, "true");
    expectRoundTrip(0, "0");
    expectRoundTrip(0.0, "0.0");
    expectRoundTrip(false, "false");
    expectRoundTrip(List{1, 1.0, true}, "[1,1.0,true]");
    EXPECT_EQ(read("1e2"), Value(100.0)) << "an exponent makes a real";
}

TEST(Json, KeepsEveryIntegerOf64SignedBits) {
    expectRoundTrip(std::numeric_limits<std::int64_t>::max(), "9223372036854775807");
    expectRoundTrip(std::numeric_limits<std::int64_t>::min(), "-9223372036854775808");
}

TEST(Json, RefusesIntegersBeyond64SignedBits) {
    EXPECT_EQ(errorOf("9223372036854775808"), "9223372036854775808 is beyond 64 signed bits");
    EXPECT_EQ(errorOf("-9223372036854775809"), "-9223372036854775809 is beyond 64 signed bits");
    EXPECT_EQ(errorOf("[18446744073709551616]"), "18446744073709551616 is beyond 64 signed bits");
}

TEST(Json, KeepsRealsExactly) {
    for (const double real : {0.1, 1.0 / 3, 87.5, 1e300, 5e-324, -0.0, 1.7976931348623157e308, 0.5833333333333334})
        expectSameAfterRoundTrip(real);
    EXPECT_TRUE(std::signbit(*read("-0.0").real()));
}

TEST(Json, NamesTheRealsThatAreNotFinite) {
    EXPECT_EQ(line(std::numeric_limits<double>::quiet_NaN()), R"({"$real":"nan"})");
    expectRoundTrip(std::numeric_limits<double>::infinity(), R"({"$real":"inf"})");
    expectRoundTrip(-std::numeric_limits<double>::infinity(), R"({"$real":"-inf"})");
    EXPECT_TRUE(std::isnan(*read(R"({"$real": "nan"})").real()));
}

TEST(Json, KeepsTheOrderOfKeys) {
    expectRoundTrip(Dictionary{{"z", 1}, {"a", 2}, {"m", 3}}, R"({"z":1,"a":2,"m":3})");
    const Value swapped = read(R"({"b": 1, "a": 2})");
    EXPECT_EQ(swapped.dictionary()->begin()->first, "b");
}

TEST(Json, KeepsTextsExactly) {
    expectRoundTrip("Grüße, 日本語, 😀", "\"Grüße, 日本語, 😀\"");
    expectRoundTrip(std::string("a\0b", 3), R"("a\u0000b")");
    expectRoundTrip("\"quotes\"\n\\", R"("\"quotes\"\n\\")");
    expectRoundTrip("", R"("")");
    EXPECT_EQ(read(R"("\ud83d\ude00")"), Value("😀"));
}

TEST(Json, EscapesWhatTellsATerminalWhatToDo) {
    expectRoundTrip("\x1B[2J\x7F\u009B\u202E\u2066\u2028\u2029\u200B\U000E0041",
                    R"("\u001b[2J\u007f\u009b\u202e\u2066\u2028\u2029\u200b\udb40\udc41")");
    expectRoundTrip("é – 😀", "\"é – 😀\"");
    EXPECT_EQ(writeJson(Dictionary{{"\u202E", 1}}).value(), "{\n  \"\\u202e\": 1\n}") << "keys too, but no line break";
}

TEST(Json, WritesNilAsNull) {
    expectRoundTrip(nullptr, "null");
    expectRoundTrip(List{nullptr}, "[null]");
}

TEST(Json, WritesDataAsBase64) {
    expectRoundTrip(Data{}, R"({"$data":""})");
    expectRoundTrip(Data{'h'}, R"({"$data":"aA=="})");
    expectRoundTrip(Data{'h', 'i'}, R"({"$data":"aGk="})");
    expectRoundTrip(Data{0xff, 0xfe, 0x00}, R"({"$data":"//4A"})");
}

TEST(Json, WritesDatesForPeopleAndFractionsAsSeconds) {
    expectRoundTrip(Date{0}, R"({"$date":"2001-01-01T00:00:00Z"})");
    expectRoundTrip(Date{-1}, R"({"$date":"2000-12-31T23:59:59Z"})");
    expectRoundTrip(Date{760003200}, R"({"$date":"2025-01-31T08:00:00Z"})");
    expectRoundTrip(Date{0.5}, R"({"$date":0.5})");
    expectRoundTrip(Date{1e300}, R"({"$date":1e+300})");
    EXPECT_EQ(read(R"({"$date": 5})"), Value(Date{5}));
    expectSameAfterRoundTrip(Date{std::numeric_limits<double>::infinity()});
    expectSameAfterRoundTrip(Date{-0.0});
}

TEST(Json, DoublesTheDollarSignOfOtherKeys) {
    expectRoundTrip(Dictionary{{"$data", "x"}}, R"({"$$data":"x"})");
    expectRoundTrip(Dictionary{{"$$", 1}, {"$", 2}, {"a$", 3}}, R"({"$$$":1,"$$":2,"a$":3})");
}

TEST(Json, RefusesFormsThatItDoesNotKnow) {
    EXPECT_THAT(errorOf(R"({"$top": 1})"), HasSubstr("is written with \"$$\""));
    EXPECT_THAT(errorOf(R"({"$data": "aGk=", "b": 1})"), HasSubstr("alone"));
    EXPECT_EQ(errorOf(R"({"$data": "aGk"})"), R"(this is no value for "$data")");
    EXPECT_EQ(errorOf(R"({"$data": 1})"), R"(this is no value for "$data")");
    EXPECT_EQ(errorOf(R"({"$date": "yesterday"})"), R"(this is no value for "$date")");
    EXPECT_EQ(errorOf(R"({"$date": true})"), R"(this is no value for "$date")");
    EXPECT_EQ(errorOf(R"({"$real": "infinity"})"), R"(this is no value for "$real")");
    EXPECT_EQ(errorOf(R"({"$real": 1.0})"), R"(this is no value for "$real")");
}

TEST(Json, RefusesKeysThatOccurTwice) {
    EXPECT_EQ(errorOf(R"({"a": 1, "b": 2, "a": 3})"), R"(the key "a" stands there twice)");
    EXPECT_EQ(errorOf(R"([{"x": {"": 1, "": 1}}])"), R"(the key "" stands there twice)");
}

TEST(Json, SaysWhereTheTextStopsBeingJson) {
    EXPECT_THAT(errorOf(""), HasSubstr("line 1, column 1"));
    EXPECT_THAT(errorOf("{\"a\": 1,\n \"b\" 2}"), HasSubstr("line 2"));
    EXPECT_THAT(errorOf("[1] 2"), HasSubstr("column 5"));
    for (const char* text : {"{", "[1,]", "{\"a\"}", "'text'", "text", "NaN", "01", "1.", "\"open", "nul", "// no"})
        EXPECT_FALSE(readJson(text)) << text;
}

TEST(Json, RefusesTextsThatAreNotUtf8) {
    EXPECT_THAT(errorOf("\"\xff\""), HasSubstr("UTF-8"));
    EXPECT_THAT(errorOf("{\"\xc3\": 1}"), HasSubstr("UTF-8"));
    EXPECT_FALSE(readJson(R"("\ud83d")")) << "half a surrogate pair";
    EXPECT_EQ(line(List{"\xff"}), "error: a text is not valid UTF-8");
}

TEST(Json, RefusesReadingDeeperThanAnArchiveMayBe) {
    const auto nested = [](unsigned depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(readJson(nested(PropertyListLimits::depth)));
    EXPECT_THAT(errorOf(nested(PropertyListLimits::depth + 1)), HasSubstr("nested more than"));
    EXPECT_THAT(errorOf(nested(1'000'000)), HasSubstr("nested more than"));
    EXPECT_THAT(errorOf(std::string(1'000'000, '[')), HasSubstr("nested more than"));
}

TEST(Json, RefusesWritingDeeperThanAnArchiveMayBe) {
    Value deep = 1;
    for (unsigned level = 0; level < PropertyListLimits::depth; ++level)
        deep = List{deep};
    EXPECT_EQ(read(line(deep)), deep);
    EXPECT_THAT(line(List{deep}), HasSubstr("error: lists and dictionaries are nested more than"));
}

TEST(Json, GivesEachEntryALineWhenIndented) {
    const auto json = writeJson(Dictionary{{"a", List{1, 2.0}}, {"b", Dictionary{}}, {"c", List{}}});
    EXPECT_EQ(json.value(), "{\n  \"a\": [\n    1,\n    2.0\n  ],\n  \"b\": {},\n  \"c\": []\n}");
}

TEST(Json, BringsBackAnyValueThatItWrites) {
    RandomValue random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    for (int i = 0; i < 2000; ++i) {
        const Value value = random.next();
        for (const JsonLayout layout : {JsonLayout::line, JsonLayout::indented}) {
            const auto json = writeJson(value, layout);
            ASSERT_TRUE(json) << json.error();
            const auto back = readJson(json.value());
            ASSERT_TRUE(back) << json.value() << ": " << back.error();
            ASSERT_EQ(back.value(), value) << json.value();
        }
    }
}

TEST(Json, TakesLargeDictionariesInItsStride) {
    std::vector<Dictionary::Entry> entries;
    for (int i = 0; i < 100'000; ++i)
        entries.emplace_back("key" + std::to_string(i), i);
    const Value large = Dictionary(std::move(entries));
    EXPECT_EQ(read(line(large)), large);
}

TEST(Json, TakesDataInNothingButItsOwnForm) {
    for (const std::string text :
         {"a", "aG", "aGk", "aGk=a", "aG==", "a===", "====", "=", "aGk=\\n", "aG k", "aGl=", "_-A=", "aGk=aGk="})
        EXPECT_EQ(errorOf(R"({"$data": ")" + text + R"("})"), R"(this is no value for "$data")") << text;
}

TEST(Json, WritesTheDatesOfFourDigitYearsAsText) {
    for (const std::string text : {"0001-01-01T00:00:00Z", "2024-02-29T00:00:00Z", "9999-12-31T23:59:59Z"})
        EXPECT_EQ(line(read(R"({"$date":")" + text + R"("})")), R"({"$date":")" + text + R"("})");
    expectRoundTrip(Date{252'423'993'600}, R"({"$date":252423993600.0})");
    expectRoundTrip(Date{-63'113'904'001}, R"({"$date":-63113904001.0})");
}

TEST(Json, TakesNothingForADateButRealMomentsInItsOwnForm) {
    for (const std::string text :
         {"2023-02-29T00:00:00Z", "2024-00-01T00:00:00Z", "2024-13-01T00:00:00Z", "2024-01-01T24:00:00Z",
          "2024-01-01T00:60:00Z", "2024-01-01T00:00:60Z", "0000-01-01T00:00:00Z", "2024-01-01 00:00:00Z",
          "2024-01-01T00:00:00", "2024-1-1T0:0:0Z", "+024-01-01T00:00:00Z", "2024-01-01T-1:00:00Z",
          "2024-01-01T00:00:00ZZ", ""})
        EXPECT_EQ(errorOf(R"({"$date": ")" + text + R"("})"), R"(this is no value for "$date")") << text;
}

TEST(JsonDocument, TellsTheLinesOfItsUpperKeys) {
    const auto read =
        readJsonDocument("{\"a\": 1,\n\n \"b\": {\"c\":\n[{\"deep\": 1}], \"$$d\": 2},\r\n\"e\": 3}", {8, 10});
    ASSERT_TRUE(read) << read.error();
    std::vector<std::string> keys;
    for (const auto& [depth, key, line] : read.value().keys)
        keys.push_back(std::to_string(depth) + key + std::to_string(line));
    EXPECT_THAT(keys, testing::ElementsAre("1a1", "1b3", "2c3", "2$d4", "1e5"));
    EXPECT_EQ(read.value().value["b"]["$d"], Value(2));
}

TEST(JsonDocument, IsHeldToItsLimitsAndTellsWhere) {
    const auto why = [](const std::string& json) { return readJsonDocument(json, {3, 3}).error(); };
    EXPECT_EQ(why("[\n[[[1]]]]"), "line 2: lists and dictionaries are nested more than 3 deep");
    EXPECT_EQ(why("{\"a\": 1,\n\"b\": {\"c\": 1},\n\n\"d\": 1}"), "line 4: there are more than 3 keys");
    EXPECT_EQ(why("{\"a\": 1,\n\"a\": 1\n\n}"), "line 2: the key \"a\" stands there twice");
    EXPECT_EQ(why("{\"a\": 1,\n\"b\" \"secret\"}"),
              "line 2: syntax error while parsing object separator - unexpected string literal; expected ':'");
    EXPECT_EQ(why("\n[\"secret"), "line 2: syntax error while parsing value - invalid string: missing closing quote");
    EXPECT_EQ(why("[123456789012345678901]"), "line 1: a number is beyond 64 signed bits");
    EXPECT_EQ(why("[1234e999]"), "line 1: a number is beyond what a real can be");
    EXPECT_TRUE(readJsonDocument("[[[1]]]", {3, 3}));
}
