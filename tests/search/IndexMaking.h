#pragma once

#include "search/IndexChild.h"
#include "search/Search.h"
#include "tests/lists/PluginFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace tests {

/// Has the program make an index of the bundle's pages, with the plug-ins of a device root of its own.
class IndexMaking {
  public:
    [[nodiscard]] search::IndexOrder order() const {
        search::IndexOrder order;
        order.root = plugins.root();
        order.forPage = std::chrono::seconds(20); // sanitizers take their time
        order.forAll = std::chrono::seconds(200);
        order.bundle = std::filesystem::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle";
        return order;
    }
    [[nodiscard]] search::MadeIndex made(const search::IndexOrder& order) const {
        auto made = search::makeIndex(order);
        if (!made) ADD_FAILURE() << made.error();
        return made ? std::move(made).value() : search::MadeIndex();
    }
    [[nodiscard]] search::MadeIndex made() const { return made(order()); }

    /// Whether a row of that title is found first.
    [[nodiscard]] static bool has(const search::Index& index, const std::string& title) {
        const auto found = search::find(index, title, 1);
        return !found.empty() && index.entries()[found.front().entry].title == title;
    }

    PluginFolder plugins;
};

} // namespace tests
