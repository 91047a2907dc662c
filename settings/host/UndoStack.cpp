#include "settings/host/UndoStack.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace settings {

void UndoStack::add(Change change) {
    const bool wasUndone = !undone_.empty();
    undone_.clear();
    Change* const last = done_.empty() || wasUndone ? nullptr : &done_.back();
    const bool goesOn = last && change.continues && last->continues && last->group == 0 && change.group == 0 &&
                        last->page == change.page && last->identifier == change.identifier &&
                        change.made - last->made <= kPause;
    if (goesOn) {
        last->after = std::move(change.after);
        last->made = change.made;
        if (last->after == last->before) done_.pop_back();
        return;
    }
    done_.push_back(std::move(change));
    if (done_.size() > kMost) done_.erase(done_.begin());
}

void UndoStack::stepped(bool back, bool forget) {
    auto& from = back ? done_ : undone_;
    auto& to = back ? undone_ : done_;
    if (!forget) to.push_back(std::move(from.back()));
    from.pop_back();
}

void UndoStack::steppedInPart(bool back, const Sent& sent) {
    auto& from = back ? done_ : undone_;
    const auto isMade = [&](const SettingChange& change) {
        return std::ranges::find(sent.made, change.key, &SettingChange::key) != sent.made.end();
    };
    const auto isRefused = [&](const SettingChange& change) {
        return std::ranges::find(sent.refused, change.key, &Sent::Refused::key) != sent.refused.end();
    };
    Change part = from.back();
    std::erase_if(part.settings, std::not_fn(isMade));
    Change rest = std::move(from.back());
    from.pop_back();
    std::erase_if(rest.settings, [&](const SettingChange& change) { return isMade(change) || isRefused(change); });
    if (!part.settings.empty()) (back ? undone_ : done_).push_back(std::move(part));
    if (!sent.fault.empty() && !rest.settings.empty()) from.push_back(std::move(rest));
}

} // namespace settings
