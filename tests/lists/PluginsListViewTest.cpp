#include "lists/PluginsListView.h"
#include "pages/PluginsListViewController.h"

#include "tests/lists/PluginFolder.h"
#include "tests/pages/OpenPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using lumora::PluginsListView;
using platform::CGRectMake;
using platform::Dictionary;
using platform::List;
using platform::make;
using platform::NSIndexPath;
using platform::UITableView;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::RecordingTweak;

constexpr auto kFrame = CGRectMake(0, 0, 390, 760);

/// A test plug-in in "NAME.bundle" has the identifier "test.NAME" and the name "NAME".
struct PlugInList : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();
    tests::PluginFolder plugins;
    std::shared_ptr<PluginsListView> view;

    void show(Dictionary settings) {
        tests::giveSettings<PluginsListView>(std::move(settings));
        view = make<PluginsListView>(kFrame);
        tweak.waitUntilIdle();
        ASSERT_NE(view, nullptr);
        view->tableView().layoutIfNeeded();
    }
    [[nodiscard]] std::string titleAt(NSIndexPath path) const {
        const auto cell = view->tableView().cellForRowAtIndexPath(path);
        return cell ? cell->textLabel().text() : "no cell";
    }
    /// The only change that the tweak was sent.
    void expectSaved(List identifiers) {
        EXPECT_THAT(tweak.waitForChanges(1),
                    ElementsAre(Value(Dictionary{{"key", "kAppViewsEnabled"}, {"object", std::move(identifiers)}})));
    }
};

TEST_F(PlugInList, ShowsTheSavedOnesInTheirOrderAndTheOthersSortedByName) {
    plugins.addEach({"Weather", "Clock", "Music", "Notes"});
    show({{"kAppViewsEnabled", List{"test.Weather", "test.Notes"}}});
    EXPECT_THAT(view->enabled(), ElementsAre("test.Weather", "test.Notes"));
    EXPECT_THAT(view->disabled(), ElementsAre("test.Clock", "test.Music"));
    EXPECT_EQ(titleAt({0, 0}), "Weather");
    EXPECT_EQ(titleAt({1, 1}), "Music");
}

TEST_F(PlugInList, ShowsAPlugInWithoutSettingsPageButNoneThatIsBroken) {
    plugins.addEach({"no-page-1", "no-name-1", "empty-appID-1"});
    show({});
    EXPECT_THAT(view->disabled(), ElementsAre("test.no-page-1"));
}

TEST_F(PlugInList, SortsNamesThatDifferInCaseNextToEachOther) {
    plugins.addEach({"clock", "Dog", "Clock", "alarm"});
    show({});
    ASSERT_EQ(view->disabled().size(), 4U);
    EXPECT_EQ(view->disabled().front(), "test.alarm");
    EXPECT_EQ(view->disabled().back(), "test.Dog");
}

TEST_F(PlugInList, SavesTheEmptyListWhenTheOnlyOneIsDisabled) {
    plugins.addEach({"Clock"});
    show({{"kAppViewsEnabled", List{"test.Clock"}}});
    view->tableView().dropRow({0, 0}, {1, 0});
    expectSaved({});
    EXPECT_THAT(view->enabled(), IsEmpty());
    EXPECT_THAT(view->disabled(), ElementsAre("test.Clock"));
}

TEST_F(PlugInList, MovesTheFirstOfThreeToTheEnd) {
    plugins.addEach({"A", "B", "C"});
    show({{"kAppViewsEnabled", List{"test.A", "test.B", "test.C"}}});
    view->tableView().dropRow({0, 0}, {0, 2});
    expectSaved({"test.B", "test.C", "test.A"});
}

TEST_F(PlugInList, HasTwoRowsForAnIdentifierThatWasSavedTwice) {
    plugins.addEach({"A", "B"});
    show({{"kAppViewsEnabled", List{"test.A", "test.A"}}});
    EXPECT_THAT(view->enabled(), ElementsAre("test.A", "test.A"));
    EXPECT_EQ(titleAt({0, 1}), "A");
    EXPECT_THAT(view->disabled(), ElementsAre("test.B")) << "all of its occurrences are enabled";
}

TEST_F(PlugInList, SavesADropWithinTheDisabledOnesToo) {
    plugins.addEach({"A", "B"});
    show({{"kAppViewsEnabled", List{}}});
    view->tableView().dropRow({1, 0}, {1, 1});
    expectSaved({});
    EXPECT_THAT(view->disabled(), ElementsAre("test.B", "test.A"));
}

TEST_F(PlugInList, CountsEverySectionButTheFirstAsTheSecond) {
    plugins.addEach({"A", "B"});
    show({{"kAppViewsEnabled", List{"test.A"}}});
    view->moveRowAtIndexPath(view->tableView(), {0, 0}, {7, 1});
    expectSaved({});
    EXPECT_THAT(view->disabled(), ElementsAre("test.B", "test.A"));
}

TEST_F(PlugInList, StartsEmptyWithoutASavedListAndSavesExactlyWhatItShows) {
    plugins.addEach({"A", "B"});
    show({});
    EXPECT_THAT(view->enabled(), IsEmpty());
    view->tableView().dropRow({1, 1}, {0, 0});
    expectSaved({"test.B"});
    EXPECT_THAT(view->enabled(), ElementsAre("test.B"));
}

TEST_F(PlugInList, KeepsAPlugInThatIsGoneAsAnUntitledRowUntilItIsDisabled) {
    plugins.addEach({"A"});
    show({{"kAppViewsEnabled", List{"test.gone", "test.A"}}});
    EXPECT_EQ(titleAt({0, 0}), "");
    EXPECT_EQ(view->tableView().cellForRowAtIndexPath({0, 0})->detailTextLabel().text(), "test.gone");
    view->tableView().dropRow({0, 0}, {1, 0});
    expectSaved({"test.A"});
    EXPECT_THAT(view->disabled(), ElementsAre("test.gone")) << "it stays until the page is built again";
    tests::giveSettings<PluginsListView>(Dictionary{{"kAppViewsEnabled", List{"test.A"}}});
    EXPECT_THAT(make<PluginsListView>(kFrame)->disabled(), IsEmpty());
}

TEST_F(PlugInList, GivesOnePlugInOfTwoWithOneIdentifierOneRow) {
    plugins.add("First.bundle", "PagePlugin");
    plugins.add("Second.bundle", "PagePlugin");
    show({});
    EXPECT_THAT(view->disabled(), ElementsAre("test.same"));
    EXPECT_EQ(titleAt({1, 0}), PluginsListView::getPlugins().back().name()) << "the later one's name";
}

TEST_F(PlugInList, IsEmptyWithItsHeadersWhereNothingIsInstalledOrSaved) {
    show({});
    auto& table = view->tableView();
    EXPECT_EQ(table.numberOfSections(), 2);
    EXPECT_EQ(table.numberOfRowsInSection(0) + table.numberOfRowsInSection(1), 0);
    EXPECT_EQ(table.layout().section(0).header, "Enabled");
    EXPECT_EQ(table.layout().section(1).header, "Disabled");
    EXPECT_EQ(table.layout().section(0).footer, " ");
    EXPECT_EQ(table.layout().section(1).footer,
              "Tap and hold onto an App View's associated application to reveal the App View.");
}

TEST_F(PlugInList, AnswersItsTableAsEverySelectionListDoes) {
    plugins.addEach({"A"});
    show({{"kAppViewsEnabled", List{"test.A"}}});
    UITableView& table = view->tableView();
    EXPECT_EQ(view->numberOfSectionsInTableView(table), 2);
    EXPECT_EQ(view->numberOfRowsInSection(table, 0), 1);
    EXPECT_EQ(view->numberOfRowsInSection(table, 1), 0);
    EXPECT_EQ(view->numberOfRowsInSection(table, 2), 0);
    EXPECT_EQ(view->heightForRowAtIndexPath(table, {1, 7}), 40.0);
    EXPECT_EQ(view->titleForHeaderInSection(table, 2), "");
    EXPECT_EQ(view->titleForFooterInSection(table, 2), view->titleForFooterInSection(table, 1));
    EXPECT_TRUE(view->canMoveRowAtIndexPath(table, {0, 0}));
    EXPECT_EQ(view->editingStyleForRowAtIndexPath(table, {0, 0}), 0);
    EXPECT_FALSE(view->shouldIndentWhileEditingRowAtIndexPath(table, {0, 0}));
    EXPECT_EQ(table.style(), 1);
    EXPECT_TRUE(table.isEditing());
    const auto nowhere = view->cellForRowAtIndexPath(table, {2, 0});
    EXPECT_EQ(nowhere->textLabel().text(), "");
    EXPECT_EQ(nowhere->detailTextLabel().text(), "");
    EXPECT_EQ(nowhere->reuseIdentifier(), "theCell");
}

TEST_F(PlugInList, ShowsTitlesWithoutIconsAndHidesIdentifiers) {
    plugins.addEach({"A"});
    show({});
    const auto cell = view->tableView().cellForRowAtIndexPath({1, 0});
    EXPECT_EQ(cell->textLabel().text(), "A");
    EXPECT_EQ(cell->detailTextLabel().text(), "test.A");
    EXPECT_TRUE(cell->detailTextLabel().isHidden());
    EXPECT_EQ(cell->imageView().image(), nullptr);
}

TEST_F(PlugInList, KeepsItsTablesFrameWhenThePageChangesItsSize) {
    show({});
    EXPECT_EQ(view->tableView().autoresizingMask(), 0U);
    view->setFrame(CGRectMake(0, 0, 1024, 700));
    EXPECT_EQ(view->tableView().frame(), kFrame);
}

TEST_F(PlugInList, LooksIntoTheFolderAgainOnEachAppearanceOfItsPage) {
    plugins.addEach({"A"});
    tests::giveSettings<PluginsListView>(Dictionary{});
    const auto page = make<lumora::PluginsListViewController>();
    EXPECT_EQ(page->title(), "Plugins");
    page->viewWillAppear(false);
    EXPECT_THAT(std::dynamic_pointer_cast<PluginsListView>(page->view())->disabled(), ElementsAre("test.A"));
    plugins.addEach({"B"});
    page->viewWillAppear(false);
    EXPECT_THAT(std::dynamic_pointer_cast<PluginsListView>(page->view())->disabled(), ElementsAre("test.A", "test.B"));
    EXPECT_NE(platform::NSClassFromString("PluginsListViewController"), nullptr);
}

TEST_F(PlugInList, ShowsAMoveInTheNextViewOfItsPage) {
    plugins.addEach({"A", "B"});
    tests::giveSettings<PluginsListView>(Dictionary{{"kAppViewsEnabled", List{"test.A", "test.B"}}});
    const auto page = make<lumora::PluginsListViewController>();
    page->viewWillAppear(false);
    const auto first = std::dynamic_pointer_cast<PluginsListView>(page->view());
    tweak.waitUntilIdle();
    first->tableView().layoutIfNeeded();
    first->tableView().dropRow({0, 0}, {0, 1});
    tweak.holdAnswers(true); // so what the second one shows is what is already here
    page->viewWillAppear(false);
    tweak.holdAnswers(false);
    EXPECT_THAT(std::dynamic_pointer_cast<PluginsListView>(page->view())->enabled(), ElementsAre("test.B", "test.A"));
}

TEST_F(PlugInList, RestoresBothListsAsTheyWereAndSavesOnce) {
    plugins.addEach({"Clock", "Music", "Notes"});
    show({{"kAppViewsEnabled", List{"test.Notes", "gone"}}});
    view->moveRowAtIndexPath(view->tableView(), {1, 0}, {1, 1});
    const auto state = view->undoState();
    view->moveRowAtIndexPath(view->tableView(), {0, 0}, {1, 0});
    tweak.waitUntilIdle();
    tweak.setSettings({});
    view->restore(state);
    expectSaved({"test.Notes", "gone"});
    EXPECT_THAT(view->disabled(), ElementsAre("test.Music", "test.Clock"));
    EXPECT_EQ(titleAt({0, 0}), "Notes");
}

TEST_F(PlugInList, RestoresWhatWasSavedWhereAPlugInHasComeMeanwhile) {
    plugins.addEach({"Clock"});
    show({{"kAppViewsEnabled", List{"test.Clock"}}});
    const auto state = view->undoState();
    plugins.addEach({"Notes"});
    show({{"kAppViewsEnabled", List{}}});
    view->restore(state);
    expectSaved({"test.Clock"});
    EXPECT_THAT(view->disabled(), ElementsAre("test.Notes"));
}

} // namespace
