#pragma once

#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"
#include "tweak/SettingsStore.h"

#include "platform/foundation/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace tests {

using namespace lumora;
using platform::Data;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class SettingsStoreTest : public testing::Test {
  protected:
    std::unique_ptr<SettingsStore> open() {
        auto opened = SettingsStore::open(sandbox.settings(), log);
        if (opened) return std::move(opened).value();
        failure = opened.error();
        return nullptr;
    }

    [[nodiscard]] Value onDisk() const {
        const auto read = platform::readPropertyList(bytesOf(readFile(sandbox.settings())));
        return read ? read.value() : Value();
    }

    [[nodiscard]] std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(sandbox.path()))
            names.insert(entry.path().filename());
        return names;
    }

    Sandbox sandbox;
    std::vector<std::string> lines;
    std::string failure;
    Log log = [this](const std::string& line) { lines.push_back(line); };
};

} // namespace tests
