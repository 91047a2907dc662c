// Archives as other implementations like to lay them out, read by us.

#include "Exchange.h"
#include "Form.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gtest/gtest.h>

namespace {

using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedUnarchiver;
using platform::Value;
using tests::form;
using tests::Peer;

/// What we read from what a peer answers.
std::string read(const std::string& answer) {
    const auto archive = tests::bytesOf(answer);
    if (!archive) return answer;
    const auto value = NSKeyedUnarchiver::unarchive(*archive);
    return value ? tests::form(value.value()) : "! " + value.error();
}

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
    const Value value = List{Date{0}, Date{-1.5}, Date{2147483647}, Date{86400.25}, platform::Data{1, 2}};
    EXPECT_EQ(read(Peer("libplist", {"write", "inline"}).ask(form(value))), form(value));
    EXPECT_EQ(read(Peer("plistlib", {"write", "inline"}).ask(form(value))), form(value));
}

/// An object that no form describes, as GNUstep archives it.
std::string readSample(const std::string& name) {
    return read(Peer("gnustep", {"sample"}).ask(name));
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

// An integer beyond 63 bits is no value. Python writes it in 16 bytes, which are refused; the others in 8, where it
// cannot be told from a negative one.
TEST(InteropStyles, AnIntegerBeyondSixtyThreeBitsIsRefusedWhereItCanBeTold) {
    for (const std::string integer : {"i9223372036854775808", "i18446744073709551615"}) {
        EXPECT_EQ(read(Peer("plistlib", {"write"}).ask(integer)), "! an integer needs more than 64 bits");
        const auto wrapped = static_cast<std::int64_t>(std::stoull(integer.substr(1)));
        EXPECT_EQ(read(Peer("libplist", {"write"}).ask(integer)), form(wrapped));
        EXPECT_EQ(read(Peer("gnustep", {"write"}).ask(integer)), form(wrapped));
    }
}

} // namespace
