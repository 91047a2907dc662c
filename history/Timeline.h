#pragma once

#include "history/ChangeRecord.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// The settings at every moment that a history reaches back to, reckoned back from those of the present.
///
///     const Timeline timeline(records, settings, defaults);
///     timeline.at(timeline.placeOf(moment));   // the settings at that moment
///
/// A *place* in the history is the number of records that have been made by then: 0 is before the first record,
/// records().size() is the present. What a record withholds is not known before it: the value after it stands in, and
/// untoldAt() names the key. Immutable, so any thread may read it.
class Timeline {
  public:
    /// Records in their order, up to now; the settings as the tweak has them now; and the default of each setting that has
    /// one, which stands in where a setting was not set.
    Timeline(std::vector<ChangeRecord> records, platform::Dictionary present, const platform::Dictionary& defaults);

    [[nodiscard]] const std::vector<ChangeRecord>& records() const { return records_; }
    [[nodiscard]] const platform::Dictionary& present() const { return present_; }

    /// The place at that moment: behind the last record that is not later.
    [[nodiscard]] std::size_t placeOf(Moment moment) const;
    /// The record of the change with that revision, or the one that it is folded into; nothing if there is none.
    [[nodiscard]] std::optional<std::size_t> recordOfRevision(std::int64_t revision) const;
    /// The next record of the same key; nothing if there is none.
    [[nodiscard]] std::optional<std::size_t> nextOfKey(std::size_t record) const;

    /// All settings at a place, in time proportional to their number and not to that of the records.
    [[nodiscard]] platform::Dictionary at(std::size_t place) const;
    /// The keys that have been changed by records that withhold their values, so that those at the place are unknown.
    [[nodiscard]] std::vector<std::string> untoldAt(std::size_t place) const;

  private:
    friend class TimelineCursor;

    /// One change of a key, and the value until then.
    struct Step {
        std::size_t record;
        std::optional<platform::Value> before; ///< nothing if there was none, and no default
        bool withheld;
    };
    /// All changes of one key.
    struct Track {
        std::string key;
        std::vector<Step> steps;
        std::optional<platform::Value> present;
    };

    /// The step that changes the track next; null when none does.
    [[nodiscard]] static const Step* nextStep(const Track& track, std::size_t place);
    [[nodiscard]] static const std::optional<platform::Value>& valueAt(const Track& track, std::size_t place);

    std::vector<ChangeRecord> records_;
    platform::Dictionary present_;
    std::vector<Track> tracks_;
    std::vector<std::size_t> trackOf_; ///< of each record
};

/// The settings at a place of a timeline that is moved about, as by a slider: a move costs as much as there are records
/// between the two places or keys that have ever changed, whichever is less. One thread at a time; the timeline outlives
/// it.
///
///     TimelineCursor cursor(timeline);
///     for (const std::string& key : cursor.moveTo(place)) show(key, cursor.settings()[key]);
class TimelineCursor {
  public:
    /// In the present.
    explicit TimelineCursor(const Timeline& timeline);

    [[nodiscard]] std::size_t place() const { return place_; }
    [[nodiscard]] const platform::Dictionary& settings() const { return settings_; }
    /// Goes to a place, up to the number of records, and tells the keys whose values differ from before.
    std::vector<std::string> moveTo(std::size_t place);

  private:
    void move(const Timeline::Track& track, std::vector<std::string>& changed);

    const Timeline& timeline_;
    std::size_t place_;
    platform::Dictionary settings_;
};

} // namespace lumora
