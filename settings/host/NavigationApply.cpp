// How a navigation changes settings without a page of theirs, as a profile does.
#include "link/Messages.h"
#include "platform/messaging/Dispatch.h"
#include "platform/ui/UIView.h"
#include "settings/host/Navigation.h"

#include <utility>

namespace settings {

using namespace platform;

namespace {

/// By then all messages have come to an end.
constexpr std::chrono::duration<double> kTimeForMessages{lumora::kSendTimeout + lumora::kReceiveTimeout};

/// What a page has sent before comes before.
Sent sendInTurn(const Navigation::Send& send, const std::vector<SettingChange>& changes) {
    if (!waitForMessages()) return {.fault = "earlier changes are still on their way"};
    return send(changes);
}

} // namespace

bool waitForMessages() {
    return dispatch_wait_until_idle(std::chrono::duration_cast<std::chrono::milliseconds>(kTimeForMessages));
}

Sent Navigation::apply(const std::string& title, const std::vector<SettingChange>& changes) {
    noteChange();
    Sent sent = sendInTurn(send_, changes);
    if (sent.made.empty()) return sent;
    Change change;
    change.title = title;
    change.settings = sent.made;
    undoStack_.add(std::move(change));
    ++changes_;
    readAnew();
    return sent;
}

Navigation::Undone Navigation::sendAgain(const Change& change, bool back) {
    using Fate = Undone::Fate;
    std::vector<SettingChange> changes;
    for (const auto& [key, before, after] : change.settings) {
        const Value value = back ? orDefault({before, {}}, key).stored : after;
        if (!value.isNil()) changes.push_back({key, back ? after : before, value});
    }
    if (changes.empty()) return {Fate::neverSet, change.title};
    const Sent sent = sendInTurn(send_, changes);
    if (!sent.made.empty()) readAnew();
    if (sent.refused.empty() && sent.fault.empty()) return {Fate::done, change.title};
    const std::string& why = sent.fault.empty() ? sent.refused.front().why : sent.fault;
    return {Fate::refused, change.title, {}, why, sent};
}

/// Each class keeps a copy of the settings, which the answer to a new page of it renews. So one is made of every class, and
/// dropped; a view asks by itself once it is made.
void Navigation::readAnew() {
    for (const Class pageClass : opened_) {
        if (pageClass->name == "PSListItemsController") continue; // has no copy
        try {
            const auto page = std::dynamic_pointer_cast<PSListController>(pageClass->make());
            if (!page || !hosting_.contains(pageClass)) continue;
            if (page->view()) page->view()->setFrame({{0, 0}, contentSize_});
            page->viewWillAppear(false);
        } catch (...) { // is told once the user opens it
            continue;
        }
    }
    waitForMessages();
    for (OpenPage& page : pages_)
        if (!page.controller->hostsView()) look(page);
    publish();
    if (!pages_.empty() && pages_.back().controller->hostsView()) reload(pages_.back().id);
}

} // namespace settings
