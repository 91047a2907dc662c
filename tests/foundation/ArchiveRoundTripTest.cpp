#include "RandomValue.h"
#include "RawArchive.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace {

using namespace std::string_literals;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::PropertyListLimits;
using platform::Value;

Data archived(const Value& value) {
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(value);
    EXPECT_TRUE(archive);
    return archive.value_or(Data());
}

Value roundTrip(const Value& value) {
    auto read = NSKeyedUnarchiver::unarchive(archived(value));
    EXPECT_TRUE(read) << read.error();
    return read ? read.value() : Value();
}

TEST(KeyedArchive, KeepsEveryKindOfValue) {
    for (const Value& value :
         {Value(), Value(true), Value(false), Value(0), Value(1), Value(0.0), Value(1.0), Value(""), Value("text"),
          Value(Data{}), Value(Data{0, 255}), Value(Date{123.5}), Value(List{}), Value(Dictionary{})}) {
        const Value read = roundTrip(value);
        EXPECT_EQ(read.kind(), value.kind());
        EXPECT_EQ(read, value);
        EXPECT_EQ(roundTrip(List{value, Dictionary{{"k", value}}}), Value(List{value, Dictionary{{"k", value}}}));
    }
}

TEST(KeyedArchive, KeepsIntegersOfSixtyFourSignedBits) {
    using Limits = std::numeric_limits<std::int64_t>;
    for (const std::int64_t integer : {Limits::min(),
                                       Limits::min() + 1,
                                       std::int64_t{-4294967297},
                                       std::int64_t{-65536},
                                       std::int64_t{-256},
                                       std::int64_t{-1},
                                       std::int64_t{0},
                                       std::int64_t{127},
                                       std::int64_t{128},
                                       std::int64_t{255},
                                       std::int64_t{256},
                                       std::int64_t{32768},
                                       std::int64_t{65535},
                                       std::int64_t{65536},
                                       std::int64_t{16777216},
                                       std::int64_t{2147483648},
                                       std::int64_t{4294967295},
                                       std::int64_t{4294967296},
                                       Limits::max() - 1,
                                       Limits::max()})
        EXPECT_EQ(roundTrip(integer).integer(), integer);
}

TEST(KeyedArchive, KeepsEveryBitOfAReal) {
    using Limits = std::numeric_limits<double>;
    for (const double real : {0.0, -0.0, 0.1, 1.0 / 3, 0.5, 1e300, Limits::denorm_min(), Limits::max(),
                              Limits::lowest(), Limits::infinity(), -Limits::infinity(), std::nan("")}) {
        const auto read = roundTrip(real).real();
        ASSERT_TRUE(read);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*read), std::bit_cast<std::uint64_t>(real));
        const auto date = roundTrip(Date{real}).date();
        ASSERT_TRUE(date);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(date->seconds), std::bit_cast<std::uint64_t>(real));
    }
}

TEST(KeyedArchive, KeepsTextsExactly) {
    for (const std::string& text :
         {""s, "\0"s, "a\0b\0"s, "tab\there"s, "\x7F"s, "ü"s, "日本語"s, "a😀b"s, "😀"s, "\uFFFD"s, "\uFFFF"s,
          "\U0010FFFF"s, "é\0😀"s, std::string(14, 'x'), std::string(15, 'x'), std::string(300, 'x'),
          std::string(70'000, 'x'), "$null"s, "$class"s}) {
        EXPECT_EQ(roundTrip(text), Value(text));
        EXPECT_EQ(roundTrip(Dictionary{{text, text}}), Value(Dictionary{{text, text}}));
    }
}

TEST(KeyedArchive, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(roundTrip("a\xFFz"), Value("a\uFFFDz"));
    EXPECT_EQ(roundTrip("\xC0\x80"), Value("\uFFFD\uFFFD"));           // an overlong NUL
    EXPECT_EQ(roundTrip("\xED\xA0\x80"), Value("\uFFFD\uFFFD\uFFFD")); // half a surrogate pair
    EXPECT_EQ(roundTrip("cut \xF0\x9F\x98"), Value("cut \uFFFD\uFFFD\uFFFD"));
    EXPECT_EQ(roundTrip("\xF4\x90\x80\x80"), Value("\uFFFD\uFFFD\uFFFD\uFFFD")); // beyond the last character
}

TEST(KeyedArchive, KeepsTheOrderOfKeys) {
    Dictionary dictionary;
    for (const int i : {7, 3, 9, 1, 100, 5, 0, 55})
        dictionary.set("key" + std::to_string(i), i);
    const Value read = roundTrip(Dictionary{{"object", Value(dictionary)}});
    std::vector<std::string> keys;
    for (const auto& [key, value] : *read["object"].dictionary())
        keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"key7", "key3", "key9", "key1", "key100", "key5", "key0", "key55"}));
}

TEST(KeyedArchive, TellsNilFromTheTextThatStandsForIt) {
    const Value value = List{Value(), "$null", Dictionary{{"nil", Value()}, {"$null", "$null"}}};
    const Value read = roundTrip(value);
    EXPECT_EQ(read, value);
    EXPECT_TRUE(read.list()->front().isNil());
    EXPECT_TRUE(read.list()->back().dictionary()->contains("nil"));
}

TEST(KeyedArchive, SharesEqualTexts) {
    const std::string text(50, 't');
    const std::size_t one = archived(List{text}).size();
    const std::size_t fifty = archived(List(50, Value(text))).size();
    EXPECT_LE(fifty - one, 2 * 50U);
    const Value read = roundTrip(List(50, Value(text)));
    EXPECT_EQ((*read.list())[1].text(), (*read.list())[49].text());
}

TEST(KeyedArchive, SharesEqualTextsAmongManyOthers) {
    List texts;
    for (int i = 0; i < 2'000; ++i)
        texts.emplace_back("a text of some length, number " + std::to_string(i));
    const std::size_t once = archived(texts).size();
    const List again = texts;
    texts.insert(texts.end(), again.begin(), again.end());
    EXPECT_LE(archived(texts).size() - once, 2'000U * 6);
}

TEST(KeyedArchive, ReadsWhateverItWritesHoweverOftenATextIsRepeated) {
    const Value value = List(60'000, Value(std::string(1'000, 't')));
    const Data archive = archived(value);
    EXPECT_LT(archive.size(), 60'000U * 1'000 / 30);
    const auto read = NSKeyedUnarchiver::unarchive(archive);
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read.value(), value);
    const auto list = platform::writePropertyList(value);
    ASSERT_TRUE(list);
    EXPECT_EQ(platform::readPropertyList(list.value()).value(), value);
}

TEST(KeyedArchive, IsWrittenUpToTheDepthThatIsReadAndNoFurther) {
    // Lists and dictionaries take turns, and either may be the one that is a level too deep.
    for (const unsigned innermost : {0U, 1U}) {
        Value value = "ground";
        for (unsigned i = 0; i < PropertyListLimits::depth; ++i)
            value = i % 2 == innermost ? Value(List{value}) : Value(Dictionary{{"k", value}});
        EXPECT_EQ(roundTrip(value), value);
        EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(List{value}));
        EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"k", value}}));
        EXPECT_FALSE(platform::writePropertyList(List{value}));
    }
}

TEST(KeyedArchive, IsNotWrittenForAValueThatRepeatsItselfWithoutReason) {
    Value value = "x";
    for (int i = 0; i < 40; ++i)
        value = List{value, value};
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(value));
    EXPECT_EQ(platform::writePropertyList(value).error(), "too large a value");
}

TEST(KeyedArchive, KeepsManyObjectsOfEachWidthOfReference) {
    for (const int count :
         {50, 60, 61, 62, 63, 64, 120, 126, 127, 128, 16'000, 21'840, 21'850, 32'760, 33'000, 70'000}) {
        List list;
        for (int i = 0; i < count; ++i)
            list.emplace_back(i % 3 == 0 ? Value(i) : Value("text" + std::to_string(i)));
        const Value value = std::move(list);
        EXPECT_EQ(roundTrip(value), value) << count;
    }
}

TEST(KeyedArchive, KeepsRandomValues) {
    RandomValue random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    for (int i = 0; i < 5'000; ++i) {
        const Value value = random.next();
        const Value read = roundTrip(value);
        ASSERT_EQ(read, value) << description(value);
        ASSERT_EQ(archived(read), archived(value)) << description(value);
    }
}

TEST(KeyedArchive, ReadsObjectsThatAreSharedBetweenTheirHolders) {
    const auto value = NSKeyedUnarchiver::unarchive(
        RawArchive().addList({2, 2, 3, 4, 0}).addList({3, 4}).addText("text").addWideText(3, 1).bytes());
    ASSERT_TRUE(value) << value.error();
    const Value inner = List{"text", "text"};
    EXPECT_EQ(value.value(), Value(List{inner, inner, "text", "text", Value()}));
}

} // namespace
