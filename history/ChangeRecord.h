#pragma once

#include "history/Moment.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// Why a record tells no values, only that they have changed.
enum class Withheld : unsigned char { nothing, secure, large };

/// One change of a setting; or several of it that followed one another closely, as when a slider is dragged.
struct ChangeRecord {
    std::int64_t revision = 0; ///< of the change, or of the last of several; 1 or more
    std::int64_t first = 0;    ///< that of the first of several, else the same
    Moment time{};             ///< of the last one
    std::string key{};
    std::optional<platform::Value> before{}; ///< nothing if it was not set
    std::optional<platform::Value> after{};  ///< nothing if it is not set
    Withheld withheld = Withheld::nothing;   ///< unless nothing is withheld, both values are missing

    friend bool operator==(const ChangeRecord&, const ChangeRecord&) = default;
};

/// Whether a record can have such revisions.
[[nodiscard]] bool isPossible(const ChangeRecord& record);

/// A record as messages, files and people have it, and the record of such a dictionary, whatever else is in it:
///
///     {"revision": 14, "first": 12, "time": "2026-11-20T18:36:00.123Z", "key": "kAppIconSize", "old": 70.0, "new": 75.0}
///     {"revision": 15, "time": "2026-11-20T18:37:10.004Z", "key": "kAutoUnlockPasscode", "withheld": "secure"}
///
/// "first" is there if it is not the revision; "old" and "new" if they were set. Any thread.
[[nodiscard]] platform::Dictionary documentOf(const ChangeRecord& record);
[[nodiscard]] platform::Result<ChangeRecord> recordOf(const platform::Value& document);

/// A record as a line of JSON, with its end. Fails for what JSON cannot hold, such as a text that is not UTF-8.
[[nodiscard]] platform::Result<std::string> lineOf(const ChangeRecord& record);

/// What a file of such lines holds.
struct RecordsRead {
    /// Where the line of a record stands, in bytes, and how long it is with its end.
    struct Place {
        std::size_t begin;
        std::size_t size;
    };

    std::vector<ChangeRecord> records{}; ///< their revisions grow
    std::vector<Place> places{};         ///< of each
    std::size_t foreign = 0;             ///< how many lines are no records, or not in their order
    std::size_t whole = 0;               ///< bytes up to the end of the last line that has one
};

/// Reads any bytes. A record that stands for several changes takes the place of the records of these that precede it,
/// so that a file needs only to be appended to. What follows the last line's end is no part of any record: it may have
/// been torn while it was written. Any thread.
[[nodiscard]] RecordsRead readRecords(std::string_view text);

/// Whether bytes could be the beginning of a line that lineOf() has made.
[[nodiscard]] bool isTornLine(std::string_view bytes);

} // namespace lumora
