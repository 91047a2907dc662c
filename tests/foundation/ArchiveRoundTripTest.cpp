#include "Codec.h"
#include "EdgeValues.h"
#include "RandomValue.h"
#include "RawArchive.h"

#include <bit>

namespace {

using namespace platform;
using namespace std::string_literals;

Value roundTrip(const Value& value) {
    return valueOf(NSKeyedUnarchiver::unarchive(archived(value)));
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
    for (const Value& integer : edgeIntegers())
        EXPECT_EQ(roundTrip(integer), integer) << description(integer);
}

TEST(KeyedArchive, KeepsEveryBitOfAReal) {
    List reals = edgeReals();
    reals.emplace_back(std::nan(""));
    for (const Value& value : reals) {
        const auto bits = std::bit_cast<std::uint64_t>(*value.real());
        const Value read = roundTrip(List{value, Date{*value.real()}});
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read.list()->at(0).real().value()), bits);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read.list()->at(1).date().value().seconds), bits);
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

TEST(KeyedArchive, ReplacesBytesThatAreNotUtf8) {
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
    EXPECT_TRUE(std::ranges::equal(*read["object"].dictionary(), dictionary));
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

TEST(KeyedArchive, KeepsATextThatIsRepeatedSixtyThousandTimes) {
    const Value value = List(60'000, Value(std::string(1'000, 't')));
    EXPECT_LT(archived(value).size(), 60'000U * 1'000 / 30);
    EXPECT_EQ(roundTrip(value), value);
    EXPECT_EQ(valueOf(readPropertyList(writePropertyList(value).value())), value);
}

TEST(KeyedArchive, IsWrittenUpToTheDepthThatIsReadAndNoFurther) {
    // Lists and dictionaries take turns, and either may be the one that is a level too deep.
    constexpr unsigned depth = PropertyListLimits::depth;
    for (const Value& value : {nested(depth), nested(depth - 1, Dictionary{{"k", "ground"}})}) {
        EXPECT_EQ(roundTrip(value), value);
        EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(List{value}));
        EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"k", value}}));
        EXPECT_TRUE(writePropertyList(value));
        EXPECT_FALSE(writePropertyList(List{value}));
    }
}

TEST(KeyedArchive, IsNotWrittenForAValueThatRepeatsItselfWithoutReason) {
    Value value = "x";
    for (int i = 0; i < 40; ++i)
        value = List{value, value};
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(value));
    EXPECT_EQ(writePropertyList(value).error(), "too large a value");
}

TEST(KeyedArchive, KeepsManyObjectsOfEachWidthOfReference) {
    for (const int count :
         {50, 60, 61, 62, 63, 64, 120, 126, 127, 128, 16'000, 21'840, 21'850, 32'760, 33'000, 70'000}) {
        List list;
        for (int i = 0; i < count; ++i)
            list.emplace_back(i % 3 == 0 ? Value(i) : Value("text" + std::to_string(i)));
        EXPECT_EQ(roundTrip(list), Value(list)) << count;
    }
}

TEST(KeyedArchive, KeepsRandomValues) {
    RandomValue random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    for (int i = 0; i < 1'000; ++i) {
        const Value value = random.next();
        const Value read = roundTrip(value);
        ASSERT_EQ(read, value) << description(value);
        ASSERT_EQ(archived(read), archived(value)) << description(value);
    }
}

TEST(KeyedArchive, ReadsObjectsThatAreSharedBetweenTheirHolders) {
    const RawArchive archive = RawArchive().addList({2, 2, 3, 4, 0}).addList({3, 4}).addText("text").addWideText(3, 1);
    const Value inner = List{"text", "text"};
    EXPECT_EQ(valueOf(NSKeyedUnarchiver::unarchive(archive.bytes())),
              Value(List{inner, inner, "text", "text", Value()}));
}

} // namespace
