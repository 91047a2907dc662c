// Archives as other implementations like to lay them out, read by us.

#include "Exchange.h"
#include "Form.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using tests::form;
using tests::formOfArchive;
using tests::Peer;

using Arguments = std::vector<std::string>; ///< a peer's name, then its styles

class InteropStyle : public testing::TestWithParam<Arguments> {};

TEST_P(InteropStyle, IsRead) {
    Arguments arguments = GetParam();
    const std::string peer = arguments.front();
    arguments.front() = "write";
    tests::exchangeRandomValues(peer, arguments, tests::Run::values / 4);
}

INSTANTIATE_TEST_SUITE_P(Peers, InteropStyle,
                         testing::Values(Arguments{"gnustep", "mutable"}, Arguments{"plistlib", "sorted"},
                                         Arguments{"plistlib", "unshared"}, Arguments{"plistlib", "reversed"},
                                         Arguments{"plistlib", "mutable"},
                                         Arguments{"plistlib", "mutable", "reversed", "sorted", "unshared"}),
                         [](const auto& instance) {
                             std::string name;
                             for (const std::string& argument : instance.param)
                                 name += (name.empty() ? "" : "_") + argument;
                             return name;
                         });

TEST(InteropStyles, ADateAmongTheObjectsIsRead) {
    // Those of libplist count whole seconds in 32 bits and millionths.
    const Value value = List{Date{0}, Date{-1.5}, Date{2147483647}, Date{86400.25}, Data{1, 2}};
    EXPECT_EQ(formOfArchive(Peer("libplist", {"write", "inline"}).ask(form(value))), form(value));
    EXPECT_EQ(formOfArchive(Peer("plistlib", {"write", "inline"}).ask(form(value))), form(value));
}

/// An object that no form describes, as GNUstep archives it.
std::string readSample(const std::string& name) {
    return formOfArchive(Peer("gnustep", {"sample"}).ask(name));
}

TEST(InteropStyles, NumbersOfEverySizeAreIntegersAndReals) {
    EXPECT_EQ(readSample("char"), form(-5));
    EXPECT_EQ(readSample("unsigned char"), form(200));
    EXPECT_EQ(readSample("short"), form(-300));
    EXPECT_EQ(readSample("unsigned int"), form(std::int64_t{4294967295}));
    EXPECT_EQ(readSample("float"), form(double{0.1F}));
}

TEST(InteropStyles, ATextOfAnUnknownClassIsAText) {
    EXPECT_EQ(readSample("text subclass"), form("Caption"));
}

TEST(InteropStyles, ASharedListIsReadWhereverItStands) {
    const Value shared = List{"one", 2};
    EXPECT_EQ(readSample("shared list"), form(List{shared, shared, shared}));
}

TEST(InteropStyles, ObjectsThatNoValueHoldsAreRefused) {
    for (const std::string name : {"decimal", "set", "address"})
        EXPECT_EQ(readSample(name), "! an archived object of an unknown class") << name;
}

// An integer beyond 63 bits is no value. Written in 16 bytes, it is refused; in 8, it cannot be told from a negative
// one. Python takes 16, GNUstep 8; libplist 8 until 2.2, and 16 since then.
TEST(InteropStyles, AnIntegerBeyondSixtyThreeBitsIsRefusedWhereItCanBeTold) {
    for (const auto& [integer, bits] :
         {std::pair("i9223372036854775808", "8000000000000000"), {"i18446744073709551615", "ffffffffffffffff"}}) {
        for (const std::string peer : {"plistlib", "libplist", "gnustep"}) {
            const std::string archive = Peer(peer, {"write"}).ask(integer);
            const bool inSixteen = archive.find(std::string("140000000000000000") + bits) != std::string::npos;
            const bool inEight = archive.find(std::string("13") + bits) != std::string::npos;
            const auto negative = static_cast<std::int64_t>(std::stoull(bits, nullptr, 16));
            EXPECT_NE(inSixteen, inEight) << peer << ": " << archive;
            EXPECT_EQ(formOfArchive(archive), inSixteen ? "! an integer needs more than 64 bits" : form(negative))
                << peer;
            if (peer != "libplist") {
                EXPECT_EQ(inSixteen, peer == "plistlib") << archive;
            }
        }
    }
}

} // namespace
