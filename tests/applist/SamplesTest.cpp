#include "applist/ApplicationList.h"

#include "decoder/Picture.h"
#include "tests/applist/Desktop.h"

#include <map>

namespace {

namespace fs = std::filesystem;

const fs::path data = fs::path(LUMORA_TEST_ROOT) / "usr/share";

struct Samples : testing::Test {
    applist::ApplicationList list{{{data / "applications"}, {data / "icons"}, {}}, "hicolor"};
};

TEST_F(Samples, AreSomeTwentyApplicationsWithNamesInSeveralLanguages) {
    const auto applications = list.applications();
    const std::map<std::string, std::string> names(applications.begin(), applications.end());
    EXPECT_GE(names.size(), 20);
    EXPECT_EQ(names.at("org.lumora.samples.Books"), "Bücher");
    EXPECT_EQ(names.at("org.lumora.samples.Weather"), "Wetter");
    for (const char* name : {"Notes", "Clock", "Music"})
        EXPECT_TRUE(names.contains("org.lumora.samples." + std::string(name))) << name;
}

TEST_F(Samples, HaveEachAnIconOfItsOwn) {
    std::map<std::vector<std::uint8_t>, std::string> icons;
    for (const auto& [identifier, name] : list.applications()) {
        const std::vector<std::uint8_t> png = decoder::drawPicture(list.iconFile(29, 2, identifier), 58);
        const tests::Points points = tests::decoded(png);
        ASSERT_EQ(points.width, 58) << identifier;
        EXPECT_EQ(points.at(0, 0) & 0xFF, 0) << identifier << " has no rounded corner";
        EXPECT_EQ(points.at(29, 1) & 0xFF, 0xFF) << identifier << " has no plate";
        EXPECT_TRUE(icons.emplace(png, identifier).second) << identifier << " looks like " << icons.at(png);
    }
}

} // namespace
