#pragma once

// lumoractl as people call it.

#include "tests/tweak/Program.h"

#include "json/Json.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tests {

inline Finished lumoractl(std::vector<std::string> words, const std::string& input = {}) {
    words.insert(words.begin(), LUMORACTL);
    return run(std::move(words), input);
}

/// Of a script, in which it is called "$0".
inline Finished shell(const std::string& script) {
    return run({"/bin/sh", "-c", script, LUMORACTL});
}

/// What it prints, read again.
inline platform::Value parsed(const std::string& json) {
    const auto value = lumora::readJson(json);
    EXPECT_TRUE(value) << json << ": " << value.error();
    return value ? value.value() : platform::Value();
}

} // namespace tests
