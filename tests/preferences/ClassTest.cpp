#include "platform/foundation/Class.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/preferences/PSListController.h"
#include "platform/ui/UIView.h"
#include "tests/support/DeviceFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using platform::make;
using platform::NSClassFromString;

struct Reluctant final : platform::PSListController {
    bool init() override { return false; }
};
PLATFORM_CLASS(Reluctant)

struct Willing final : platform::PSListController {
    bool initialised = false;
    bool init() override { return initialised = PSListController::init(); }
};
PLATFORM_CLASS(Willing)

TEST(Class, IsFoundByItsNameAndMakesInitialisedObjects) {
    const platform::Class found = NSClassFromString("Willing");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->name, "Willing");
    const auto page = std::dynamic_pointer_cast<Willing>(found->make());
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->initialised);
}

TEST(Class, OfUnknownNameIsNull) {
    EXPECT_EQ(NSClassFromString("NoSuchController"), nullptr);
    EXPECT_EQ(NSClassFromString(""), nullptr);
}

TEST(Class, OfTwoWithOneNameTheFirstStays) {
    const platform::Class first = platform::registerClass({"Twin", [] { return make<Willing>(); }});
    const platform::Class second = platform::registerClass({"Twin", [] { return nullptr; }});
    EXPECT_EQ(first, second);
    EXPECT_NE(NSClassFromString("Twin")->make(), nullptr);
}

TEST(Make, GivesNullWhenInitYieldsNothing) {
    EXPECT_EQ(make<Reluctant>(), nullptr);
    EXPECT_EQ(NSClassFromString("Reluctant")->make(), nullptr);
}

TEST(Make, CallsInitWithFrameForAView) {
    const auto view = make<platform::UIView>(platform::CGRectMake(1, 2, 3, 4));
    EXPECT_EQ(view->frame(), platform::CGRectMake(1, 2, 3, 4));
}

TEST(DeviceRoot, ComesFromTheEnvironmentUntilAProgramSetsIt) {
    unsetenv("LUMORA_ROOT");
    EXPECT_EQ(platform::devicePath("/tmp/dpkgl.log"), "/tmp/dpkgl.log");
    setenv("LUMORA_ROOT", "/some/device", 1);
    EXPECT_EQ(platform::devicePath("/tmp/dpkgl.log"), "/some/device/tmp/dpkgl.log");
    platform::setDeviceRoot("/another");
    EXPECT_EQ(platform::devicePath("/tmp/dpkgl.log"), "/another/tmp/dpkgl.log");
    EXPECT_EQ(platform::chosenDeviceRoot(), "/another");
    platform::setDeviceRoot({});
    unsetenv("LUMORA_ROOT");
    EXPECT_EQ(platform::chosenDeviceRoot(), "");
}

TEST(DeviceRoot, IsFoundBesideTheProgramsOnceAnythingIsInstalledThere) {
    const tests::DeviceFolder prefix;
    platform::setDeviceRoot({});
    const std::filesystem::path programs = prefix.path() / "bin";
    const std::filesystem::path root = (programs / LUMORA_ROOT_FROM_PROGRAMS).lexically_normal();
    EXPECT_TRUE(root.string().starts_with(prefix.path().string())) << root;
    std::filesystem::create_directories(root);
    EXPECT_EQ(platform::installedDeviceRoot(programs), "");
    std::filesystem::create_directories(root / "Library/Nevo/Lumora/Plugins");
    EXPECT_EQ(platform::installedDeviceRoot(programs), root);
}

} // namespace
