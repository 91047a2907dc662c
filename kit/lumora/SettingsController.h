#pragma once

#include <lumora/KitTag.h>

#include "pages/base/SettingsPage.h"

#include <memory>

namespace lumora {

/// True if the library of the kit that the process has loaded was made with this tag. Any thread.
[[nodiscard]] LUMORA_KIT_EXPORT bool kitIs(const char* tag);

} // namespace lumora

/// Makes a plug-in's page class its settings controller; stands once in a source file, after the page's class.
///
///     namespace {
///     class ClockPage final : public lumora::SettingsPage { … };
///     LUMORA_SETTINGS_CONTROLLER(ClockPage, settingsController)
///     const LumoraAppView clockView{LUMORA_APP_VIEW_VERSION, identifier, name, appID, settingsController, 0, nullptr};
///     }
///
/// It defines the function that is named second. Settings makes the page on its main thread each time the link is
/// tapped. Two plug-ins may use the same class name: pages of plug-ins are never looked up by name.
#define LUMORA_SETTINGS_CONTROLLER(Page, function)                                                                     \
    static const LumoraSettingsController* function() {                                                                \
        static const auto& pageClass = *new platform::ClassRecord{                                                     \
            #Page, []() -> std::shared_ptr<platform::NSObject> { return platform::make<Page>(); }};                    \
        static const LumoraSettingsController controller{                                                              \
            lumora::kitIs(LUMORA_KIT_TAG) ? LUMORA_KIT_TAG : LUMORA_KIT_TAG " on a kit of another make", &pageClass};  \
        return &controller;                                                                                            \
    }
