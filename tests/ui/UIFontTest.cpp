#include "platform/ui/UIFont.h"

#include "tests/support/OpenedFiles.h"
#include "tests/support/TestFonts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace {

using platform::UIFont;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using tests::TestFonts;

std::vector<std::string> allNames() {
    std::vector<std::string> names;
    for (const std::string& family : UIFont::familyNames())
        std::ranges::copy(UIFont::fontNamesForFamilyName(family), std::back_inserter(names));
    return names;
}

/// Each test runs in a process of its own, which has not looked yet at what is installed.

TEST(UIFont, NamesFamiliesOnceAndTheirFontsByPostScriptName) {
    const TestFonts fonts({"twins", "collection"});
    EXPECT_THAT(UIFont::familyNames(), UnorderedElementsAre("Twin", "Collect Low", "Collect High"));
    EXPECT_THAT(UIFont::fontNamesForFamilyName("Collect Low"), ElementsAre("CollectLow-Regular"));
}

TEST(UIFont, NamesTwoFontsOfOneNameOnceAndAlwaysGivesTheSameOfThem) {
    const TestFonts fonts({"twins"});
    EXPECT_THAT(UIFont::familyNames(), ElementsAre("Twin"));
    EXPECT_THAT(UIFont::fontNamesForFamilyName("Twin"), ElementsAre("Twin-Regular"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(UIFont::familyNames().size(), 1U);
        EXPECT_EQ(UIFont::fontWithName("Twin-Regular", 12)->file(), fonts.files() / "twin1.ttf");
    }
}

TEST(UIFont, NamesAnInstanceOfAVariableFontOnceThatIsInstalledAsAFileTooAndAFontOfTwoFamilies) {
    const TestFonts fonts({"variable", "instance", "cousins"});
    EXPECT_THAT(UIFont::familyNames(), ElementsAre("Cousin One", "Vary")) << "a family without a name is none";
    const auto names = UIFont::fontNamesForFamilyName("Vary");
    EXPECT_EQ(names.size(), 3U);
    EXPECT_EQ(std::ranges::count(names, "Vary-Regular"), 1);
    EXPECT_EQ(UIFont::fontWithName("Vary-Regular", 12)->file(), fonts.files() / "regular.ttf");
    EXPECT_EQ(UIFont::fontWithName("Cousin-Regular", 12)->file(), fonts.files() / "cousin1.ttf");
}

TEST(UIFont, TellsFilesApartWhoseNamesDifferInCaseOnly) {
    const TestFonts fonts({"cases"});
    EXPECT_THAT(allNames(), UnorderedElementsAre("Alpha", "BETA", "alpha", "beta"));
    EXPECT_EQ(UIFont::fontWithName("beta", 12)->file(), fonts.files() / "beta.ttf");
    EXPECT_EQ(UIFont::fontWithName("BETA", 12)->file(), fonts.files() / "BETA.ttf");
}

TEST(UIFont, GoesByTheFullNameWithoutAPostScriptName) {
    const TestFonts fonts({"nameless", "arabic"});
    EXPECT_EQ(allNames().size(), 2U);
    EXPECT_THAT(UIFont::fontNamesForFamilyName("Name Less"), ElementsAre("Name Less Wide"));
    EXPECT_THAT(UIFont::fontNamesForFamilyName("خط عربي"), ElementsAre("خط عربي"));
    EXPECT_EQ(UIFont::fontWithName("Name Less Wide", 12)->file(), fonts.files() / "nameless.ttf");
    EXPECT_EQ(UIFont::fontWithName("Name-Less", 12), nullptr);
}

TEST(UIFont, TellsFontsOfAFamilyApartThatHaveNoPostScriptName) {
    const TestFonts fonts({"halfnameless"});
    EXPECT_THAT(allNames(), UnorderedElementsAre("Foo", "Foo Bold"));
    EXPECT_EQ(UIFont::fontWithName("Foo", 12)->file(), fonts.files() / "foo.ttf");
    EXPECT_EQ(UIFont::fontWithName("Foo Bold", 12)->file(), fonts.files() / "foobold.ttf");
}

TEST(UIFont, KeepsAPostScriptNameThatLooksMadeUp) {
    const TestFonts fonts({"hyphens=1"});
    EXPECT_THAT(allNames(), ElementsAre("Real-Name-0000"));
}

TEST(UIFont, MakesUpNoNameOfAFamilyWithSpaces) {
    const TestFonts fonts({"twowords"});
    EXPECT_THAT(allNames(), ElementsAre("Two Words"));
}

TEST(UIFont, ReadsABoundedNumberOfFilesHoweverManyNamesLookMadeUp) {
    const TestFonts fonts({"hyphens=300"});
    EXPECT_EQ(allNames().size(), 300U);
    const tests::OpenedFiles opened(fonts.files());
    EXPECT_EQ(UIFont::familyNames().size(), 300U);
    EXPECT_EQ(opened.names().size(), 200U);
}

TEST(UIFont, SurvivesAFileCutShortWhoseNameIsToBeReadInIt) {
    const TestFonts fonts({"hyphens=1"});
    const auto file = fonts.files() / "hyphens0000.ttf";
    EXPECT_THAT(allNames(), ElementsAre("Real-Name-0000"));
    // In place, of which fontconfig takes no notice.
    for (auto size = std::filesystem::file_size(file); size > 0; size -= std::min<std::uintmax_t>(size, 7)) {
        std::filesystem::resize_file(file, size);
        EXPECT_THAT(allNames(), ElementsAre(testing::AnyOf("Real-Name-0000", "Real Name 0000 Regular")));
    }
    std::filesystem::resize_file(file, 0);
    EXPECT_THAT(allNames(), ElementsAre("Real Name 0000 Regular"));
}

TEST(UIFont, CountsEachInstanceOfAVariableFont) {
    const TestFonts fonts({"variable"});
    const auto names = allNames();
    ASSERT_EQ(names.size(), 3U);
    std::vector<int> instances;
    for (const std::string& name : names) {
        const auto font = UIFont::fontWithName(name, 12);
        EXPECT_EQ(font->file(), fonts.files() / "vary.ttf");
        EXPECT_EQ(font->index() & 0xFFFF, 0);
        instances.push_back(font->index() >> 16);
    }
    EXPECT_THAT(instances, UnorderedElementsAre(0, 1, 3)) << "the second is what the font is without being varied";
}

TEST(UIFont, CountsAVariableFontWithoutInstancesOnce) {
    const TestFonts fonts({"uninstanced"});
    EXPECT_THAT(allNames(), ElementsAre("PlainVary-Regular"));
}

TEST(UIFont, KnowsTheFacesOfACollectionByTheirNumbers) {
    const TestFonts fonts({"collection"});
    EXPECT_EQ(allNames().size(), 2U);
    EXPECT_EQ(UIFont::fontWithName("CollectLow-Regular", 12)->index(), 0);
    EXPECT_EQ(UIFont::fontWithName("CollectHigh-Regular", 12)->index(), 1);
    EXPECT_EQ(UIFont::fontWithName("CollectHigh-Regular", 12)->file(), fonts.files() / "collection.ttc");
}

TEST(UIFont, GivesNothingForWhatIsNotInstalled) {
    const TestFonts fonts({"twins"});
    EXPECT_EQ(allNames().size(), 1U);
    EXPECT_EQ(UIFont::fontWithName("Twin", 12), nullptr) << "a family's name names no font";
    EXPECT_EQ(UIFont::fontWithName("", 12), nullptr);
    EXPECT_THAT(UIFont::fontNamesForFamilyName("Twins"), IsEmpty());
}

TEST(UIFontDeathTest, KnowsFontsByNameBeforeItIsAskedForTheFamilies) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process that has not been asked
    const auto isKnown = [] {
        const TestFonts fonts({"twins"});
        return UIFont::fontWithName("Twin-Regular", 12) != nullptr;
    };
    EXPECT_EXIT(_exit(isKnown() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(UIFont, SeesFontsThatComeAndGoWhileTheProgramRuns) {
    const TestFonts fonts({"twins"});
    EXPECT_THAT(UIFont::familyNames(), ElementsAre("Twin"));
    fonts.install({"nameless"});
    EXPECT_THAT(UIFont::familyNames(), ElementsAre("Name Less", "Twin"));
    std::filesystem::remove(fonts.files() / "nameless.ttf");
    EXPECT_THAT(UIFont::familyNames(), ElementsAre("Twin"));
    EXPECT_EQ(UIFont::fontWithName("Name Less Wide", 12), nullptr);
}

TEST(UIFont, HasNoFontsWhereNoneAreInstalled) {
    const TestFonts fonts({});
    EXPECT_THAT(UIFont::familyNames(), IsEmpty());
}

TEST(UIFont, LeavesOutFilesThatAreNoFonts) {
    const TestFonts fonts({"twins"});
    std::ofstream(fonts.files() / "broken.ttf") << "no font";
    EXPECT_THAT(allNames(), ElementsAre("Twin-Regular"));
}

TEST(UIFont, OpensNoFontOnceTheSystemKnowsThem) {
    const TestFonts fonts({"many=50"});
    EXPECT_EQ(allNames().size(), 50U);
    const tests::OpenedFiles opened(fonts.files());
    for (const std::string& name : allNames())
        EXPECT_NE(UIFont::fontWithName(name, 17), nullptr);
    EXPECT_THAT(opened.names(), IsEmpty());
}

TEST(UIFont, HasTheSizeAndTheNameThatItWasAskedFor) {
    const TestFonts fonts({"twins"});
    EXPECT_EQ(allNames().size(), 1U);
    const auto font = UIFont::fontWithName("Twin-Regular", 17.5);
    EXPECT_EQ(font->fontName(), "Twin-Regular");
    EXPECT_EQ(font->pointSize(), 17.5);
    EXPECT_EQ(UIFont::systemFontOfSize(15)->pointSize(), 15);
    EXPECT_EQ(UIFont::systemFontOfSize(15)->fontName(), "");
}

} // namespace
