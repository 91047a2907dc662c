#pragma once

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSSpecifier.h"
#include "settings/host/Navigation.h"
#include "tests/pages/RecordingTweak.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace tests {

using namespace settings;

/// The pages of the real bundle, with the samples of the device root that the build makes.
class TreeTest : public testing::Test {
  protected:
    TreeTest() {
        RecordingTweak::shared();
        platform::setDeviceRoot(LUMORA_TEST_ROOT);
        const auto bundle =
            platform::NSBundle::bundleWithPath(LUMORA_TEST_ROOT "/Library/PreferenceBundles/Lumora.bundle");
        EXPECT_TRUE(bundle && bundle->load());
        EXPECT_TRUE(navigation.open(bundle->principalClass(), "Lumora"));
    }

    const PageSnapshot& top() const { return *shown.pages.back(); }
    /// The rows of the page on top that open another one.
    std::vector<std::size_t> links() const {
        std::vector<std::size_t> found;
        for (std::size_t row = 0; row < top().rows.size(); ++row)
            if (!top().rows[row].detail.empty()) found.push_back(row);
        return found;
    }
    /// Opens every page that can be reached from the one on top, calls back with each, and goes back.
    void visit(const std::function<void()>& opened) {
        for (const std::size_t row : links()) {
            const RowSnapshot link = top().rows[row];
            const std::size_t depth = shown.pages.size();
            navigation.handle(top().id, RowTapped{row});
            ASSERT_EQ(shown.pages.size(), depth + 1) << link.name << " opens nothing";
            EXPECT_EQ(top().className, link.detail);
            opened();
            visit(opened);
            navigation.back(top().id);
            ASSERT_EQ(shown.pages.size(), depth);
        }
    }

    void goBack(std::size_t pages) {
        for (; pages > 0; --pages)
            navigation.back(top().id);
    }
    /// Taps these links, each on the page that the one before has opened.
    void follow(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            const auto row = std::ranges::find_if(
                top().rows, [&](const RowSnapshot& each) { return each.name == name && !each.detail.empty(); });
            ASSERT_NE(row, top().rows.end()) << "no link to " << name;
            navigation.handle(top().id, RowTapped{std::size_t(row - top().rows.begin())});
        }
    }
    /// The second time, the pages have what the tweak answers now, whatever this process knew before.
    void followTwice(const std::vector<std::string>& names) {
        follow(names);
        ASSERT_TRUE(platform::dispatch_wait_until_idle(kLongEnough));
        goBack(names.size());
        follow(names);
    }
    std::size_t rowOf(const std::string& identifier) const {
        const auto row = std::ranges::find(top().rows, identifier, &RowSnapshot::identifier);
        EXPECT_NE(row, top().rows.end()) << identifier;
        return std::size_t(row - top().rows.begin());
    }
    /// The first section of the list on top.
    std::vector<std::string> enabled() const {
        std::vector<std::string> identifiers;
        for (const auto& [path, cell] : top().table->cells)
            if (path.section == 0) identifiers.push_back(cell.identifier);
        return identifiers;
    }

    StackSnapshot shown;
    Navigation navigation{[this](StackSnapshot stack) { shown = std::move(stack); }};
};

} // namespace tests
