#pragma once

#include "platform/preferences/PSListController.h"
#include "tests/pages/RecordingTweak.h"

#include <memory>
#include <string>
#include <thread>

namespace tests {

/// The row that edits a key, null when the page has none.
inline platform::PSSpecifierRef rowOf(platform::PSListController& page, const std::string& key) {
    for (const auto& row : *page.specifiers())
        if (row->identifier() == key) return row;
    return nullptr;
}

/// Opens a page with these settings at the tweak, and waits until its own request has been answered: the class's
/// dictionary lives as long as the process, and a reply that lands late would undo what a test has changed.
template<class Page>
std::shared_ptr<Page> openPage(platform::Dictionary settings = {}) {
    static int openings = 0;
    settings.set("opening", ++openings);
    RecordingTweak::shared().setSettings(settings);
    auto page = platform::make<Page>();
    const auto probe = platform::PSSpecifier::preferenceSpecifierNamed("", nullptr, nullptr, nullptr, {},
                                                                       platform::PSSwitchCell, false);
    probe->setIdentifier("opening");
    while (page->getValue(*probe) != platform::Value(openings))
        std::this_thread::yield();
    return page;
}

} // namespace tests
