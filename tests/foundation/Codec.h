#pragma once

#include "platform/foundation/NSKeyedArchiver.h"

#include <gtest/gtest.h>

#include <string>

/// What was read; the test fails when nothing was.
inline platform::Value valueOf(const platform::Result<platform::Value>& read) {
    EXPECT_TRUE(read) << read.error();
    return read ? read.value() : platform::Value();
}

/// Why nothing was read; empty when something was.
inline std::string refusal(const platform::Result<platform::Value>& read) {
    return read ? "" : read.error();
}

inline platform::Data archived(const platform::Value& value) {
    const auto archive = platform::NSKeyedArchiver::archivedDataWithRootObject(value);
    EXPECT_TRUE(archive);
    return archive.value_or(platform::Data());
}
