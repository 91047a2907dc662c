#include "settings/host/Host.h"

#include "link/Messages.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSCondition.h"
#include "platform/messaging/Dispatch.h"

#include <algorithm>
#include <future>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

namespace settings {

using platform::Result;

namespace {

Result<void> openBundle(Navigation& navigation, const Launch& launch) {
    const auto bundle = platform::NSBundle::bundleWithPath(launch.bundle);
    if (!bundle) return Result<void>::failure("there is no settings bundle at " + launch.bundle.string());
    if (const Result<void> loaded = bundle->load(); !loaded)
        return Result<void>::failure("the settings bundle cannot be loaded: " + loaded.error());

    const bool first = launch.page.empty() || launch.page.front() == '/';
    const platform::Class firstPage = bundle->principalClass();
    const platform::Class page = first ? firstPage : platform::NSClassFromString(launch.page);
    if (!page) {
        return Result<void>::failure(first ? "the settings bundle " + launch.bundle.string() + " names no page"
                                           : "there is no page class " + launch.page);
    }
    // The first page has no row that opened it and could give it a title.
    const std::string firstTitle = bundle->bundlePath().stem().string();
    if (launch.byWay && firstPage && page != firstPage && navigation.openByWay(firstPage, firstTitle, page)) return {};
    if (!navigation.open(page, page == firstPage ? firstTitle : page->name))
        return Result<void>::failure(page->name + " makes no page");
    // A way ends early where a page has no such row any more.
    std::istringstream way(first ? launch.page : "");
    std::string name;
    std::getline(way, name, '/');
    while (std::getline(way, name, '/') && navigation.openFromRow(name)) {
    }
    return {};
}

} // namespace

bool waitsForTweak() {
    return platform::NSCondition::waiting() > 0; // nothing else in a page waits on a condition
}

std::string whatBlocks() {
    if (waitsForTweak()) return "the tweak to answer \"" + std::string(lumora::kRequestTweakSettings) + "\"";
    if (const auto tried = platform::beingTried(); !tried.empty()) return "lumora-probe to try " + tried.string();
    return {};
}

std::string whatBlocks(const std::string& page) {
    const std::string other = whatBlocks();
    return other.empty() ? "the page \"" + page + "\", which is not ready yet" : other;
}

Host::Host(Navigation::Show show) : navigation_(std::move(show)) {
    platform::startMainThread(); // of however many hosts: the tests have several
}

void Host::launch(Launch launch, std::function<void(Result<void>)> done) {
    post([launch = std::move(launch), done = std::move(done)](Navigation& navigation) {
        navigation.setContentSize(launch.contentSize);
        done(openBundle(navigation, launch));
    });
}

void Host::post(std::function<void(Navigation&)> work) {
    platform::dispatch_async(platform::dispatch_get_main_queue(),
                             [this, work = std::move(work)] { navigation_.run(work); });
}

void Host::finish(std::chrono::milliseconds atMost) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    catchUp(deadline);
    // What the workers hand back may lead to more work, once: a message that was refused is kept.
    for (int round = 0; round < 2; ++round) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        platform::dispatch_wait_until_idle(std::max(left, std::chrono::milliseconds(0)));
        catchUp(deadline);
    }
}

void Host::catchUp(std::chrono::steady_clock::time_point deadline) {
    const auto done = std::make_shared<std::promise<void>>(); // outlives this call when the main thread is blocked
    post([done](Navigation&) { done->set_value(); });
    done->get_future().wait_until(deadline);
}

} // namespace settings
