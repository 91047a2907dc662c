#include "lockscreen/phone/Installation.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/messaging/Dispatch.h"
#include "tests/lists/PluginFolder.h"
#include "tests/services/InstalledLibrary.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>

namespace {

using namespace lumora;
using namespace std::chrono_literals;
using platform::Data;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::awaited;

using InstallationRef = std::shared_ptr<const Installation>;

/// Short enough for a test of what hangs, and for a slow machine long enough for what does not.
constexpr platform::ProbeLimits kShort{6s, 1s};

/// What is told of it, up to the whole.
std::vector<InstallationRef> readInParts() {
    struct Told {
        std::vector<InstallationRef> parts;
        std::promise<void> whole;
    };
    const auto told = std::make_shared<Told>();
    Installation::read(
        [told](InstallationRef part) {
            told->parts.push_back(std::move(part));
            if (told->parts.back()->isWhole()) told->whole.set_value();
        },
        kShort);
    awaited(told->whole.get_future(), "the installation");
    return told->parts;
}

InstallationRef read() {
    return readInParts().back();
}

std::vector<std::string> viewsOf(const Installation& installation) {
    std::vector<std::string> names;
    for (const AppViewInfo& view : installation.installed().views)
        names.push_back(view.identifier + ", " + view.name + ", " + view.appIdentifier);
    return names;
}

std::vector<std::string> applicationsOf(const Installation& installation) {
    std::vector<std::string> names;
    for (const Application& application : installation.installed().applications)
        names.push_back(application.identifier + ", " + application.name);
    return names;
}

/// The icon's edge in pixels; 0 without an icon.
int edgeOfIcon(const Installation& installation, const std::string& identifier, int pixels) {
    const auto come = std::make_shared<std::promise<Data>>();
    const IconOrder order = installation.icon(identifier, pixels, [come](const Data& png) { come->set_value(png); });
    const Data png = awaited(come->get_future(), "the icon");
    constexpr std::size_t widthAt = 18; // the lower two bytes of the width in a PNG file's header
    return png.size() > widthAt + 1 ? png.at(widthAt) * 256 + png.at(widthAt + 1) : 0;
}

struct PhoneViews : testing::Test {
    tests::PluginFolder plugins;
};

TEST_F(PhoneViews, AreThoseOfThePlugInsInTheirOrder) {
    plugins.addEach({"good-2", "good-1"});
    plugins.write(plugins.path() / "README", "no bundle");
    EXPECT_THAT(viewsOf(*read()), ElementsAre("test.good-1, good-1, org.example.Application",
                                              "test.good-2, good-2, org.example.Application"));
}

TEST_F(PhoneViews, LeaveOutWhatEndsOrHangsItsProcessOrSaysNothing) {
    plugins.addEach({"good-1", "aborting-1", "exiting-at-name-1", "hanging-at-load-1", "looping-1", "empty-name-1",
                     "null-identifier-1", "throwing-1", "good-2"});
    plugins.write(plugins.add("cut-1.bundle", "TestPlugin") / "Code", "no shared object");
    EXPECT_THAT(viewsOf(*read()), ElementsAre("test.good-1, good-1, org.example.Application",
                                              "test.good-2, good-2, org.example.Application"));
}

TEST_F(PhoneViews, KeepNobodyFromTheMainThreadWhileAPlugInHangs) {
    plugins.addEach({"looping-1"});
    struct Told {
        bool wentOn = false; // main thread only
        std::promise<bool> before;
    };
    const auto told = std::make_shared<Told>();
    Installation::read(
        [told](const InstallationRef& part) {
            if (part->isWhole()) return told->before.set_value(told->wentOn);
            platform::dispatch_async(platform::dispatch_get_main_queue(), [told] { told->wentOn = true; });
        },
        kShort);
    EXPECT_TRUE(awaited(told->before.get_future(), "the installation"));
}

TEST_F(PhoneViews, LoadNoPlugIn) {
    plugins.addEach({"good-1"});
    ASSERT_EQ(viewsOf(*read()).size(), 1U);
    EXPECT_EQ(tests::askedOf(plugins.module("good-1.bundle")), "not loaded");
}

TEST_F(PhoneViews, AreNoneWithoutAFolder) {
    std::filesystem::remove_all(plugins.path());
    EXPECT_THAT(viewsOf(*read()), IsEmpty());
}

struct PhoneApplications : tests::InstalledLibrary {};

TEST_F(PhoneApplications, AreToldBeforeThePlugInsAreAsked) {
    installOdd("");
    const auto parts = readInParts();
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_FALSE(parts[0]->isWhole());
    EXPECT_EQ(applicationsOf(*parts[0]), applicationsOf(*parts[1]));
    EXPECT_EQ(applicationsOf(*parts[0]).size(), 2U);
}

TEST_F(PhoneApplications, ComeByTheirNames) {
    device.write("b.two\tzebra\na.one\tÉclair\nc.three\tapple\nd.four\tapple\n",
                 std::filesystem::path(tests::appListPath).replace_filename("applications.txt"));
    install(FAKE_APPLIST);
    EXPECT_THAT(applicationsOf(*read()),
                ElementsAre("c.three, apple", "d.four, apple", "a.one, Éclair", "b.two, zebra"));
}

TEST_F(PhoneApplications, AreWhatAnOddLibraryTellsInUtf8) {
    installOdd("");
    EXPECT_THAT(applicationsOf(*read()), ElementsAre("empty.name, ", "good, Güte"));
}

TEST_F(PhoneApplications, AreNoneIfTheLibraryIsMissingBrokenOrDangerous) {
    EXPECT_THAT(applicationsOf(*read()), IsEmpty());
    device.write("no library", tests::appListPath);
    EXPECT_THAT(applicationsOf(*read()), IsEmpty());
    installOdd("applications");
    EXPECT_THAT(applicationsOf(*read()), IsEmpty());
    installOdd("looping-load");
    EXPECT_THAT(applicationsOf(*read()), IsEmpty());
}

/// The device root that the build makes.
struct SampleIcons : testing::Test {
    SampleIcons() {
        platform::setDeviceRoot(LUMORA_TEST_ROOT);
        installation = read();
    }
    ~SampleIcons() override { platform::setDeviceRoot({}); }

    InstallationRef installation;
};

TEST_F(SampleIcons, AreDrawnAsLargeAsTheyAreWanted) {
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", 210), 210);
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", 105), 106);
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", 210), 210) << "again";
}

TEST_F(SampleIcons, AreEmptyForAStranger) {
    EXPECT_EQ(edgeOfIcon(*installation, "org.example.Stranger", 100), 0);
    EXPECT_EQ(edgeOfIcon(*installation, "", 100), 0);
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", 0), 0);
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", -8), 0);
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", 1 << 20), 0);
}

TEST_F(SampleIcons, DoNotComeOnceTheirOrderIsLetGo) {
    const auto come = std::make_shared<int>(0);
    std::promise<void> held;
    platform::dispatch_async(platform::dispatch_get_main_queue(),
                             [until = held.get_future().share()] { until.wait(); });
    installation->icon("org.lumora.samples.Mail", 90, [come](const Data&) { ++*come; }).reset();
    held.set_value();
    EXPECT_EQ(edgeOfIcon(*installation, "org.lumora.samples.Mail", 88), 88);
    EXPECT_EQ(*come, 0);
}

} // namespace
