// The binary form, byte by byte: what is sound to the last bit, and why everything else is refused.

#include "Codec.h"
#include "Files.h"
#include "RawList.h"

#include <functional>
#include <limits>
#include <set>
#include <unordered_map>

namespace {

using namespace platform;

constexpr const char* cutShort = "a count is larger than the bytes that remain";

using ::refusal;
std::string refusal(const RawList& list, const RawTrailer& trailer = {}) {
    return refusal(readPropertyList(list.bytes(trailer)));
}
std::string refusal(std::initializer_list<int> object) {
    return refusal(RawList(1).add(object));
}

/// A sound archive of fewer than 256 objects, of which the table can be changed.
class Archive {
  public:
    explicit Archive(Data bytes) : bytes_(std::move(bytes)) {}

    [[nodiscard]] const Data& bytes() const { return bytes_; }
    [[nodiscard]] std::size_t count() const { return bytes_[bytes_.size() - 17]; }
    [[nodiscard]] std::size_t table() const { return number(bytes_.size() - 4, 4); }
    [[nodiscard]] std::size_t offset(std::size_t object) const { return number(place(object), width()); }
    void setOffset(std::size_t object, std::size_t offset) {
        for (std::size_t i = 0; i < width(); ++i)
            bytes_[place(object) + i] = static_cast<std::uint8_t>(offset >> (8 * (width() - 1 - i)));
    }
    std::uint8_t& byte(std::size_t offset) { return bytes_[offset]; }

  private:
    [[nodiscard]] std::size_t width() const { return bytes_[bytes_.size() - 26]; }
    [[nodiscard]] std::size_t place(std::size_t object) const { return table() + object * width(); }
    [[nodiscard]] std::size_t number(std::size_t at, std::size_t size) const {
        std::size_t number = 0;
        for (std::size_t i = 0; i < size; ++i)
            number = number << 8U | bytes_[at + i];
        return number;
    }

    Data bytes_;
};

TEST(BinaryForm, NeedsATrailerThatFitsTheBytes) {
    const RawList one = RawList(1).add({0x09}); // from the 8th byte to the 9th, where the table begins
    ASSERT_EQ(readPropertyList(one.bytes()).value(), Value(true));
    for (std::size_t size = 1; size <= 8; ++size) {
        EXPECT_EQ(refusal(one, {.offsetSize = size}), "") << size;
        EXPECT_EQ(refusal(one, {.referenceSize = size}), "") << size;
    }
    for (const std::size_t size : {0U, 9U, 255U}) {
        EXPECT_EQ(refusal(one, {.offsetSize = size}), "the trailer gives a size that no number has") << size;
        EXPECT_EQ(refusal(one, {.referenceSize = size}), "the trailer gives a size that no number has");
    }
    EXPECT_EQ(refusal(one, {.table = 7}), "the table of offsets lies outside the bytes");
    EXPECT_EQ(refusal(one, {.table = 8}), "an object lies outside the bytes");
    EXPECT_EQ(refusal(one, {.count = 0, .table = 10}), "there is no root object");
    EXPECT_EQ(refusal(one, {.count = 0, .table = 11}), "the table of offsets lies outside the bytes");
    EXPECT_EQ(refusal(one, {.count = 2}), "the table of offsets is longer than the bytes");
    EXPECT_EQ(refusal(one, {.offsetSize = 2, .count = 2}), "the table of offsets is longer than the bytes");
    EXPECT_EQ(refusal(one, {.root = 1}), "there is no root object");
    EXPECT_EQ(refusal(one, {.count = 0}), "there is no root object");
}

TEST(BinaryForm, NeedsItsMagicAndATrailer) {
    Data bytes = RawList(1).add({0x09}).bytes();
    bytes[7] = '1';
    EXPECT_EQ(refusal(readPropertyList(bytes)), "not a binary property list");
    Data shortest(40, 0);
    std::ranges::copy(std::string_view("bplist00"), shortest.begin());
    EXPECT_EQ(refusal(readPropertyList(shortest)), "the trailer gives a size that no number has");
    shortest.pop_back();
    EXPECT_EQ(refusal(readPropertyList(shortest)), "too short for a binary property list");
}

TEST(BinaryForm, HoldsItsObjectsAndNothingElse) {
    RawList list(1);
    list.addList({1, 2}).add({0x09}).addDictionary({{3, 4}, {5, 6}});
    list.add("k").add({0x10, 5}).add("l").add({0x10, 6});
    EXPECT_EQ(writePropertyList(List{true, Dictionary{{"k", 5}, {"l", 6}}}).value(), list.bytes());
}

TEST(BinaryForm, HoldsEachOfManyTextsOnce) {
    for (const std::size_t count : {100U, 130U, 400U, 2000U}) {
        List texts;
        for (std::size_t i = 0; i < 2 * count; ++i)
            texts.push_back("text " + std::to_string(i % count));
        const Data bytes = writePropertyList(texts).value();
        std::size_t objects = 0;
        for (std::size_t i = bytes.size() - 24; i < bytes.size() - 16; ++i)
            objects = objects << 8 | bytes[i];
        EXPECT_GE(objects, 1 + count);
        EXPECT_LE(objects, 1 + count + count / 100) << "a text that is hard to find may stand there twice";
    }
}

TEST(BinaryForm, TellsTextsApartThatHashAlike) {
    // The writer keeps 32 bits of a hash, and two of so many texts have the same.
    std::unordered_map<std::uint32_t, std::string> met;
    for (int i = 0; i < 1'000'000; ++i) {
        const std::string text = std::to_string(i);
        const auto [other, isNew] =
            met.try_emplace(static_cast<std::uint32_t>(std::hash<std::string_view>()(text)), text);
        if (isNew) continue;
        const Value value = List{other->second, text, other->second, text};
        EXPECT_EQ(readPropertyList(writePropertyList(value).value()).value(), value);
        return;
    }
    FAIL() << "no two texts hash alike";
}

TEST(BinaryForm, NeedsEachObjectBetweenTheMagicAndTheTable) {
    Archive list(RawList(1).addList({1, 2}).add({0x09}).add({0x08}).bytes());
    ASSERT_EQ(readPropertyList(list.bytes()).value(), Value(List{true, false}));
    for (const std::size_t offset : {std::size_t{0}, std::size_t{7}, list.table(), list.table() + 1}) {
        Archive changed = list;
        changed.setOffset(1, offset);
        EXPECT_EQ(refusal(readPropertyList(changed.bytes())), "an object lies outside the bytes") << offset;
    }
    list.setOffset(1, list.table() - 1);
    EXPECT_EQ(readPropertyList(list.bytes()).value(), Value(List{false, false}));
}

TEST(BinaryForm, RefusesMarkersThatMeanNothing) {
    for (const int marker : {0x01, 0x07, 0x0A, 0x0F, 0x70, 0x71, 0x90, 0x91, 0xE0, 0xE1, 0xF0, 0xF1})
        EXPECT_EQ(refusal({marker, 0, 0, 0, 0, 0, 0, 0, 0, 0}), "an object of an unknown kind") << marker;

    for (const auto& [why, markers] : {std::pair("an integer of an unknown size", std::vector{0x15, 0x1F}),
                                       {"a real of an unknown size", {0x20, 0x21, 0x24, 0x25}},
                                       {"a date of an unknown size", {0x30, 0x32, 0x34}},
                                       {"a UID of an unknown size", {0x84, 0x8F}},
                                       {"a UID outside a keyed archive", {0x83}}})
        for (const int marker : markers)
            EXPECT_EQ(refusal(RawList(1).add({marker}).add(std::string(100, 'x'))), why) << marker;
}

TEST(BinaryForm, RefusesNumbersThatAreCutShort) {
    for (const auto& [marker, size] :
         {std::pair(0x10, 1), std::pair(0x11, 2), std::pair(0x12, 4), std::pair(0x13, 8), std::pair(0x14, 16),
          std::pair(0x22, 4), std::pair(0x23, 8), std::pair(0x33, 8), std::pair(0x80, 1), std::pair(0x83, 4)}) {
        RawList list(1);
        list.add({marker});
        for (int i = 1; i < size; ++i)
            list.appendByte(0);
        EXPECT_EQ(refusal(list), "a number is cut short") << marker;
        list.appendByte(0);
        EXPECT_EQ(refusal(list), marker < 0x80 ? "" : "a UID outside a keyed archive") << marker;
    }
}

TEST(BinaryForm, RefusesUnsoundCounts) {
    EXPECT_EQ(refusal({0x5F}), "a count that is no integer");
    EXPECT_EQ(refusal({0x5F, 0x20, 1, 'x'}), "a count that is no integer");
    EXPECT_EQ(refusal({0x5F, 0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 'x'}), "a count that is no integer");
    EXPECT_EQ(refusal({0x5F, 0x10}), "a count is cut short");
    EXPECT_EQ(refusal({0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0}), "a count is cut short");
    EXPECT_EQ(refusal({0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0, 1}), cutShort);
    EXPECT_EQ(refusal({0x5F, 0x10, 1}), cutShort);
    EXPECT_EQ(refusal({0x5F, 0x10, 2, 'x'}), cutShort);
    EXPECT_EQ(refusal({0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0, 4, 'x', 'y', 'z'}), cutShort);
    EXPECT_EQ(readPropertyList(RawList(1).add({0x5F, 0x10, 0}).bytes()).value(), Value(""));
    EXPECT_EQ(readPropertyList(RawList(1).add({0x5F, 0x10, 1, 'x'}).bytes()).value(), Value("x"));
    EXPECT_EQ(readPropertyList(RawList(1).add({0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0, 1, 'x'}).bytes()).value(), Value("x"));
}

TEST(BinaryForm, RefusesContentsThatAreCutShort) {
    EXPECT_EQ(refusal({0x42, 0}), cutShort);
    EXPECT_EQ(refusal({0x52, 'h'}), cutShort);
    EXPECT_EQ(refusal({0x62, 0, 'h', 0}), cutShort);
    EXPECT_EQ(refusal({0xA1}), cutShort);
    EXPECT_EQ(refusal({0xD1, 0}), cutShort);
}

TEST(BinaryForm, ReadsIntegersOfSixteenBytesThatFitIntoEight) {
    const auto read = [](int upper, int eighth, int ninth, int lower) {
        RawList list(1);
        list.add({0x14});
        for (int i = 0; i < 16; ++i)
            list.appendByte(i < 7 ? upper : i == 7 ? eighth : i == 8 ? ninth : lower);
        return readPropertyList(list.bytes());
    };
    EXPECT_EQ(read(0xFF, 0xFF, 0xFF, 0xFF).value(), Value(-1));
    EXPECT_EQ(read(0, 0, 0x7F, 0xFF).value(), Value(std::numeric_limits<std::int64_t>::max()));
    for (const auto& tooLarge :
         {read(0, 0, 0x80, 0), read(0, 0, 0xFF, 0xFF), read(0, 1, 0, 0), read(0xFF, 0xFF, 0x7F, 0xFF)})
        EXPECT_EQ(refusal(tooLarge), "an integer needs more than 64 bits");
}

TEST(BinaryForm, TellsHowManyReferencesItFollowed) {
    std::size_t visits = 7;
    ASSERT_TRUE(
        readPropertyList(RawList(1).addList({1, 2}).add({0x09}).addDictionary({{3, 1}}).add("k").bytes(), &visits));
    EXPECT_EQ(visits, 4U);
    const std::string_view xml = "<plist><true/></plist>";
    ASSERT_TRUE(readPropertyList(Data(xml.begin(), xml.end()), &visits));
    EXPECT_EQ(visits, 0U) << "which the other form has none of";
}

TEST(BinaryForm, HasNoReferenceThatCountsOnlyByItsLowerHalf) {
    const auto list = [](int upper) { return RawList(8).add({0xA1, 0, 0, 0, upper, 0, 0, 0, 1}).add("entry"); };
    EXPECT_EQ(readPropertyList(list(0).bytes()).value(), Value(List{"entry"}));
    EXPECT_EQ(refusal(list(1)), "a reference to an object that is not there");
}

TEST(BinaryForm, RefusesAKeyThatIsUnsound) {
    EXPECT_EQ(refusal(RawList(1).addDictionary({{7, 1}}).add({0x09})), "a reference to an object that is not there");
    EXPECT_EQ(refusal(RawList(1).addDictionary({{1, 2}}).add({0x52, 'k', 0xFF}).add({0x09})),
              "an ASCII text holds other bytes");
    EXPECT_EQ(refusal(RawList(1).addDictionary({{1, 1}}).add({0x10, 1})), "a dictionary key that is no text");
    EXPECT_EQ(refusal(RawList(1).addDictionary({{1, 7}}).add("k")), "a reference to an object that is not there");
}

TEST(BinaryForm, OfAnArchiveIsReadOnlyIfEveryObjectInUseIsSound) {
    for (const auto& file : filesIn(testData("archives"), ".bplist")) {
        const Archive archive(readFile(file));
        const Value value = NSKeyedUnarchiver::unarchiveObjectWithData(archive.bytes());
        const auto letter =
            std::find(archive.bytes().begin() + 8, archive.bytes().end(), 's') - archive.bytes().begin();
        ASSERT_LT(letter, std::ptrdiff_t(archive.table())) << "0x73, a marker of no kind";
        std::size_t refused = 0;
        std::size_t nameless = 0;
        for (std::size_t object = 0; object < archive.count(); ++object) {
            Archive changed = archive;
            changed.setOffset(object, std::size_t(letter));
            const auto read = NSKeyedUnarchiver::unarchive(changed.bytes());
            if (read) {
                ASSERT_EQ(read.value(), value) << file << ", object " << object;
            } else if (read.error() == "not a keyed archive") {
                ++nameless;
            } else {
                ASSERT_EQ(read.error(), "an object of an unknown kind") << file << ", object " << object;
                ++refused;
            }
        }
        EXPECT_EQ(nameless, 1U) << "the name of the archiver";
        EXPECT_GE(refused, archive.count() - 8) << "the version, $null, and the names of base classes are of no use";
    }
}

TEST(BinaryForm, OfAnArchiveNumbersOnlyObjectsThatAreThere) {
    const Value some = Dictionary{{"list", List{1, "text", Date{2}}}, {"empty", List{}}};
    for (const Value& value : {Value(), Value(1), some, Value(List{some, Value(), some})}) {
        const Archive archive(archived(value));
        std::set<std::size_t> offsets;
        for (std::size_t object = 0; object < archive.count(); ++object)
            offsets.insert(archive.offset(object));
        EXPECT_EQ(offsets.size(), archive.count());
        EXPECT_EQ(*offsets.begin(), 8U);
        EXPECT_LT(*offsets.rbegin(), archive.table());
    }
}

TEST(BinaryForm, OfAnArchiveHasEachNameOnce) {
    const Data bytes = archived(List{List{}, List{}, Dictionary{{"k", Date{1}}}});
    const std::string_view characters(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const std::string_view name : {"NS.objects", "NS.keys", "NS.time", "$classname", "$classes", "NSObject"}) {
        ASSERT_NE(characters.find(name), std::string_view::npos) << name;
        EXPECT_EQ(characters.find(name), characters.rfind(name)) << name;
    }
}

TEST(BinaryForm, OfAnArchiveFollowsNoReferenceTwice) {
    std::size_t visits = 0;
    ASSERT_TRUE(NSKeyedUnarchiver::unarchive(archived(List{1, Value()}), &visits));
    // The archive's four fields and $top's one, the root; the list's two fields and its class; the class's two fields,
    // of which the first names it; two entries, of which one is nil.
    EXPECT_EQ(visits, 4U * 2 + 2 + 1 + 2 * 2 + 1 + 2 * 2 + 2 + 1);
}

TEST(BinaryForm, OfAnArchiveHasNoUidBeyondItsObjects) {
    const Archive archive(archived(List{1, Value()}));
    constexpr std::uint8_t objects = 4; // "$null", the list, 1, and the class
    std::size_t uids = 0;
    for (std::size_t object = 0; object < archive.count(); ++object) {
        Archive changed = archive;
        const std::size_t at = archive.offset(object);
        if (changed.byte(at) != 0x80) continue;
        ++uids;
        changed.byte(at + 1) = objects;
        EXPECT_EQ(refusal(NSKeyedUnarchiver::unarchive(changed.bytes())), "a UID beyond $objects");
        changed.byte(at + 1) = objects - 1;
        EXPECT_NE(refusal(NSKeyedUnarchiver::unarchive(changed.bytes())), "a UID beyond $objects");
    }
    EXPECT_EQ(uids, objects);
}

} // namespace
