// A program of its own, because it has the base class's two operations in place of the platform library.
#include "pages/AppsController.h"
#include "pages/LumoraPreferences.h"
#include "pages/base/HostedViewPage.h"
#include "tests/pages/RecordingTweak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

int initialisations = 0;
bool yields = true;
std::vector<bool> appearances; ///< whether animated

} // namespace

bool platform::PSListController::init() {
    ++initialisations;
    return yields;
}

void platform::PSListController::viewWillAppear(bool animated) {
    appearances.push_back(animated);
}

namespace {

using platform::make;
using testing::ElementsAre;

struct Hosting : lumora::HostedViewPage {
    Hosting() : HostedViewPage("Fonts") {}

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& /*frame*/) override { return nullptr; }
};

struct BaseCalls : testing::Test {
    BaseCalls() {
        initialisations = 0;
        yields = true;
        appearances.clear();
        tests::RecordingTweak::shared();
    }
};

TEST_F(BaseCalls, InitialiseEveryPageOfRowsOnce) {
    EXPECT_NE(make<lumora::LumoraPreferences>(), nullptr);
    EXPECT_EQ(initialisations, 1);
    EXPECT_NE(make<lumora::AppsController>(), nullptr);
    EXPECT_EQ(initialisations, 2);
}

TEST_F(BaseCalls, YieldNoPageThatAsksForSettingsWhereTheyYieldNothing) {
    yields = false;
    EXPECT_TRUE(platform::dispatch_wait_until_idle(std::chrono::minutes(1))); // a page of another test has asked, too
    const int requests = tests::RecordingTweak::shared().requests();
    EXPECT_EQ(make<lumora::LumoraPreferences>(), nullptr);
    EXPECT_TRUE(platform::dispatch_wait_until_idle(std::chrono::minutes(1)));
    EXPECT_EQ(tests::RecordingTweak::shared().requests(), requests);
}

TEST_F(BaseCalls, HearOfEachAppearanceWithTheSameFlag) {
    const std::shared_ptr<platform::PSListController> root = make<lumora::LumoraPreferences>();
    for (const auto& page : {root, std::shared_ptr<platform::PSListController>(make<Hosting>())}) {
        appearances.clear();
        for (const bool animated : {true, false, true})
            page->viewWillAppear(animated);
        EXPECT_THAT(appearances, ElementsAre(true, false, true));
    }
}

} // namespace
