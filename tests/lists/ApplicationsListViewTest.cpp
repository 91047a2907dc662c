#include "lists/AUAppsListView.h"
#include "lists/AppsListView.h"
#include "pages/AUAppsListController.h"
#include "pages/AppsListController.h"

#include "tests/pages/OpenPage.h"
#include "tests/support/DeviceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sstream>

namespace {

using lumora::AppsListView;
using lumora::AUAppsListView;
using lumora::SelectionListView;
using platform::CGRectMake;
using platform::Dictionary;
using platform::List;
using platform::make;
using platform::Value;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using tests::giveSettings;
using tests::RecordingTweak;

constexpr const char* kLibrary = "/Library/MobileSubstrate/DynamicLibraries/AppList.dylib";
constexpr const char* kApplications = "/Library/MobileSubstrate/DynamicLibraries/applications.txt";
constexpr auto kWindow = CGRectMake(0, 0, 390, 760);

Value change(const char* key, List list) {
    return Dictionary{{"key", key}, {"object", std::move(list)}};
}

const std::string kSixApplications = "org.b\tbanana\n"
                                     "org.c\tCherry\n"
                                     "org.a\tapple\n"
                                     "com.apple.springboard\tSpringBoard\n"
                                     "org.e\tÉclair\n"
                                     "org.d\tdate\n";

struct ApplicationLists : testing::Test {
    tests::DeviceFolder device;
    RecordingTweak& tweak = RecordingTweak::shared();

    ApplicationLists() {
        device.install(LUMORA_FAKE_APP_LIST, kLibrary);
        device.write(kSixApplications, kApplications);
    }
    void removeLibrary() const { std::filesystem::remove(device.path() / (kLibrary + 1)); }
    /// A number that the library keeps of its use.
    template<class Number>
    Number counted(const char* name) const {
        void* handle = dlopen((device.path() / (kLibrary + 1)).c_str(), RTLD_NOW | RTLD_NOLOAD);
        const auto* number = static_cast<const Number*>(dlsym(handle, name));
        dlclose(handle);
        return *number;
    }
    /// A view of these settings, drawn. Its request has been answered, so that no late reply undoes what is changed in
    /// it.
    template<class View>
    static std::shared_ptr<View> opened(const Dictionary& settings = {}) {
        giveSettings<AppsListView, AUAppsListView>(settings);
        auto view = make<View>(kWindow);
        RecordingTweak::waitUntilIdle();
        view->tableView().layoutIfNeeded();
        return view;
    }
    static std::vector<std::string> titles(SelectionListView& view, int section) {
        view.tableView().layoutIfNeeded();
        std::vector<std::string> shown;
        for (int row = 0; row < view.tableView().numberOfRowsInSection(section); ++row) {
            const auto cell = view.tableView().cellForRowAtIndexPath({section, row});
            shown.push_back(cell ? cell->textLabel().text() : "no cell");
        }
        return shown;
    }
};

TEST_F(ApplicationLists, AppsShowsTheSavedOnesInTheirOrderAndTheOthersSortedByName) {
    const auto view = opened<AppsListView>({{"kAppsEnabled", List{"org.d", "org.a"}}});
    EXPECT_THAT(titles(*view, 0), ElementsAre("date", "apple"));
    EXPECT_THAT(titles(*view, 1), ElementsAre("banana", "Cherry", "Éclair"));
    EXPECT_THAT(view->enabled(), ElementsAre("org.d", "org.a"));
}

TEST_F(ApplicationLists, AppsShowsASystemServiceOnlyIfItWasSaved) {
    const auto unsaved = opened<AppsListView>();
    EXPECT_THAT(unsaved->disabled(), Not(Contains("com.apple.springboard")));
    EXPECT_EQ(unsaved->disabled().size(), 5U);
    const auto saved = opened<AppsListView>({{"kAppsEnabled", List{"com.apple.springboard"}}});
    EXPECT_THAT(titles(*saved, 0), ElementsAre("SpringBoard"));
}

TEST(HiddenDisplayIdentifiers, AreTheThirtyFourSystemServices) {
    std::istringstream services("AdSheet AdSheetPhone AdSheetPad DataActivation DemoApp fieldtest iosdiagnostics "
                                "iphoneos.iPodOut TrustMe WebSheet springboard purplebuddy "
                                "datadetectors.DDActionsService FacebookAccountMigrationDialog iad.iAdOptOut "
                                "ios.StoreKitUIService TextInput.kbd MailCompositionService mobilesms.compose "
                                "quicklook.quicklookd ShoeboxUIService social.remoteui.SocialUIService "
                                "WebViewService gamecenter.GameCenterUIService "
                                "appleaccount.AACredentialRecoveryDialog CompassCalibrationViewService "
                                "WebContentFilter.remoteUI.WebContentAnalysisUI PassbookUIService uikit.PrintStatus "
                                "Copilot MusicUIService AccountAuthenticationDialog MobileReplayer SiriViewService");
    std::vector<std::string> expected;
    for (std::string service; services >> service;)
        expected.push_back("com.apple." + service);
    EXPECT_EQ(expected.size(), 34U);
    EXPECT_EQ(AppsListView::hiddenDisplayIdentifiers(), expected);
    EXPECT_EQ(&AUAppsListView::hiddenDisplayIdentifiers(), &AppsListView::hiddenDisplayIdentifiers());
}

TEST_F(ApplicationLists, AppsSavesWhatIsEnabledAtEachDrop) {
    const auto view = opened<AppsListView>({{"kAppsEnabled", List{"org.d", "org.a"}}});
    view->tableView().dropRow({1, 1}, {0, 1});
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change("kAppsEnabled", {"org.d", "org.c", "org.a"})));
    EXPECT_THAT(titles(*view, 0), ElementsAre("date", "Cherry", "apple"));
    EXPECT_THAT(titles(*view, 1), ElementsAre("banana", "Éclair"));
}

TEST_F(ApplicationLists, AMissingSavedListStartsEmptyAndSavesWhatItShows) {
    const auto view = opened<AppsListView>();
    EXPECT_THAT(view->enabled(), IsEmpty());
    view->tableView().dropRow({1, 0}, {0, 0});
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change("kAppsEnabled", {"org.a"})));
}

TEST_F(ApplicationLists, AnApplicationThatIsGoneHasAnEmptyTitleNoIconAndIsSavedBack) {
    const auto view = opened<AppsListView>({{"kAppsEnabled", List{"plain.gone", "org.a"}}});
    const auto cell = view->tableView().cellForRowAtIndexPath({0, 0});
    EXPECT_EQ(cell->textLabel().text(), "");
    EXPECT_EQ(cell->imageView().image(), nullptr);
    EXPECT_EQ(cell->detailTextLabel().text(), "plain.gone");
    EXPECT_TRUE(cell->detailTextLabel().isHidden());
    EXPECT_EQ(view->nameOfRowAtIndexPath(view->tableView(), {0, 0}), "plain.gone") << "as it is read out";
    EXPECT_EQ(view->nameOfRowAtIndexPath(view->tableView(), {0, 1}), "apple");
    view->tableView().dropRow({0, 0}, {0, 1});
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change("kAppsEnabled", {"org.a", "plain.gone"})));
}

TEST_F(ApplicationLists, IconsAreAskedForAtTwentyNinePointsAndOnlyForRowsInView) {
    std::string many;
    for (int i = 0; i < 10000; ++i)
        many += "org.app" + std::to_string(i) + "\tApplication " + std::to_string(i) + "\n";
    device.write(many, kApplications);
    const auto view = opened<AppsListView>();
    EXPECT_EQ(view->disabled().size(), 10000U);
    const auto rowsInView = view->tableView().visibleCells().size();
    EXPECT_LE(rowsInView, 19U) << "760 points hold 19 rows of 40";
    EXPECT_EQ(counted<unsigned>("fakeAppListIconCalls"), 2 * rowsInView) << "once and twice as sharp";
    EXPECT_EQ(counted<double>("fakeAppListLastSize"), 29);
    EXPECT_NE(view->tableView().visibleCells().begin()->second->imageView().image(), nullptr);
}

TEST_F(ApplicationLists, WithoutTheLibraryOnlyWhatWasSavedShowsUntitled) {
    removeLibrary();
    const Dictionary settings{{"kAppsEnabled", List{"org.b", "org.a"}}, {"kAUAppsDisabled", List{"org.a"}}};
    const auto apps = opened<AppsListView>(settings);
    EXPECT_THAT(apps->enabled(), ElementsAre("org.b", "org.a"));
    EXPECT_THAT(apps->disabled(), IsEmpty());
    EXPECT_THAT(titles(*apps, 0), ElementsAre("", ""));
    EXPECT_EQ(apps->tableView().cellForRowAtIndexPath({0, 0})->imageView().image(), nullptr);
    const auto exempt = opened<AUAppsListView>(settings);
    EXPECT_THAT(exempt->enabled(), ElementsAre("org.b"));
    EXPECT_THAT(exempt->disabled(), ElementsAre("org.a"));
}

TEST_F(ApplicationLists, AHandleThatWasNeverGotIsNotClosed) {
    removeLibrary();
    ASSERT_EQ(platform::openLibraries(), 0);
    {
        const auto view = opened<AppsListView>();
        EXPECT_EQ(platform::openLibraries(), 0);
    }
    EXPECT_EQ(platform::openLibraries(), 0);
}

TEST_F(ApplicationLists, TheLibraryIsOpenForAsLongAsAViewLives) {
    {
        const auto apps = opened<AppsListView>();
        const auto exempt = opened<AUAppsListView>();
        EXPECT_EQ(platform::openLibraries(), 2);
    }
    EXPECT_EQ(platform::openLibraries(), 0);
    EXPECT_EQ(platform::ALApplicationList::sharedApplicationList(), nullptr);
}

TEST_F(ApplicationLists, AutoUnlockAppsShowsTheChosenOnesAndSortsTheExemptOnes) {
    const auto view =
        opened<AUAppsListView>({{"kAppsEnabled", List{"org.d", "org.c", "org.a", "com.apple.springboard"}},
                                {"kAUAppsDisabled", List{"org.e", "org.c", "org.b"}}});
    EXPECT_THAT(titles(*view, 0), ElementsAre("date", "apple", "SpringBoard")) << "nothing is hidden here";
    EXPECT_THAT(titles(*view, 1), ElementsAre("banana", "Cherry", "Éclair"));
}

TEST_F(ApplicationLists, AutoUnlockAppsSavesTheExemptOnesAndNeverTheChosenOnes) {
    const auto view = opened<AUAppsListView>({{"kAppsEnabled", List{"org.d", "org.a"}}, {"kAUAppsDisabled", List{}}});
    view->tableView().dropRow({0, 0}, {1, 0});
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change("kAUAppsDisabled", {"org.d"})));
    view->tableView().dropRow({0, 0}, {0, 0});
    EXPECT_THAT(tweak.waitForChanges(2), Each(change("kAUAppsDisabled", {"org.d"})))
        << "every drop is saved, and only under that key";
}

TEST_F(ApplicationLists, AnExemptApplicationStaysThoughItIsChosenNoMore) {
    const auto view = opened<AUAppsListView>({{"kAppsEnabled", List{"org.a"}}, {"kAUAppsDisabled", List{"org.d"}}});
    EXPECT_THAT(view->enabled(), ElementsAre("org.a"));
    EXPECT_THAT(view->disabled(), ElementsAre("org.d"));
}

TEST_F(ApplicationLists, AnOrderGivenToTheExemptOnesIsSavedAndGoneAtTheNextBuild) {
    const auto first = opened<AUAppsListView>({{"kAUAppsDisabled", List{"org.a", "org.b", "org.c"}}});
    first->tableView().dropRow({1, 0}, {1, 2});
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change("kAUAppsDisabled", {"org.b", "org.c", "org.a"})));
    EXPECT_THAT(make<AUAppsListView>(kWindow)->disabled(), ElementsAre("org.a", "org.b", "org.c"));
}

TEST_F(ApplicationLists, AnIdentifierWithoutANameSortsAsTheEmptyText) {
    const auto view = opened<AUAppsListView>({{"kAUAppsDisabled", List{"org.a", "org.gone"}}});
    EXPECT_THAT(view->disabled(), ElementsAre("org.gone", "org.a"));
}

TEST_F(ApplicationLists, TheTableFollowsTheViewsSize) {
    const auto view = opened<AppsListView>();
    EXPECT_EQ(view->tableView().autoresizingMask(), 18U);
    view->setFrame(CGRectMake(0, 0, 1024, 700));
    EXPECT_EQ(view->tableView().frame(), CGRectMake(0, 0, 1024, 700));
}

TEST_F(ApplicationLists, BothHaveTheSameFooterBeneathTheLastSection) {
    for (const std::shared_ptr<SelectionListView>& view :
         {std::shared_ptr<SelectionListView>(opened<AppsListView>()),
          std::shared_ptr<SelectionListView>(opened<AUAppsListView>())}) {
        auto& table = view->tableView();
        EXPECT_EQ(view->titleForFooterInSection(table, 0), " ");
        EXPECT_EQ(view->titleForFooterInSection(table, 1), "Swipe left on the lockscreen to see selected apps.");
        EXPECT_EQ(view->titleForFooterInSection(table, 2), "Swipe left on the lockscreen to see selected apps.");
    }
}

TEST_F(ApplicationLists, ASavedValueThatIsNoListCountsAsNone) {
    const Dictionary settings{{"kAppsEnabled", "org.a"}, {"kAUAppsDisabled", 7}};
    EXPECT_THAT(opened<AppsListView>(settings)->enabled(), IsEmpty());
    EXPECT_THAT(opened<AUAppsListView>(settings)->disabled(), IsEmpty());
}

// The pages that host them

TEST_F(ApplicationLists, ThePagesHaveTheirTitlesAndViews) {
    giveSettings<AppsListView, AUAppsListView>(Dictionary{});
    const auto apps = make<lumora::AppsListController>();
    const auto exempt = make<lumora::AUAppsListController>();
    apps->viewWillAppear(false);
    exempt->viewWillAppear(false);
    EXPECT_EQ(apps->title(), "Apps");
    EXPECT_EQ(exempt->title(), "Auto-Unlock Apps");
    EXPECT_NE(std::dynamic_pointer_cast<AppsListView>(apps->view()), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<AUAppsListView>(exempt->view()), nullptr);
    EXPECT_NE(platform::NSClassFromString("AppsListController"), nullptr);
    EXPECT_NE(platform::NSClassFromString("AUAppsListController"), nullptr);
}

/// Makes a move in the first view of a page, and gives the list that the next view of the page then shows.
template<class Page, class View>
std::vector<std::string> enabledInTheNextViewAfterAMove() {
    RecordingTweak& tweak = RecordingTweak::shared();
    const auto page = make<Page>();
    page->viewWillAppear(false);
    const auto first = std::dynamic_pointer_cast<View>(page->view());
    tweak.waitUntilIdle();
    first->tableView().layoutIfNeeded();
    first->tableView().dropRow({0, 0}, {1, 0});
    tweak.holdAnswers(true); // so what the second one shows is what is already here
    page->viewWillAppear(false);
    tweak.holdAnswers(false);
    const auto second = std::dynamic_pointer_cast<View>(page->view());
    EXPECT_NE(second, first);
    return second->enabled();
}

TEST_F(ApplicationLists, AMoveInOneViewIsThereInTheNextOneOfItsPage) {
    giveSettings<AppsListView, AUAppsListView>(
        Dictionary{{"kAppsEnabled", List{"org.a", "org.b"}}, {"kAUAppsDisabled", List{}}});
    EXPECT_THAT((enabledInTheNextViewAfterAMove<lumora::AppsListController, AppsListView>()), ElementsAre("org.b"));
    EXPECT_THAT((enabledInTheNextViewAfterAMove<lumora::AUAppsListController, AUAppsListView>()), ElementsAre("org.b"));
}

} // namespace
