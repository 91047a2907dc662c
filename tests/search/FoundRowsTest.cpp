#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/preferences/PSSpecifier.h"
#include "search/IndexChild.h"
#include "search/Search.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"
#include "tests/tweak/Program.h"
#include "json/Json.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using platform::List;
using platform::Value;

/// The index of the sample device, and what the pages of the same show to somebody who opens them.
struct FoundRows : testing::Test {
    static const search::Index& index() {
        static const search::Index index = [] {
            search::IndexOrder order;
            order.root = LUMORA_TEST_ROOT;
            order.forPage = std::chrono::seconds(20); // sanitizers take their time
            order.bundle = std::filesystem::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle";
            auto made = search::makeIndex(order);
            EXPECT_TRUE(made && made.value().missing.empty());
            return made ? std::move(made).value().index : search::Index();
        }();
        return index;
    }
    static List listOf(const Value& value) { return value.list() ? *value.list() : List(); }
    static std::string textOf(const Value& value) { return std::string(value.text() ? *value.text() : ""); }

    /// Whether its own title finds the row of a page, among the first of those with the same title.
    static bool isFound(const std::string& title, const std::string& page, std::int64_t section, std::int64_t row) {
        for (const search::Hit& hit : search::find(index(), title, 50)) {
            const search::Entry& entry = index().entries()[hit.entry];
            if (index().pages()[entry.page].pageClass == page && entry.section == section &&
                static_cast<std::int64_t>(entry.row) == row)
                return !hit.similar;
        }
        return false;
    }
};

TEST_F(FoundRows, AreAllThatPagesShow) {
    const tests::PortsFolder ports;
    const tests::ServedPort tweak(lumora::portName(lumora::kRequestTweakSettings), [](auto&, auto, const auto&) {
        return platform::NSKeyedArchiver::archivedDataWithRootObject(platform::Dictionary());
    });
    std::set<std::string> pages;
    for (const search::Page& page : index().pages())
        pages.insert(page.pageClass);
    EXPECT_GE(pages.size(), 13U);
    for (const char* other : {"PSListItemsController", "NotesPage", "WeatherPage"})
        EXPECT_EQ(pages.erase(other), 1U) << other; // is made by a row alone
    std::size_t count = 0;
    const std::string program = std::string(LUMORA_BINARIES) + "/lumora-settings";
    for (const std::string& page : pages) {
        const tests::Finished shown =
            tests::run({program, "--root", std::string(LUMORA_TEST_ROOT), "--timeout", "60", "--rows", page});
        ASSERT_EQ(shown.status, 0) << shown.errors;
        const Value document = lumora::readJson(shown.output).value();
        const List rows = listOf(document["rows"]);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::int64_t cell = rows[i]["cell"].integer().value_or(-1);
            std::string title = textOf(rows[i]["name"]);
            if (title.empty()) title = textOf(rows[i]["placeholder"]);
            const bool isOfSlider = cell == platform::PSStaticTextCell && i + 1 < rows.size() &&
                                    rows[i + 1]["cell"] == Value(platform::PSSliderCell);
            if (cell == platform::PSGroupCell || title.empty()) continue;
            ++count;
            EXPECT_TRUE(isFound(title, page, -1, static_cast<std::int64_t>(isOfSlider ? i + 1 : i)))
                << page << ": " << title;
        }
        std::int64_t section = 0;
        for (const Value& each : listOf(document["sections"])) {
            std::int64_t row = 0;
            for (const Value& cellShown : listOf(each["rows"])) {
                EXPECT_TRUE(isFound(textOf(cellShown["title"]), page, section, row)) << page << ": " << row;
                ++row;
                ++count;
            }
            ++section;
        }
    }
    EXPECT_GT(count, 100U);
}

TEST_F(FoundRows, AreEachFoundByTheirOwnTitle) {
    for (const search::Entry& entry : index().entries())
        EXPECT_TRUE(isFound(entry.title, index().pages()[entry.page].pageClass, entry.section,
                            static_cast<std::int64_t>(entry.row)))
            << entry.title;
}

TEST_F(FoundRows, AreThoseOfPlugInsToo) {
    for (const auto& [title, page] : {std::pair("Sort By", "NotesPage"), {"Units", "WeatherPage"}}) {
        const auto found = search::find(index(), title, 1);
        ASSERT_EQ(found.size(), 1U) << title;
        EXPECT_EQ(index().pages()[index().entries()[found.front().entry].page].pageClass, page);
    }
}

TEST_F(FoundRows, AreThoseThatCouldBeChosenOnAnotherPage) {
    std::set<std::string> toChoose;
    std::set<std::string> chosen;
    for (const search::Entry& entry : index().entries()) {
        const std::string& page = index().pages()[entry.page].pageClass;
        if (page == "AppsListController") toChoose.insert(entry.identifier);
        if (page != "AUAppsListController") continue;
        chosen.insert(entry.identifier);
        EXPECT_EQ(entry.chosenBy, (std::vector<std::string>{"kAppsEnabled", "kAUAppsDisabled"}));
    }
    EXPECT_GE(chosen.size(), 25U);
    EXPECT_EQ(chosen, toChoose);
}

TEST_F(FoundRows, SayWhichSettingTheyShowAndWhetherItIsSecret) {
    for (const search::Entry& entry : index().entries()) {
        if (entry.key == "kAutoUnlockPasscode") {
            EXPECT_TRUE(entry.secure);
            EXPECT_EQ(entry.title, "Passcode");
        }
        EXPECT_TRUE(entry.key != "kAppIconOpacity" || entry.title == "Opacity (1.0)") << entry.title;
    }
    EXPECT_EQ(index().entries()[search::find(index(), "transparency", 1).front().entry].key, "kAppIconOpacity");
}

} // namespace
