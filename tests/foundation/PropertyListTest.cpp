#include "RandomValue.h"
#include "RawList.h"

#include "platform/foundation/PropertyList.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::PropertyListLimits;
using platform::readPropertyList;
using platform::Value;
using platform::writePropertyList;

Data bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string inPlist(const std::string& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist SYSTEM "plist.dtd">
<plist version="1.0">)" +
           body + "</plist>\n";
}

Value readXml(const std::string& body) {
    auto value = readPropertyList(bytesOf(inPlist(body)));
    EXPECT_TRUE(value) << value.error();
    return value ? value.value() : Value();
}

std::string refusal(const std::string& document) {
    const auto value = readPropertyList(bytesOf(document));
    return value ? "" : value.error();
}

TEST(PropertyList, ReadsBinaryNumbersOfEveryWidth) {
    const auto value = readPropertyList(RawList(1)
                                            .addList({1, 2, 3, 4, 5, 6, 7, 8, 9})
                                            .add({0x10, 0xFF})
                                            .add({0x11, 0xFF, 0xFF})
                                            .add({0x12, 0xFF, 0xFF, 0xFF, 0xFF})
                                            .add({0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE})
                                            .add({0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7})
                                            .add({0x22, 0x3F, 0x00, 0, 0})
                                            .add({0x23, 0xBF, 0xF0, 0, 0, 0, 0, 0, 0})
                                            .add({0x33, 0x40, 0, 0, 0, 0, 0, 0, 0})
                                            .add({0x08})
                                            .bytes());
    ASSERT_TRUE(value) << value.error();
    EXPECT_EQ(value.value(), Value(List{255, 65535, std::int64_t{4294967295}, -2, 7, 0.5, -1.0, Date{2}, false}));
}

TEST(PropertyList, RefusesIntegersThatNoValueHolds) {
    EXPECT_EQ(
        readPropertyList(RawList(1).add({0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0}).bytes()).error(),
        "an integer needs more than 64 bits");
    EXPECT_EQ(readPropertyList(RawList(1).add({0x14, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}).bytes()).error(),
              "an integer needs more than 64 bits");
}

TEST(PropertyList, ReadsTextsOfBothEncodings) {
    const auto text = [](std::initializer_list<int> object) {
        return readPropertyList(RawList(1).add(object).bytes()).value();
    };
    EXPECT_EQ(text({0x52, 'h', 'i'}), Value("hi"));
    EXPECT_EQ(text({0x62, 0x00, 0xFC, 0x67, 0x2C}), Value("ü本"));
    EXPECT_EQ(text({0x62, 0xD8, 0x3D, 0xDE, 0x00}), Value("😀"));
    // Surrogates without their other half.
    EXPECT_EQ(text({0x61, 0xD8, 0x3D}), Value("\uFFFD"));
    EXPECT_EQ(text({0x62, 0xD8, 0x3D, 0x00, 0x61}), Value("\uFFFDa"));
    EXPECT_EQ(text({0x62, 0xDE, 0x00, 0xD8, 0x3D}), Value("\uFFFD\uFFFD"));
    EXPECT_EQ(readPropertyList(RawList(1).add({0x52, 'h', 0xFC}).bytes()).error(), "an ASCII text holds other bytes");
}

TEST(PropertyList, ReadsSetsAsLists) {
    EXPECT_EQ(readPropertyList(RawList(1).add({0xC1, 1}).add("x").bytes()).value(), Value(List{"x"}));
    EXPECT_EQ(readPropertyList(RawList(1).add({0xB1, 1}).add("x").bytes()).value(), Value(List{"x"}));
}

TEST(PropertyList, RefusesWhatIsNoPropertyList) {
    EXPECT_FALSE(refusal("").empty());
    EXPECT_FALSE(refusal("bplist").empty());
    EXPECT_FALSE(refusal("bplist00 and then nothing of use in all of these bytes").empty());
    EXPECT_EQ(refusal("{ old = style; }"), "neither a binary nor an XML property list");
    EXPECT_EQ(readPropertyList(RawList(1).add({0x00}).bytes()).error(), "nil inside a property list");
    EXPECT_EQ(readPropertyList(RawList(1).add({0x80, 1}).bytes()).error(), "a UID outside a keyed archive");
    EXPECT_EQ(readPropertyList(RawList(1).addDictionary({{1, 1}}).add({0x10, 1}).bytes()).error(),
              "a dictionary key that is no text");
    for (const int marker : {0x01, 0x0F, 0x15, 0x21, 0x24, 0x32, 0x71, 0x84, 0x91, 0xE1, 0xF1})
        EXPECT_FALSE(readPropertyList(RawList(1).add({marker, 0, 0, 0, 0, 0, 0, 0, 0}).bytes())) << marker;
}

TEST(PropertyList, KeepsRandomValues) {
    RandomValue random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    for (int i = 0; i < 5'000; ++i) {
        const Value value = random.next(4, false);
        const auto written = writePropertyList(value);
        ASSERT_TRUE(written) << written.error();
        const auto read = readPropertyList(written.value());
        ASSERT_TRUE(read) << read.error();
        ASSERT_EQ(read.value(), value) << description(value);
        ASSERT_EQ(writePropertyList(read.value()).value(), written.value());
    }
}

TEST(PropertyList, IsNotWrittenForNil) {
    EXPECT_EQ(writePropertyList(Value()).error(), "nil inside a property list");
    EXPECT_EQ(writePropertyList(List{1, Value()}).error(), "nil inside a property list");
}

TEST(PropertyList, IsWrittenWithAsManyEntriesAsAreAllowedAndNoMore) {
    constexpr std::size_t size = 2047;
    std::vector<Dictionary::Entry> entries;
    for (std::size_t i = 0; i < size; ++i)
        entries.emplace_back(std::to_string(i), "x");
    List list(1024, Value(Dictionary(std::move(entries))));
    // A dictionary is an entry, and each of its keys and values is.
    const std::size_t known = list.size() * (1 + 2 * size);
    list.insert(list.begin(), PropertyListLimits::writtenValues - known, Value("x"));
    EXPECT_TRUE(writePropertyList(list));
    list.insert(list.begin(), "x");
    EXPECT_EQ(writePropertyList(list).error(), "too large a value");
}

TEST(PropertyList, ReadsEveryElementOfXml) {
    const Value value = readXml(R"(
<dict>
  <key>CFBundleIdentifier</key> <string>com.example &amp; &#252;</string>
  <key>empty</key> <string/>
  <key>spaced</key> <string> kept as it is </string>
  <key>cdata</key> <string><![CDATA[<raw>]]></string>
  <!-- a comment -->
  <key>yes</key> <true/>
  <key>no</key> <false/>
  <key>integer</key> <integer> -42 </integer>
  <key>hexadecimal</key> <integer>0xff</integer>
  <key>positive</key> <integer>+7</integer>
  <key>real</key> <real>2.5e-1</real>
  <key>infinity</key> <real>-infinity</real>
  <key>date</key> <date>2001-01-02T00:00:01Z</date>
  <key>data</key> <data> aGVs
     bG8= </data>
  <key>list</key> <array> <integer>1</integer> <array/> <dict/> </array>
</dict>)");
    EXPECT_EQ(value, Value(Dictionary{{"CFBundleIdentifier", "com.example & ü"},
                                      {"empty", ""},
                                      {"spaced", " kept as it is "},
                                      {"cdata", "<raw>"},
                                      {"yes", true},
                                      {"no", false},
                                      {"integer", -42},
                                      {"hexadecimal", 255},
                                      {"positive", 7},
                                      {"real", 0.25},
                                      {"infinity", -std::numeric_limits<double>::infinity()},
                                      {"date", Date{86401}},
                                      {"data", bytesOf("hello")},
                                      {"list", List{1, List{}, Dictionary{}}}}));
    EXPECT_EQ(value.dictionary()->begin()->first, "CFBundleIdentifier");
}

TEST(PropertyList, RefusesUnsoundXml) {
    for (const char* body : {"",
                             "<string>one</string><string>two</string>",
                             "<unknown/>",
                             "<dict><string>no key</string></dict>",
                             "<dict><key>a</key></dict>",
                             "<dict><key>a</key><key>b</key></dict>",
                             "<array><key>a</key></array>",
                             "<key>a</key>",
                             "<integer></integer>",
                             "<integer>1x</integer>",
                             "<integer>+-1</integer>",
                             "<integer>0x-1</integer>",
                             "<integer>9223372036854775808</integer>",
                             "<real>one</real>",
                             "<date>yesterday</date>",
                             "<date>2001-13-01T00:00:00Z</date>",
                             "<data>a*b</data>",
                             "<string><true/></string>",
                             "<plist/>",
                             "<array>stray</array>",
                             "<string>unclosed"})
        EXPECT_FALSE(refusal(inPlist(body)).empty()) << body;
    EXPECT_FALSE(refusal("<dict/>").empty());
    EXPECT_FALSE(refusal("<plist>").empty());
    EXPECT_FALSE(refusal("<plist><string>\xFF</string></plist>").empty());
}

TEST(PropertyList, ReadsXmlUpToTheDepthThatIsAllowedAndNoFurther) {
    const auto tower = [](std::size_t levels) {
        std::string text;
        for (std::size_t i = 0; i < levels; ++i)
            text += "<array>";
        text += "<string>ground</string>";
        for (std::size_t i = 0; i < levels; ++i)
            text += "</array>";
        return text;
    };
    const Value value = readXml(tower(PropertyListLimits::depth));
    EXPECT_TRUE(writePropertyList(value));
    EXPECT_EQ(refusal(inPlist(tower(PropertyListLimits::depth + 1))), "nested too deeply");
    EXPECT_EQ(refusal(inPlist(tower(100'000))), "nested too deeply");
}

} // namespace
