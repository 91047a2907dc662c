#pragma once

#include "link/SettingsSession.h"
#include "platform/preferences/PSListController.h"
#include "tests/pages/RecordingTweak.h"
#include "tests/support/Deadline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace tests {

/// The row that edits a key, null when the page has none.
inline platform::PSSpecifierRef rowOf(platform::PSListController& page, const std::string& key) {
    for (const auto& row : *page.specifiers())
        if (row->identifier() == key) return row;
    return nullptr;
}

/// Has the tweak answer with these settings from now on, and the classes hold them already: a class's dictionary lives
/// as long as the process, so that only the first instance would wait for them.
template<class... Class>
void giveSettings(platform::Value settings) {
    RecordingTweak::waitUntilIdle(); // for what an earlier test has sent
    RecordingTweak::shared().setSettings(std::move(settings));
    const Deadline deadline("the settings of a class");
    (lumora::sessionOf<Class>().start(), ...);
    RecordingTweak::waitUntilIdle();
}

/// Opens a page with these settings at the tweak, and waits until its own request has been answered: the class's
/// dictionary lives as long as the process, and a reply that lands late would undo what a test has changed. A message
/// that takes more than a second is dropped, as it has to be; the page is opened once more then.
template<class Page>
std::shared_ptr<Page> openPage(platform::Dictionary settings = {}) {
    static int openings = 0;
    settings.set("opening", ++openings);
    RecordingTweak::waitUntilIdle(); // for what an earlier test has sent
    RecordingTweak::shared().setSettings(settings);
    const auto probe = platform::PSSpecifier::preferenceSpecifierNamed("", nullptr, nullptr, nullptr, {},
                                                                       platform::PSSwitchCell, false);
    probe->setIdentifier("opening");
    const Deadline deadline("the settings of a page that opens");
    while (true) {
        auto page = platform::make<Page>();
        RecordingTweak::waitUntilIdle();
        if (page->getValue(*probe) == platform::Value(openings)) return page;
    }
}

/// Sets the row of a key on a page that is opened with these settings: the row has the value then, and that change is
/// the only one that the tweak is sent.
template<class Page>
void expectSet(const std::string& key, const platform::Value& value, platform::Dictionary settings = {}) {
    SCOPED_TRACE(key);
    const auto page = openPage<Page>(std::move(settings));
    const auto row = rowOf(*page, key);
    ASSERT_NE(row, nullptr);
    row->performSetter(value);
    EXPECT_EQ(row->performGetter(), value);
    const platform::Value change = platform::Dictionary{{"key", key}, {"object", value}};
    EXPECT_THAT(RecordingTweak::shared().changes(), testing::ElementsAre(change));
}

} // namespace tests
