#include "history/Timeline.h"

#include <algorithm>
#include <map>
#include <utility>

using platform::Dictionary;
using platform::Value;

namespace lumora {

Timeline::Timeline(std::vector<ChangeRecord> records, Dictionary present, const Dictionary& defaults)
    : records_(std::move(records)), present_(std::move(present)) {
    std::map<std::string_view, std::size_t> byKey; // keys may come from anybody
    for (std::size_t i = 0; i < records_.size(); ++i) {
        const ChangeRecord& record = records_[i];
        const auto [found, isNew] = byKey.emplace(record.key, tracks_.size());
        if (isNew) {
            const Value* now = present_.find(record.key);
            tracks_.push_back({record.key, {}, now ? std::optional(*now) : std::nullopt});
        }
        std::optional<Value> before = record.before;
        if (const Value* byDefault = before ? nullptr : defaults.find(record.key)) before = *byDefault;
        tracks_[found->second].steps.push_back({i, std::move(before), record.withheld != Withheld::nothing});
        trackOf_.push_back(found->second);
    }
    for (Track& track : tracks_)
        for (std::size_t i = track.steps.size(); i-- > 0;)
            if (track.steps[i].withheld)
                track.steps[i].before = i + 1 < track.steps.size() ? track.steps[i + 1].before : track.present;
}

std::size_t Timeline::placeOf(Moment moment) const {
    // The clock may have been set back in between, so that times need not grow.
    const auto last =
        std::find_if(records_.rbegin(), records_.rend(), [&](const ChangeRecord& one) { return one.time <= moment; });
    return static_cast<std::size_t>(records_.rend() - last);
}

std::optional<std::size_t> Timeline::recordOfRevision(std::int64_t revision) const {
    const auto found =
        std::lower_bound(records_.begin(), records_.end(), revision,
                         [](const ChangeRecord& one, std::int64_t wanted) { return one.revision < wanted; });
    if (found == records_.end() || found->first > revision) return std::nullopt;
    return static_cast<std::size_t>(found - records_.begin());
}

std::optional<std::size_t> Timeline::nextOfKey(std::size_t record) const {
    const Step* next = nextStep(tracks_[trackOf_[record]], record + 1);
    return next ? std::optional(next->record) : std::nullopt;
}

Dictionary Timeline::at(std::size_t place) const {
    Dictionary settings = present_;
    for (const Track& track : tracks_) {
        if (const auto& value = valueAt(track, place))
            settings.set(track.key, *value);
        else
            settings.remove(track.key);
    }
    return settings;
}

std::vector<std::string> Timeline::untoldAt(std::size_t place) const {
    std::vector<std::string> keys;
    for (const Track& track : tracks_)
        if (const Step* next = nextStep(track, place); next && next->withheld) keys.push_back(track.key);
    return keys;
}

const Timeline::Step* Timeline::nextStep(const Track& track, std::size_t place) {
    const auto found = std::lower_bound(track.steps.begin(), track.steps.end(), place,
                                        [](const Step& one, std::size_t wanted) { return one.record < wanted; });
    return found == track.steps.end() ? nullptr : &*found;
}

const std::optional<Value>& Timeline::valueAt(const Track& track, std::size_t place) {
    const Step* next = nextStep(track, place);
    return next ? next->before : track.present;
}

TimelineCursor::TimelineCursor(const Timeline& timeline)
    : timeline_(timeline), place_(timeline.records().size()), settings_(timeline.present()) {
}

std::vector<std::string> TimelineCursor::moveTo(std::size_t place) {
    const auto [from, to] = std::minmax({place_, place});
    place_ = place;
    std::vector<std::string> changed;
    if (to - from >= timeline_.tracks_.size()) {
        for (const Timeline::Track& track : timeline_.tracks_)
            move(track, changed);
    } else {
        for (std::size_t record = from; record < to; ++record)
            move(timeline_.tracks_[timeline_.trackOf_[record]], changed);
    }
    return changed;
}

void TimelineCursor::move(const Timeline::Track& track, std::vector<std::string>& changed) {
    const auto& value = Timeline::valueAt(track, place_);
    const Value* shown = settings_.find(track.key);
    if (value ? shown && *shown == *value : !shown) return;
    if (value)
        settings_.set(track.key, *value);
    else
        settings_.remove(track.key);
    changed.push_back(track.key);
}

} // namespace lumora
