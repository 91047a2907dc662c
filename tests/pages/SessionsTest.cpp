#include "lists/AUAppsListView.h"
#include "lists/AppsListView.h"
#include "lists/PluginsListController.h"
#include "lists/PluginsListView.h"
#include "pages/AppsController.h"
#include "pages/AutoUnlockController.h"
#include "pages/LSDateViewSettings.h"
#include "pages/LSPasscodeSettings.h"
#include "pages/LSSettingsController.h"
#include "pages/LumoraPreferences.h"
#include "pickers/ColorPickerView.h"
#include "pickers/FontView.h"

#include "tests/pages/RecordingTweak.h"
#include "tests/support/Deadline.h"
#include "tests/support/DeviceFolder.h"

#include <gtest/gtest.h>
#include <type_traits>
#include <vector>

namespace {

using namespace lumora;
using platform::Dictionary;
using platform::Value;

/// All classes that hold a session.
using Classes = testing::Types<LumoraPreferences, PluginsListController, AppsController, LSSettingsController,
                               AutoUnlockController, LSPasscodeSettings, LSDateViewSettings, PluginsListView,
                               AppsListView, AUAppsListView, FontView, ColorPickerView>;

int number = 0; ///< that the tweak sent last

/// What each class's session got, nil for none.
template<class... Class>
std::vector<Value> numbersOf(testing::Types<Class...> /*classes*/) {
    return {sessionOf<Class>().value("number")...};
}

template<class Class>
struct EveryClassWithASession : testing::Test {
    static void open() {
        if constexpr (std::is_base_of_v<platform::UIView, Class>) {
            const auto view = platform::make<Class>(platform::CGRectMake(0, 0, 390, 760));
            // Its page cuts what holds it.
            if constexpr (std::is_same_v<Class, ColorPickerView>) view->pickerView()->setDidChangeColorBlock(nullptr);
        } else {
            platform::make<Class>();
        }
    }

    const tests::DeviceFolder device;
    const tests::Deadline deadline{"the settings of a class that opens"};
};
TYPED_TEST_SUITE(EveryClassWithASession, Classes);

TYPED_TEST(EveryClassWithASession, HasOneThatNoOtherClassUses) {
    auto& tweak = tests::RecordingTweak::shared();
    const auto before = numbersOf(Classes());
    // A message that takes more than a second is dropped, as it has to be, and the class is opened once more then.
    auto after = before;
    for (int round = 0; round < 10 && after == before; ++round) {
        tweak.setSettings(Dictionary{{"number", ++number}});
        this->open();
        tweak.waitUntilIdle();
        after = numbersOf(Classes());
    }
    EXPECT_EQ(sessionOf<TypeParam>().value("number"), number);
    int changed = 0;
    for (std::size_t i = 0; i < after.size(); ++i)
        changed += after[i] != before[i] ? 1 : 0;
    EXPECT_EQ(changed, 1);
}

} // namespace
