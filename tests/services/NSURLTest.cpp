#include "platform/services/NSURL.h"

#include <gtest/gtest.h>

namespace {

using platform::NSURL;

TEST(NSURL, KeepsAnAddressAsItIsAndKnowsItsScheme) {
    const auto url = NSURL::URLWithString("Twitter://user?screen_name=nevo_lumora");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->absoluteString(), "Twitter://user?screen_name=nevo_lumora");
    EXPECT_EQ(url->scheme(), "twitter");
}

TEST(NSURL, IsNothingForWhatIsNoAddress) {
    for (const char* text : {"", "nowhere", "//user", ":", "1a://user", "a b://user", "twitter://us er",
                             "twitter://\xc3\xbc", "twitter://<>", "a://[::1"})
        EXPECT_FALSE(NSURL::URLWithString(text)) << text;
    EXPECT_FALSE(NSURL::URLWithString(std::string("twitter://user\0x", 16)));
}

} // namespace
