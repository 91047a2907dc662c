#include "lockscreen/phone/Installation.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/Collation.h"
#include "platform/messaging/Dispatch.h"
#include "platform/services/ALApplicationList.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

using platform::ALApplicationList;
using platform::Data;
using platform::UIImageRef;

namespace lumora {
namespace {

std::vector<Application> readApplications() {
    std::vector<Application> applications;
    if (const auto* list = ALApplicationList::sharedApplicationList())
        for (auto& [identifier, name] : list->applications())
            applications.push_back({identifier, name});
    const platform::Collation& order = platform::Collation::ofUser();
    std::ranges::sort(applications, [&](const Application& a, const Application& b) {
        const int compared = order.localizedCaseInsensitiveCompare(a.name, b.name);
        return compared != 0 ? compared < 0 : a.identifier < b.identifier;
    });
    return applications;
}

std::vector<AppViewInfo> readViews(const platform::ProbeLimits& limits) {
    std::vector<AppViewInfo> views;
    for (PluginTexts& texts : askPlugins(limits))
        views.push_back({std::move(texts.identifier), std::move(texts.name), std::move(texts.appID), texts.secure,
                         texts.draws, std::move(texts.bundle)});
    return views;
}

/// On a thread of its own, as a plug-in that hangs would keep everybody waiting who needs the main thread.
void addViews(std::shared_ptr<void> library, Installed installed,
              const std::function<void(std::shared_ptr<const Installation>)>& ready,
              const platform::ProbeLimits& limits) {
    auto read = [=]() mutable {
        installed.views = readViews(limits);
        auto whole = std::make_shared<const Installation>(std::move(library), std::move(installed), true);
        platform::dispatch_async(platform::dispatch_get_main_queue(),
                                 [ready, whole = std::move(whole)] { ready(whole); });
    };
    try {
        std::thread(read).detach();
    } catch (const std::system_error&) { // there is none to be had
        read();
    }
}

/// An icon on its way.
struct Coming {
    std::function<void(const Data& png)> come;
    platform::PictureOrderRef order; ///< main thread only
};

/// On the main thread.
void ask(const std::shared_ptr<Coming>& coming, const std::string& identifier, int pixels) {
    // Icons come in two resolutions at once, so this is the second of half as many points.
    constexpr double resolution = 2;
    const double points = (pixels + 1) / 2; // NOLINT(bugprone-integer-division): whole points
    platform::PicturePatience patience(std::chrono::nanoseconds(0));
    const auto hand = [held = std::weak_ptr(coming)](const UIImageRef& icon) {
        if (const auto still = held.lock()) still->come(icon ? icon->encoded(resolution) : Data());
    };
    const auto* list = ALApplicationList::sharedApplicationList();
    const UIImageRef icon = list ? list->iconOfSize(points, identifier, patience, coming->order, hand) : nullptr;
    if (!coming->order) hand(icon);
}

} // namespace

void Installation::read(std::function<void(std::shared_ptr<const Installation>)> ready,
                        const platform::ProbeLimits& limits) {
    platform::startMainThread();
    platform::dispatch_async(platform::dispatch_get_main_queue(), [ready = std::move(ready), limits] {
        const std::shared_ptr<void> library = platform::openLibrary(platform::kApplicationListLibrary, limits);
        Installed installed{readApplications(), {}};
        ready(std::make_shared<const Installation>(library, installed, false));
        addViews(library, std::move(installed), ready, limits);
    });
}

std::shared_ptr<const Installation> Installation::readNow() {
    platform::startMainThread();
    std::promise<std::shared_ptr<void>> opened;
    Installed installed;
    platform::dispatch_async(platform::dispatch_get_main_queue(), [&] {
        auto library = platform::openLibrary(platform::kApplicationListLibrary, {});
        installed.applications = readApplications();
        opened.set_value(std::move(library));
    });
    const std::shared_ptr<void> library = opened.get_future().get();
    installed.views = readViews({});
    return std::make_shared<const Installation>(library, std::move(installed), true);
}

Installation::Installation(std::shared_ptr<void> library, Installed installed, bool isWhole)
    : library_(std::move(library)), installed_(std::move(installed)), isWhole_(isWhole) {
}

IconOrder Installation::icon(const std::string& identifier, int pixels,
                             std::function<void(const Data& png)> come) const {
    auto coming = std::make_shared<Coming>(Coming{std::move(come), nullptr});
    platform::dispatch_async(platform::dispatch_get_main_queue(), [held = std::weak_ptr(coming), identifier, pixels] {
        if (const auto still = held.lock()) ask(still, identifier, pixels);
    });
    return coming;
}

} // namespace lumora
