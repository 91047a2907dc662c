#include "lists/PluginDiscovery.h"

#include <lumora/KitTag.h>

#include "platform/foundation/NSBundle.h"
#include "tests/lists/PluginFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using lumora::discoverPlugins;
using lumora::PluginExamination;
using platform::NSBundle;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::askedOf;
using tests::namesOf;
namespace fs = std::filesystem;

struct PluginDiscovery : testing::Test {
    tests::PluginFolder plugins;
};

TEST_F(PluginDiscovery, AsksEachTextTwiceAndForThePageOnlyWhenThatMatters) {
    plugins.add("good-1.bundle", "TestPlugin");
    const std::string texts = "sharedInstance identifier identifier name name appID appID ";
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    EXPECT_EQ(askedOf(plugins.module("good-1.bundle")), texts);
    EXPECT_EQ(discoverPlugins(true).size(), 0U);
    EXPECT_EQ(askedOf(plugins.module("good-1.bundle")), texts + texts + "settingsController ");
}

TEST_F(PluginDiscovery, StopsAskingAtTheFirstTextThatIsMissing) {
    plugins.addEach({"null-identifier-1", "no-appID-1"});
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_EQ(askedOf(plugins.module("null-identifier-1.bundle")), "sharedInstance identifier ");
    EXPECT_EQ(askedOf(plugins.module("no-appID-1.bundle")), "sharedInstance ") << "all three must be answered first";
}

TEST_F(PluginDiscovery, KeepsAPlugInThatAnswersNilOnlyTheSecondTime) {
    plugins.add("second-null-appID-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U) << "nil is not the empty text";
}

TEST_F(PluginDiscovery, LooksAtDirectEntriesWithTheExactExtensionOnly) {
    for (const char* folder : {"Foo.bundle", "Foo.Bundle", "Foo.bundles", "bundle", ".bundle", "deeper/Bar.bundle"})
        plugins.add(folder, "TestPlugin");
    plugins.write(plugins.path() / "README", "not a bundle");
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("Foo"));
}

TEST_F(PluginDiscovery, FindsNothingInAFolderThatIsEmptyOrMissingOrNone) {
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    fs::remove(plugins.path());
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    plugins.write(plugins.path(), "file");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
}

TEST_F(PluginDiscovery, ScansAnewAtEachCall) {
    plugins.add("one-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    plugins.add("two-2.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 2U);
    fs::remove_all(plugins.path() / "one-1.bundle");
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("two-2"));
}

TEST_F(PluginDiscovery, KeepsPlugInsOfEqualIdentifiers) {
    plugins.add("one.bundle", "PagePlugin");
    plugins.add("two.bundle", "PagePlugin");
    const auto found = discoverPlugins(true);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].identifier(), found[1].identifier());
}

TEST_F(PluginDiscovery, TakesAPlugInWithoutAUsablePageAsOneWithoutSettings) {
    plugins.addEach({"no-page-1", "good-1", "other-tag-1", "null-tag-1", "null-page-1", "throwing-page-1"});
    EXPECT_EQ(discoverPlugins(false).size(), 6U);
    EXPECT_THAT(discoverPlugins(true), IsEmpty());
    const PluginExamination examination(NSBundle::bundleWithPath(plugins.path() / "other-tag-1.bundle"));
    const auto page = examination.plugin().value().settingsController();
    ASSERT_FALSE(page);
    EXPECT_THAT(page.error(), HasSubstr("made with kit 0, another compiler"));
    EXPECT_THAT(page.error(), HasSubstr(LUMORA_KIT_TAG));
}

TEST_F(PluginDiscovery, KeepsCodeAndObjectsAfterTheBundleWasUnloaded) {
    const auto bundle = NSBundle::bundleWithPath(plugins.add("good-1.bundle", "TestPlugin"));
    EXPECT_EQ(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL), nullptr) << "not before it is loaded";
    EXPECT_FALSE(bundle->unload());
    ASSERT_TRUE(bundle->load());
    const void* table = bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL);
    ASSERT_NE(table, nullptr);
    EXPECT_TRUE(bundle->unload());
    EXPECT_FALSE(bundle->unload());
    EXPECT_EQ(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL), nullptr);
    const auto* object = static_cast<const LumoraPrincipalClass*>(table)->sharedInstance();
    EXPECT_STREQ(object->identifier(), "test.good-1");
    ASSERT_TRUE(bundle->load());
    EXPECT_EQ(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL), table);
}

TEST(KitTag, NamesKitCompilerAndStandardLibrary) {
    EXPECT_THAT(std::string(LUMORA_KIT_TAG),
                testing::MatchesRegex("kit [0-9]+, (gcc|clang) [0-9]+, lib(std)?c\\+\\+ .*[0-9a-z]+"));
}

} // namespace
