// Bytes made to cost their reader dearly.

#include "Codec.h"
#include "RawArchive.h"

#include "tests/support/Allocations.h"

#include <numeric>

namespace {

using namespace platform;

using Reader = Result<Value> (*)(const Data&, std::size_t*);
constexpr Reader plain = &readPropertyList;
constexpr Reader keyed = &NSKeyedUnarchiver::unarchive;

/// Reads, and holds the cost against the length of the input.
Result<Value> readWithinProportion(Reader read, const Data& bytes) {
    const Allocations before = Allocations::now();
    std::size_t visits = 0;
    auto value = read(bytes, &visits);
    const Allocations cost = Allocations::now() - before;
    EXPECT_LE(visits, 4 * bytes.size());
    EXPECT_LE(cost.count, bytes.size() + 64);
    EXPECT_LE(cost.bytes, 64 * bytes.size() + 4096);
    return value;
}

void expectRefused(Reader read, const Data& bytes, std::string_view why) {
    EXPECT_EQ(refusal(readWithinProportion(read, bytes)), why);
}

/// References, or UIDs, in a row.
std::vector<std::size_t> ascending(std::size_t count, std::size_t first) {
    std::vector<std::size_t> references(count);
    std::iota(references.begin(), references.end(), first);
    return references;
}

/// So many lists, each holding the next one so many times; the last holds "x".
Data multipliedLists(std::size_t lists, std::size_t times) {
    RawList list(1);
    for (std::size_t i = 0; i < lists; ++i)
        list.addList(std::vector<std::size_t>(times, i + 1));
    return list.add({0x09}).bytes();
}

RawArchive multipliedArchive(std::size_t lists, std::size_t times) {
    RawArchive archive;
    for (std::size_t i = 0; i < lists; ++i)
        archive.addList(std::vector<std::size_t>(times, i + 2));
    archive.addText("x");
    return archive;
}

TEST(HostileArchive, WithListsThatEachHoldThePreviousTwiceIsRefused) {
    const Data bytes = multipliedLists(24, 2);
    EXPECT_EQ(bytes.size(), 138U);
    expectRefused(plain, bytes, "shared objects stand for too large a value");
    expectRefused(keyed, multipliedArchive(24, 2).bytes(), "shared objects stand for too large a value");
    expectRefused(keyed, multipliedArchive(100, 250).bytes(), "shared objects stand for too large a value");
}

TEST(HostileArchive, WithAHundredThousandNestedListsIsRefused) {
    RawList list(4);
    for (std::size_t i = 0; i < 100'000; ++i)
        list.addList({i + 1});
    expectRefused(plain, list.add("ground").bytes(), "nested too deeply");
    expectRefused(keyed, multipliedArchive(100'000, 1).bytes(), "nested too deeply");
}

TEST(HostileArchive, IsReadUpToTheDepthThatIsAllowedAndNoFurther) {
    const std::size_t depth = PropertyListLimits::depth;
    EXPECT_TRUE(readWithinProportion(plain, multipliedLists(depth, 1)));
    EXPECT_TRUE(readWithinProportion(keyed, multipliedArchive(depth, 1).bytes()));
    expectRefused(plain, multipliedLists(depth + 1, 1), "nested too deeply");
    expectRefused(keyed, multipliedArchive(depth + 1, 1).bytes(), "nested too deeply");
}

TEST(HostileArchive, OfDictionariesIsReadUpToTheSameDepthAndNoFurther) {
    const auto nested = [](std::size_t levels) {
        RawList list(2);
        for (std::size_t i = 0; i < levels; ++i)
            list.addDictionary({{levels, i + 1}});
        return list.add("a key, and the ground").bytes();
    };
    EXPECT_TRUE(readWithinProportion(plain, nested(PropertyListLimits::depth)));
    expectRefused(plain, nested(PropertyListLimits::depth + 1), "nested too deeply");
}

TEST(HostileArchive, CannotPassTheDepthThroughASharedList) {
    // The same tower of 100 lists is met at the top first and 100 levels further down again.
    RawArchive archive;
    archive.addList({2, 102});
    for (std::size_t i = 0; i < 99; ++i)
        archive.addList({i + 3});
    archive.addList({});
    for (std::size_t i = 0; i < 99; ++i)
        archive.addList({i + 103});
    archive.addList({2});
    expectRefused(keyed, archive.bytes(), "nested too deeply");
}

TEST(HostileArchive, WithSixtyThousandReferencesToOneLongTextIsRefused) {
    RawList list(1);
    list.addList(std::vector<std::size_t>(60'000, 1)).add(std::string(60'000, 't'));
    expectRefused(plain, list.bytes(), "shared objects stand for too large a value");

    RawArchive archive;
    archive.addList(std::vector<std::size_t>(60'000, 2)).addText(std::string(60'000, 't'));
    expectRefused(keyed, archive.bytes(), "shared objects stand for too large a value");
}

TEST(HostileArchive, IsReadWithAFewReferencesToOneLongTextThatIsThenShared) {
    RawArchive archive;
    archive.addList(std::vector<std::size_t>(60, 2)).addText(std::string(60'000, 't'));
    const Value value = valueOf(readWithinProportion(keyed, archive.bytes()));
    const List& list = *value.list();
    ASSERT_EQ(list.size(), 60U);
    EXPECT_EQ(list[5].text()->size(), 60'000U);
    EXPECT_EQ(list[5].text(), list[59].text());
}

TEST(HostileArchive, WithLongKeysInManyDictionariesStaysWithinItsBudget) {
    // Keys are copied into each dictionary, so here memory may reach the budget, but never pass it.
    RawList list(2);
    list.addList(ascending(2'000, 3)).add(std::string(5'000, 'k')).add({0x09});
    for (std::size_t i = 0; i < 2'000; ++i)
        list.addDictionary({{1, 2}});
    const Data bytes = list.bytes();
    const Allocations before = Allocations::now();
    EXPECT_EQ(refusal(readPropertyList(bytes)), "shared objects stand for too large a value");
    EXPECT_LE((Allocations::now() - before).bytes, bytes.size() * 2 * 64 + PropertyListLimits::spareBytes);
}

TEST(HostileArchive, WithCountsBeyondItsBytesIsRefused) {
    constexpr std::uint64_t huge = std::uint64_t{1} << 63U;
    const RawList sound = RawList(1).add("text");
    ASSERT_TRUE(readPropertyList(sound.bytes()));
    for (const std::uint64_t number : {huge, huge - 1, huge / 8, ~std::uint64_t{0}, std::uint64_t{14}}) {
        EXPECT_FALSE(readWithinProportion(plain, sound.bytes({.count = number})));
        EXPECT_FALSE(readWithinProportion(plain, sound.bytes({.root = number})));
        EXPECT_FALSE(readWithinProportion(plain, sound.bytes({.table = number * 8})));
    }
    for (const int type : {0x4F, 0x5F, 0x6F, 0xAF, 0xBF, 0xCF, 0xDF}) {
        for (const int top : {0x80, 0x40, 0x20, 0x10, 0x08, 0x01, 0xFF})
            expectRefused(plain, RawList(1).add({type, 0x13, top, 0, 0, 0, 0, 0, 0, 0, 1, 2}).bytes(),
                          "a count is larger than the bytes that remain");
        expectRefused(plain, RawList(1).add({type, 0x13, 0x80}).bytes(), "a count is cut short");
        expectRefused(plain, RawList(1).add({type, 0x23, 0x80, 0, 0, 0, 0, 0, 0, 0}).bytes(),
                      "a count that is no integer");
    }
    EXPECT_FALSE(readWithinProportion(keyed, RawList(8).add({0xDF, 0x13, 0x80, 0, 0, 0, 0, 0, 0, 0}).bytes()));
}

TEST(HostileArchive, ThatContainsItselfIsRefused) {
    expectRefused(plain, RawList(1).addList({0}).bytes(), "an object contains itself");
    expectRefused(plain, RawList(1).addList({1}).addList({0}).bytes(), "an object contains itself");
    expectRefused(plain, RawList(1).addDictionary({{1, 0}}).add("key").bytes(), "an object contains itself");
    expectRefused(keyed, RawArchive().addList({1}).bytes(), "an object contains itself");
    expectRefused(keyed, RawArchive().addList({2}).addList({3, 1}).addText("t").bytes(), "an object contains itself");
}

TEST(HostileArchive, WhoseTextsOverlapIsRefused) {
    // Each text begins inside the one before and reaches to the end of the last: n²/2 bytes in all.
    std::string nest;
    constexpr std::size_t texts = 2'000;
    for (std::size_t i = 0; i < texts; ++i) {
        const std::size_t length = 5 * (texts - 1 - i);
        nest += {0x5F, 0x11, static_cast<char>(length >> 8U & 0x7FU), static_cast<char>(length & 0x7FU), 'x'};
    }
    RawList list(2);
    list.addList(ascending(texts, 2)).add(nest);
    for (std::size_t i = 0; i < texts; ++i)
        list.addAlias(1, 6 + 5 * i);
    expectRefused(plain, list.bytes(), "objects overlap");
}

TEST(HostileArchive, WhoseListsOverlapIsRefused) {
    // Two thousand lists that lie over one another, each of two thousand entries.
    RawList list(2);
    list.addList(ascending(2'000, 3)).add({0x09}).addList(std::vector<std::size_t>(6'000, 1));
    for (std::size_t i = 0; i < 2'000; ++i)
        list.addAlias(2, 0);
    expectRefused(plain, list.bytes(), "objects overlap");
}

TEST(HostileArchive, WithAnObjectOfManyFieldsThatIsReferredToOftenIsReadOnce) {
    RawArchive archive;
    archive.addList(std::vector<std::size_t>(5'000, 2)).addWideText(3, 5'000).addText("wide");
    EXPECT_EQ(valueOf(readWithinProportion(keyed, archive.bytes())), Value(List(5'000, Value("wide"))));
}

TEST(HostileArchive, WithEqualKeysGivesTheLastOfTheirValues) {
    const RawList list = RawList(1).addDictionary({{1, 2}, {1, 3}}).add("key").add({0x10, 1}).add({0x10, 2});
    EXPECT_EQ(valueOf(readPropertyList(list.bytes())), Value(Dictionary{{"key", 2}}));
}

TEST(HostileArchive, WithReferencesToNowhereIsRefused) {
    expectRefused(plain, RawList(1).addList({7}).bytes(), "a reference to an object that is not there");
    expectRefused(plain, RawList(1).addList({1}).bytes(), "a reference to an object that is not there");
    expectRefused(keyed, RawArchive().addList({70}).bytes(), "a reference to an object that is not there");
    EXPECT_FALSE(NSKeyedUnarchiver::unarchive(RawArchive().addWideText(0, 1).bytes()));
}

TEST(HostileArchive, WithATextWhoseContentsAreUnsoundIsRefusedForThat) {
    expectRefused(keyed, RawArchive().addWideText(70, 1).bytes(), "a reference to an object that is not there");
    expectRefused(keyed, RawArchive().addWideText(2, 1).addRubbish().bytes(), "an object of an unknown kind");
    expectRefused(keyed, RawArchive().addWideText(2, 1).addNull().bytes(),
                  "an archived object whose contents are of another kind");
}

TEST(HostileArchive, TakesAKeyThatIsATextObjectOfItsOwnAndNoOther) {
    const RawArchive archive = RawArchive().addDictionary(2, 4).addWideText(3, 1).addText("key").addText("value");
    EXPECT_EQ(valueOf(readWithinProportion(keyed, archive.bytes())), Value(Dictionary{{"key", "value"}}));
    constexpr std::string_view why = "a dictionary key that is no text";
    expectRefused(keyed, RawArchive().addDictionary(0, 2).addText("value").bytes(), why);
    expectRefused(keyed, RawArchive().addDictionary(3, 2).addText("value").addNull().bytes(), why);
}

TEST(HostileArchive, IsNilWhereNoReasonIsAskedFor) {
    for (const Data& bytes : {multipliedLists(24, 2), Data(), Data(40, 0)})
        EXPECT_TRUE(NSKeyedUnarchiver::unarchiveObjectWithData(bytes).isNil()) << bytes.size();
}

} // namespace
