#include "tests/search/IndexMaking.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct HostilePages : testing::Test, tests::IndexMaking {
    void add(const std::string& harm) const { plugins.add(harm + ".bundle", "HostilePage"); }

    /// All pages of the bundle are there, and those of the two plug-ins that do no harm.
    static void expectTheOthers(const search::Index& index) {
        for (const char* title : {"Enable Lumora", "Change Log", "Status Bar", "Select Plugins", "Switch of a-friend",
                                  "Switch of z-friend"})
            EXPECT_TRUE(has(index, title)) << title;
    }
    void addFriends() const {
        add("a-friend");
        add("z-friend");
    }
};

TEST_F(HostilePages, CostTheirOwnRowsWhenTheyEndTheProcess) {
    addFriends();
    add("crash");
    add("exit");
    const search::MadeIndex made = this->made();
    expectTheOthers(made.index);
    EXPECT_THAT(made.missing, ElementsAre(StartsWith("crash: it crashes"), StartsWith("exit: it ends the process")));
    EXPECT_TRUE(made.whole) << "nothing but their own fault";
    EXPECT_TRUE(has(made.index, "crash")) << "the link to the page is there";
}

TEST_F(HostilePages, CostTheirOwnRowsWhenTheyTakeTooLong) {
    addFriends();
    add("hang");
    add("spin");
    search::IndexOrder brief = order();
    brief.forPage = std::chrono::seconds(2);
    const search::MadeIndex made = this->made(brief);
    expectTheOthers(made.index);
    EXPECT_THAT(made.missing, ElementsAre("hang: it takes too long", "spin: it takes too long"));
    EXPECT_FALSE(made.whole) << "another time they may not";
}

TEST_F(HostilePages, CostTheirOwnRowsWhenTheyHaveTooMany) {
    addFriends();
    add("flood");
    const search::MadeIndex made = this->made();
    expectTheOthers(made.index);
    ASSERT_EQ(made.missing.size(), 1U);
    EXPECT_THAT(made.missing.front(), StartsWith("flood: it "));
    EXPECT_LT(made.index.entries().size(), 1000U);
}

TEST_F(HostilePages, ArePaidForByThemselvesWhenTheyCrashLater) {
    addFriends();
    add("lurk");
    add("wait");
    const search::MadeIndex made = this->made();
    expectTheOthers(made.index);
    EXPECT_TRUE(has(made.index, "Switch of wait")) << "it did nothing while the other crashed";
}

TEST_F(HostilePages, SpoilNothingByWhatTheyPrint) {
    addFriends();
    add("print");
    const search::MadeIndex made = this->made();
    expectTheOthers(made.index);
    EXPECT_TRUE(has(made.index, "Switch of print"));
    EXPECT_THAT(made.missing, IsEmpty());
}

TEST_F(HostilePages, AreNoneWherePlugInsFailInTheirTrial) {
    addFriends();
    for (const char* name : {"looping-1", "aborting-1"})
        plugins.add(std::string(name) + ".bundle", "TestPlugin");
    search::IndexOrder brief = order();
    brief.forPage = std::chrono::milliseconds(1500);
    const search::MadeIndex made = this->made(brief);
    expectTheOthers(made.index);
    EXPECT_THAT(made.missing, IsEmpty()) << "the trial takes longer, but that is not the page's time";
}

TEST_F(HostilePages, CostTheListOfPlugInsWhereOneEndsTheProcessThatLoadsIt) {
    plugins.add("exiting-in-settings-1.bundle", "TestPlugin");
    const search::MadeIndex made = this->made();
    EXPECT_THAT(made.missing, ElementsAre(StartsWith("App Views: it ends the process")));
    EXPECT_TRUE(has(made.index, "Status Bar")) << "on a page that comes later";
}

TEST_F(HostilePages, AreOverWithAllOfThemTogether) {
    for (const char* name : {"hang", "hang-2"})
        plugins.add(std::string(name) + ".bundle", "HostilePage");
    search::IndexOrder brief = order();
    brief.forPage = std::chrono::seconds(60);
    brief.forAll = std::chrono::seconds(3);
    const search::MadeIndex made = this->made(brief);
    EXPECT_TRUE(has(made.index, "Enable Lumora"));
    EXPECT_FALSE(made.whole);
}

} // namespace
