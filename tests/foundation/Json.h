#pragma once

#include "platform/foundation/Value.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

/// Kinds and all: a boolean is no number, an integer no real.
inline void expectSame(const platform::Value& value, const Json& json, const std::string& where) {
    SCOPED_TRACE(where);
    switch (json.type()) {
    case Json::value_t::null:
        EXPECT_TRUE(value.isNil());
        return;
    case Json::value_t::boolean:
        EXPECT_EQ(value.boolean(), json.get<bool>());
        return;
    case Json::value_t::number_unsigned:
    case Json::value_t::number_integer:
        EXPECT_EQ(value.integer(), json.get<std::int64_t>());
        return;
    case Json::value_t::number_float:
        EXPECT_EQ(value.real(), json.get<double>());
        return;
    case Json::value_t::string:
        ASSERT_NE(value.text(), nullptr);
        EXPECT_EQ(*value.text(), json.get<std::string>());
        return;
    case Json::value_t::array:
        ASSERT_NE(value.list(), nullptr);
        ASSERT_EQ(value.list()->size(), json.size());
        for (std::size_t i = 0; i < json.size(); ++i)
            expectSame((*value.list())[i], json[i], where + "/" + std::to_string(i));
        return;
    case Json::value_t::object:
        ASSERT_NE(value.dictionary(), nullptr);
        ASSERT_EQ(value.dictionary()->size(), json.size());
        for (const auto& [key, entry] : json.items()) {
            ASSERT_TRUE(value.dictionary()->contains(key)) << key;
            expectSame(value[key], entry, where + "/" + key);
        }
        return;
    default:
        FAIL() << "JSON of an unexpected kind";
    }
}
