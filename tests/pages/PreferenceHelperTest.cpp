#include "pages/base/PreferenceHelper.h"
#include "pages/PreferenceHelperAdditions.h"

#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSListItemsController.h"
#include "tests/pages/ExpectedRows.h"
#include "tests/support/TestName.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace {

using lumora::PreferenceHelper;
using lumora::PreferenceHelperAdditions::addIcon;
using platform::make;
using platform::selector;
using platform::Value;
using tests::asExpected;
namespace fs = std::filesystem;

struct Page final : platform::PSListController {
    std::map<std::string, Value> stored;
    std::string lastTap;
    Value getValue(platform::PSSpecifier& row) { return stored[row.identifier()]; }
    void setValue(const Value& value, platform::PSSpecifier& row) { stored[row.identifier()] = value; }
    Value getOther(platform::PSSpecifier& /*row*/) { return "other"; }
    void setOther(const Value& value, platform::PSSpecifier& /*row*/) { stored["other"] = value; }
    void tapped(platform::PSSpecifier& sender) { lastTap = sender.name(); }
};

struct RowBuilder : testing::Test {
    std::shared_ptr<Page> page = make<Page>();
    std::shared_ptr<PreferenceHelper> helper =
        make<PreferenceHelper>(page.get(), selector(&Page::setValue), selector(&Page::getValue));

    /// That the row reads and writes the page's entry under the key.
    void expectBoundTo(const platform::PSSpecifierRef& row, const std::string& key) {
        EXPECT_EQ(row->identifier(), key);
        EXPECT_EQ(row->target(), page.get());
        EXPECT_TRUE(row->performGetter().isNil());
        row->performSetter(42);
        EXPECT_EQ(page->stored[key], Value(42));
        EXPECT_EQ(row->performGetter(), Value(42));
    }
    static void expectUnbound(const platform::PSSpecifierRef& row, const platform::NSObject* target) {
        EXPECT_EQ(row->target(), target);
        EXPECT_FALSE(row->setAction());
        EXPECT_FALSE(row->getAction());
    }
};

TEST_F(RowBuilder, MakesAButtonThatCallsThePageWithTheRow) {
    const auto row = helper->button("@handle", selector(&Page::tapped));
    EXPECT_EQ(asExpected(*row), tests::button("@handle"));
    expectUnbound(row, page.get());
    row->performAction();
    EXPECT_EQ(page->lastTap, "@handle");
}

TEST_F(RowBuilder, MakesALinkToAPageClass) {
    const auto row = helper->link("Apps", "AppsController");
    EXPECT_EQ(asExpected(*row), tests::page("Apps", "AppsController"));
    expectUnbound(row, page.get());
}

TEST_F(RowBuilder, MakesAnOptionListWithTitlesAsShortTitles) {
    const auto row = helper->link("Sleep After", "kSleepTime", {"5 Seconds", "Never"}, {5, 3600});
    EXPECT_EQ(asExpected(*row), tests::options("Sleep After", "kSleepTime", {"5 Seconds", "Never"}, {5, 3600}));
    EXPECT_EQ(row->shortTitles(), row->titles());
    expectBoundTo(row, "kSleepTime");
}

TEST_F(RowBuilder, PassesOptionListsOfUnequalLengthOnUnchecked) {
    const auto row = helper->link("Odd", "kOdd", {"one", "two"}, {1});
    EXPECT_EQ(row->titles().size(), 2U);
    EXPECT_EQ(row->values().size(), 1U);
}

TEST_F(RowBuilder, MakesASwitchWhoseKeyIsThePropertyId) {
    const auto row = helper->toggle("Enable", "kEnabled");
    EXPECT_EQ(asExpected(*row), tests::toggle("Enable", "kEnabled"));
    EXPECT_EQ(row->property("id"), Value("kEnabled"));
    expectBoundTo(row, "kEnabled");
}

TEST_F(RowBuilder, MakesASwitchWithOperationsOfItsOwn) {
    const auto row = helper->toggle("Enable", "kEnabled", selector(&Page::setOther), selector(&Page::getOther));
    EXPECT_EQ(asExpected(*row), tests::toggle("Enable", "kEnabled"));
    EXPECT_EQ(row->performGetter(), Value("other"));
    row->performSetter(true);
    EXPECT_EQ(page->stored["other"], Value(true));
}

TEST_F(RowBuilder, MakesGroupsWithAHeaderAFooterBothOrNeither) {
    const std::pair<PreferenceHelper::Row, tests::ExpectedRow> groups[] = {
        {helper->header("General"), tests::group("General")},
        {helper->header("Hide Items", "On = Hidden"), tests::group("Hide Items", "On = Hidden")},
        {helper->footer("A note"), tests::group("", "A note")},
        {helper->spacer(), tests::group("")},
    };
    for (const auto& [row, expected] : groups) {
        EXPECT_EQ(asExpected(*row), expected);
        EXPECT_EQ(row->hasProperty("footerText"), !expected.footer.empty());
        expectUnbound(row, page.get());
    }
}

TEST_F(RowBuilder, IsItselfTheTargetOfStaticText) {
    const auto row = helper->static_("Opacity (1.0)");
    EXPECT_EQ(asExpected(*row), tests::text("Opacity (1.0)"));
    expectUnbound(row, helper.get());
}

TEST_F(RowBuilder, MakesSlidersThatShowTheirValueUnlessTold) {
    const auto row = helper->slider("kOpacity", 0.1F, 1.0F);
    EXPECT_EQ(asExpected(*row), tests::slider("kOpacity", 0.1F, 1)) << "bounds are single-precision numbers";
    expectBoundTo(row, "kOpacity");
    EXPECT_EQ(helper->slider("kOpacity", 0, 1, false)->property("showValue"), Value(false));
    EXPECT_EQ(helper->slider("kOpacity", 0, 1, true)->property("showValue"), Value(true));
}

TEST_F(RowBuilder, MakesFieldsWhoseFirstTextIsThePlaceholder) {
    const auto secure = helper->field("Passcode", "kPasscode", true);
    EXPECT_EQ(asExpected(*secure), tests::secret("Passcode", "kPasscode"));
    expectBoundTo(secure, "kPasscode");
    for (const auto& plain : {helper->field("Text", "kText"), helper->field("Text", "kText", false)})
        EXPECT_EQ(asExpected(*plain), tests::field("Text", "kText"));
}

TEST_F(RowBuilder, NeverMakesARowToEdit) {
    const std::vector<PreferenceHelper::Row> rows{
        helper->header("x"),     helper->toggle("x", "y"),           helper->link("x", "y"),
        helper->static_("x"),    helper->link("x", "y", {"z"}, {1}), helper->slider("x", 0, 1),
        helper->field("x", "y"), helper->button("x", nullptr)};
    for (const auto& row : rows)
        EXPECT_FALSE(row->edit()) << row->cellType();
}

TEST_F(RowBuilder, KeepsItsThreeProperties) {
    EXPECT_EQ(helper->target(), page.get());
    const auto other = make<Page>();
    helper->setTarget(other.get());
    helper->setGetAction(selector(&Page::getOther));
    helper->setSetAction(selector(&Page::setOther));
    const auto row = helper->toggle("Enable", "kEnabled");
    EXPECT_EQ(row->target(), other.get());
    EXPECT_EQ(row->performGetter(), Value("other"));
    row->performSetter(7);
    EXPECT_EQ(other->stored["other"], Value(7));
    EXPECT_TRUE(helper->setAction());
    EXPECT_TRUE(helper->getAction());
}

/// Resources beside this program, which is the "bundle" that holds the classes linked into it.
struct Icons : RowBuilder {
    fs::path folder = platform::NSBundle::bundleForClass(typeid(Page))->bundlePath();
    std::string icon = tests::testName();
    void SetUp() override {
        for (const std::string& name : {icon + ".png", icon + ".jpg"})
            fs::copy_file(fs::path(LUMORA_SOURCE) / "resources/mail.png", folder / name,
                          fs::copy_options::overwrite_existing);
    }
    void TearDown() override {
        fs::remove(folder / (icon + ".png"));
        fs::remove(folder / (icon + ".jpg"));
    }
};

TEST_F(Icons, AreLookedUpAsPngAndGivenToTheVeryRow) {
    const auto row = helper->button("Mail", nullptr);
    EXPECT_EQ(addIcon(row, icon), row);
    ASSERT_NE(row->imageProperty("iconImage"), nullptr);
    EXPECT_EQ(row->imageProperty("iconImage")->size(), (platform::CGSize{29, 29}));
}

TEST_F(Icons, WithAnExtensionOfTheirOwnAreLookedUpWithThat) {
    fs::remove(folder / (icon + ".png"));
    EXPECT_NE(addIcon(helper->spacer(), icon + ".jpg")->imageProperty("iconImage"), nullptr);
    EXPECT_EQ(addIcon(helper->spacer(), icon)->imageProperty("iconImage"), nullptr);
}

TEST_F(Icons, ThatAreNotThereAreStoredAsNoImage) {
    const auto row = addIcon(helper->button("Mail", nullptr), "nowhere");
    EXPECT_TRUE(row->hasProperty("iconImage"));
    EXPECT_EQ(row->imageProperty("iconImage"), nullptr);
}

TEST_F(Icons, AreNotLookedUpInOtherFolders) {
    for (const std::string& name : {"nowhere/" + icon + ".png", "nowhere/" + icon, (folder / icon).string()})
        EXPECT_EQ(addIcon(helper->spacer(), name)->imageProperty("iconImage"), nullptr) << name;
}

TEST_F(Icons, OfSpecifierWithIconComeFromTheTargetPagesBundle) {
    const auto row = helper->button("Mail", nullptr);
    EXPECT_EQ(helper->specifier(row, icon), row);
    EXPECT_NE(row->imageProperty("iconImage"), nullptr);

    // A page class of the platform library: its bundle is that library's folder, where no such icon stands.
    const auto foreign = make<platform::PSListItemsController>();
    helper->setTarget(foreign.get());
    EXPECT_EQ(helper->specifier(helper->spacer(), icon)->imageProperty("iconImage"), nullptr);
}

} // namespace
