#include "Codec.h"
#include "RandomValue.h"
#include "RawList.h"

#include "tests/support/Process.h"

#include <limits>

namespace {

using namespace platform;

Data bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string inPlist(const std::string& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist SYSTEM "plist.dtd">
<plist version="1.0">)" +
           body + "</plist>\n";
}

Result<Value> readText(const std::string& document) {
    return readPropertyList(bytesOf(document));
}

TEST(PropertyList, ReadsBinaryNumbersOfEveryWidth) {
    RawList list(1);
    list.addList({1, 2, 3, 4, 5, 6, 7, 8, 9}).add({0x10, 0xFF}).add({0x11, 0xFF, 0xFF});
    list.add({0x12, 0xFF, 0xFF, 0xFF, 0xFF}).add({0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE});
    list.add({0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7});
    list.add({0x22, 0x3F, 0x00, 0, 0}).add({0x23, 0xBF, 0xF0, 0, 0, 0, 0, 0, 0});
    list.add({0x33, 0x40, 0, 0, 0, 0, 0, 0, 0}).add({0x08});
    EXPECT_EQ(valueOf(readPropertyList(list.bytes())),
              Value(List{255, 65535, std::int64_t{4294967295}, -2, 7, 0.5, -1.0, Date{2}, false}));
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
    for (const char* text : {"", "bplist", "bplist00 and then nothing of use in all of these bytes"})
        EXPECT_FALSE(readText(text)) << text;
    EXPECT_EQ(refusal(readText("{ old = style; }")), "neither a binary nor an XML property list");
    EXPECT_EQ(refusal(readPropertyList(RawList(1).add({0x00}).bytes())), "nil inside a property list");
}

TEST(PropertyList, IsReadInBothFormsAsPythonWritesIt) {
    const std::string script = R"(import datetime, plistlib, sys
print(plistlib.dumps({'b': True, 'i': -5, 'r': 0.1, 't': 'Gr\u00fc\u00dfe \U0001F600', 'd': b'hello',
                      'w': datetime.datetime(2001, 1, 2), 'l': [1, [], {}]},
                     fmt=plistlib.PlistFormat[sys.argv[1]], sort_keys=False).hex()))";
    for (const std::string form : {"FMT_BINARY", "FMT_XML"}) {
        const std::string hex = tests::Process({PYTHON, "-c", script, form}).read();
        Data bytes;
        for (std::size_t i = 0; i < hex.size(); i += 2)
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
        EXPECT_EQ(valueOf(readPropertyList(bytes)), Value(Dictionary{{"b", true},
                                                                     {"i", -5},
                                                                     {"r", 0.1},
                                                                     {"t", "Grüße 😀"},
                                                                     {"d", bytesOf("hello")},
                                                                     {"w", Date{86400}},
                                                                     {"l", List{1, List{}, Dictionary{}}}}))
            << form;
    }
}

TEST(PropertyList, KeepsRandomValues) {
    RandomValue random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    for (int i = 0; i < 1'000; ++i) {
        const Value value = random.next(4, false);
        const Data written = writePropertyList(value).value();
        const Value read = valueOf(readPropertyList(written));
        ASSERT_EQ(read, value) << description(value);
        ASSERT_EQ(writePropertyList(read).value(), written);
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
    const Value value = valueOf(readText(inPlist(R"(
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
</dict>)")));
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
        EXPECT_FALSE(readText(inPlist(body))) << body;
    for (const char* document : {"<dict/>", "<plist>", "<plist><string>\xFF</string></plist>"})
        EXPECT_FALSE(readText(document)) << document;
}

TEST(PropertyList, ReadsXmlUpToTheDepthThatIsAllowedAndNoFurther) {
    const auto refusalOf = [](std::size_t levels) {
        std::string opening;
        std::string closing;
        for (std::size_t i = 0; i < levels; ++i) {
            opening += "<array>";
            closing += "</array>";
        }
        return refusal(readText(inPlist(opening + "<string>ground</string>" + closing)));
    };
    EXPECT_EQ(refusalOf(PropertyListLimits::depth), "");
    EXPECT_EQ(refusalOf(PropertyListLimits::depth + 1), "nested too deeply");
    EXPECT_EQ(refusalOf(100'000), "nested too deeply");
}

} // namespace
