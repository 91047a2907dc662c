#include "platform/foundation/Class.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/preferences/PSListController.h"
#include "platform/ui/UIView.h"
#include "tests/support/DeviceFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using namespace platform;

struct Reluctant final : PSListController {
    bool init() override { return false; }
};
PLATFORM_CLASS(Reluctant)

struct Willing final : PSListController {
    bool initialised = false;
    bool init() override { return initialised = PSListController::init(); }
};
PLATFORM_CLASS(Willing)

TEST(Class, IsFoundByItsNameAndMakesInitialisedObjects) {
    const Class found = NSClassFromString("Willing");
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
    const Class first = registerClass({"Twin", [] { return make<Willing>(); }});
    const Class second = registerClass({"Twin", [] { return nullptr; }});
    EXPECT_EQ(first, second);
    EXPECT_NE(NSClassFromString("Twin")->make(), nullptr);
}

TEST(Make, GivesNullWhenInitYieldsNothing) {
    EXPECT_EQ(make<Reluctant>(), nullptr);
    EXPECT_EQ(NSClassFromString("Reluctant")->make(), nullptr);
}

TEST(Make, CallsInitWithFrameForAView) {
    const auto view = make<UIView>(CGRectMake(1, 2, 3, 4));
    EXPECT_EQ(view->frame(), CGRectMake(1, 2, 3, 4));
}

TEST(DeviceRoot, ComesFromTheEnvironmentUntilAProgramSetsIt) {
    unsetenv("LUMORA_ROOT");
    EXPECT_EQ(devicePath("/tmp/dpkgl.log"), "/tmp/dpkgl.log");
    setenv("LUMORA_ROOT", "/some/device", 1);
    EXPECT_EQ(devicePath("/tmp/dpkgl.log"), "/some/device/tmp/dpkgl.log");
    setDeviceRoot("/another");
    EXPECT_EQ(devicePath("/tmp/dpkgl.log"), "/another/tmp/dpkgl.log");
    EXPECT_EQ(chosenDeviceRoot(), "/another");
    setDeviceRoot({});
    unsetenv("LUMORA_ROOT");
    EXPECT_EQ(chosenDeviceRoot(), "");
}

TEST(DeviceRoot, IsFoundBesideTheProgramsOnceAnythingIsInstalledThere) {
    const tests::DeviceFolder prefix;
    setDeviceRoot({});
    const std::filesystem::path programs = prefix.path() / "bin";
    const std::filesystem::path root = (programs / LUMORA_ROOT_FROM_PROGRAMS).lexically_normal();
    EXPECT_TRUE(root.string().starts_with(prefix.path().string())) << root;
    std::filesystem::create_directories(root);
    EXPECT_EQ(installedDeviceRoot(programs), "");
    std::filesystem::create_directories(root / "Library/Nevo/Lumora/Plugins");
    EXPECT_EQ(installedDeviceRoot(programs), root);
}

} // namespace
