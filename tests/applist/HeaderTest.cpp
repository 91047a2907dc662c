// Nothing goes before it: the header is to stand alone. OddAppList.c says the same for C.
#include "applist/AppList.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

TEST(TheHeader, IsPlainDataForAnyLanguage) {
    EXPECT_TRUE(std::is_standard_layout_v<ALApplicationListClass>);
    EXPECT_TRUE(std::is_trivial_v<ALApplicationListClass>);
    EXPECT_EQ(offsetof(ALApplicationListClass, version), 0);
}

} // namespace
