#include "tests/settings/host/NavigationTest.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using namespace tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A page of links that notes when it is made, and when it appears.
class LinkPage : public PSListController {
  public:
    static inline std::vector<std::string> made;
    static inline std::vector<std::string> appeared;
    static inline std::string faulty; ///< the one whose rows cannot be had

    LinkPage(const char* name, std::vector<const char*> links) : name_(name), links_(std::move(links)) {
        made.emplace_back(name);
    }
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        appeared.push_back(name_);
    }
    PSSpecifierList specifiers() override {
        if (name_ == faulty) throw std::runtime_error("no rows today");
        std::vector<PSSpecifierRef> rows;
        for (const char* link : links_)
            rows.push_back(PSSpecifier::preferenceSpecifierNamed(std::string("To ") + link, this, nullptr, nullptr,
                                                                 link, PSLinkCell, false));
        return std::make_shared<const std::vector<PSSpecifierRef>>(std::move(rows));
    }

  private:
    std::string name_;
    std::vector<const char*> links_;
};

// First has Left, Right and Hosted; Left has Deep and leads back; Right has Deeper, which Left's Deep has too.
struct WayFirst : LinkPage {
    WayFirst() : LinkPage("WayFirst", {"NoSuchClass", "WayLeft", "WayRight", "HostedPage"}) {}
};
PLATFORM_CLASS(WayFirst)
struct WayLeft : LinkPage {
    WayLeft() : LinkPage("WayLeft", {"WayFirst", "WayDeep"}) {}
};
PLATFORM_CLASS(WayLeft)
struct WayRight : LinkPage {
    WayRight() : LinkPage("WayRight", {"WayDeeper"}) {}
};
PLATFORM_CLASS(WayRight)
struct WayDeep : LinkPage {
    WayDeep() : LinkPage("WayDeep", {"WayDeeper", "WayLeft"}) {}
};
PLATFORM_CLASS(WayDeep)
struct WayDeeper : LinkPage {
    WayDeeper() : LinkPage("WayDeeper", {}) {}
};
PLATFORM_CLASS(WayDeeper)
struct WayNowhere : LinkPage {
    WayNowhere() : LinkPage("WayNowhere", {}) {}
};
PLATFORM_CLASS(WayNowhere)

struct WayTest : NavigationTest {
    WayTest() {
        LinkPage::made.clear();
        LinkPage::appeared.clear();
        LinkPage::faulty.clear();
    }
    bool openByWay(const char* target) {
        return navigation.openByWay(NSClassFromString("WayFirst"), "First", NSClassFromString(target));
    }
    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (const auto& page : shown.back().pages)
            all.push_back(page->title);
        return all;
    }
};

TEST_F(WayTest, OpensAPageUponThosePagesThatLeadThereAndShowsNoneOfThemBefore) {
    ASSERT_TRUE(openByWay("WayDeep"));
    EXPECT_THAT(titles(), ElementsAre("First", "To WayLeft", "To WayDeep"));
    EXPECT_EQ(top().className, "WayDeep");
    EXPECT_THAT(LinkPage::appeared, ElementsAre("WayDeep"));
    for (std::size_t i = 0; i + 1 < shown.size(); ++i)
        EXPECT_THAT(shown[i].pages, IsEmpty());
    goBack();
    EXPECT_EQ(top().className, "WayLeft");
    goBack();
    EXPECT_EQ(top().className, "WayFirst");
    EXPECT_THAT(LinkPage::appeared, ElementsAre("WayDeep", "WayLeft", "WayFirst"));
}

TEST_F(WayTest, TakesTheShortestWay) {
    ASSERT_TRUE(openByWay("WayDeeper"));
    EXPECT_THAT(titles(), ElementsAre("First", "To WayRight", "To WayDeeper"));
}

TEST_F(WayTest, MakesNoPageButThoseWhoseRowsItNeeds) {
    ASSERT_TRUE(openByWay("WayRight"));
    EXPECT_THAT(LinkPage::made, ElementsAre("WayFirst", "WayRight"));
    LinkPage::made.clear();
    ASSERT_TRUE(openByWay("WayDeep"));
    EXPECT_THAT(LinkPage::made, ElementsAre("WayFirst", "WayLeft", "WayDeep")) << "each of them once";
}

TEST_F(WayTest, OpensNothingWhereNoLinkLeads) {
    EXPECT_FALSE(openByWay("WayNowhere"));
    EXPECT_FALSE(navigation.topPage());
    EXPECT_THAT(shown.back().pages, IsEmpty());
    EXPECT_FALSE(shown.back().opening);
}

TEST_F(WayTest, GoesAroundAPageThatFails) {
    LinkPage::faulty = "WayRight";
    ASSERT_TRUE(openByWay("WayDeeper"));
    EXPECT_THAT(titles(), ElementsAre("First", "To WayLeft", "To WayDeep", "To WayDeeper"));
}

TEST_F(WayTest, GoesToAPageFromTheFirstOneWhateverIsOpen) {
    ASSERT_TRUE(openByWay("WayDeep"));
    navigation.goTo(NSClassFromString("WayRight"));
    EXPECT_THAT(titles(), ElementsAre("First", "To WayRight"));
    navigation.goTo(NSClassFromString("WayNowhere"));
    EXPECT_THAT(titles(), ElementsAre("First", "To WayRight", "WayNowhere")) << "no link leads there";
    navigation.goTo(NSClassFromString("WayFirst"));
    EXPECT_THAT(titles(), ElementsAre("First"));
}

TEST_F(WayTest, StaysOnAPageThatIsOnTopAndWhereThereIsNoSuchPage) {
    ASSERT_TRUE(openByWay("WayDeep"));
    const std::size_t before = shown.size();
    navigation.goTo(NSClassFromString("WayDeep"));
    navigation.goTo(nullptr);
    EXPECT_EQ(shown.size(), before);
}

} // namespace
