#pragma once

#include "history/ChangeRecord.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"
#include "tweak/Log.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace lumora {

struct HistoryLimits {
    std::size_t records = 5'000;
    std::size_t bytes = 4'000'000;   ///< of the file
    std::size_t largest = 8'000'000; ///< in bytes; a larger file is somebody else's
    std::size_t line = 256U << 10U;  ///< of a record, in bytes
    std::size_t answer = 1U << 20U;  ///< of the records of one part(), in bytes of the file
};

/// Keeps a record of each change of the settings, in a file of its own: a line of JSON each, appended.
///
/// Changes of one key that follow one another within kFolding are one record: its line stands for theirs, too. One that
/// takes back the record before it is a record of its own. Of a passcode, and of values that are too long, it is recorded only that they have changed. When the file is full, it is
/// written anew without what is not needed any more and without the oldest fifth of the records.
///
/// A file that somebody else puts in its place is read with the next change, and set aside if its revisions are still to
/// come. One that is removed or emptied begins anew.
///
/// A change is made whether or not it can be recorded: what goes wrong is one line in the log, until all is well again.
/// Any thread.
class History {
  public:
    static constexpr std::chrono::milliseconds kFolding{2000};
    /// How long it waits to write the file anew after that has failed.
    static constexpr std::chrono::seconds kRetry{60};
    using Clock = std::function<Moment()>;

    /// Where the history of such a settings file is: "com.nevo.lumora.history" beside "com.nevo.lumora.plist".
    [[nodiscard]] static std::filesystem::path besideSettings(const std::filesystem::path& settings);

    /// Opens the file, in a folder that is there, or makes it. A line that was torn by the death of the process is dropped;
    /// so are others that are no records, with a line in the log. A file of which nothing is a record is set aside. Fails
    /// when another process has it open, and for what is no regular file, such as a link.
    [[nodiscard]] static platform::Result<std::unique_ptr<History>>
    open(const std::filesystem::path& path, Log log, HistoryLimits limits = {}, Clock now = systemClock);
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    /// That of the last change that it knows of; 0 before the first one.
    [[nodiscard]] std::int64_t revision() const;

    /// Records a change. Revisions grow.
    void record(std::int64_t revision, const std::string& key, const std::optional<platform::Value>& before,
                const std::optional<platform::Value>& after);

    /// Records what has changed without it: each setting that was recorded and has another value among those that are
    /// set. Called once, before the first change.
    void catchUp(const platform::Dictionary& set);

    struct Part {
        std::vector<ChangeRecord> records{};
        std::int64_t upTo = 0; ///< the revision up to which they tell of everything
        bool more = false;     ///< there are later ones, for which one has to ask again
    };
    /// The records that come after a revision, from the oldest, as many as fit into an answer.
    [[nodiscard]] platform::Result<Part> part(std::int64_t after) const;

    /// Forgets all records, but not the revision.
    [[nodiscard]] platform::Result<void> clear();

  private:
    /// A record that is kept, and its line in the file.
    struct Line {
        std::int64_t revision;
        std::size_t begin;
        std::size_t size;
    };

    History(std::filesystem::path path, platform::FileDescriptor folder, Log log, HistoryLimits limits, Clock now);
    static Moment systemClock();

    [[nodiscard]] platform::Result<platform::FileDescriptor> openFile(const std::string& name, int flags) const;
    [[nodiscard]] platform::Result<void> load(platform::FileDescriptor file);
    [[nodiscard]] platform::Result<std::string> bytesFrom(std::size_t begin) const;
    [[nodiscard]] platform::Result<void> setAside(const std::string& why);
    [[nodiscard]] bool isFolded(const ChangeRecord& record) const;
    [[nodiscard]] platform::Result<void> append(const ChangeRecord& record);
    [[nodiscard]] platform::Result<void> mendIfMeddledWith();
    [[nodiscard]] platform::Result<void> makeRoom(std::size_t bytes);
    [[nodiscard]] platform::Result<void> writeAnew(std::size_t records, std::size_t bytes);
    void tell(const platform::Result<void>& done);

    std::filesystem::path path_;
    std::string name_;
    platform::FileDescriptor folder_;
    Log log_;
    HistoryLimits limits_;
    Clock now_;

    mutable std::mutex changing_; ///< guards what follows
    platform::FileDescriptor file_;
    std::size_t size_ = 0; ///< of the file
    std::vector<Line> lines_;
    std::optional<ChangeRecord> last_;
    std::int64_t revision_ = 0;
    bool isTorn_ = false; ///< the file ends within a line, because it could not be written whole
    bool isFailing_ = false;
    std::optional<Moment> retry_; ///< not written anew before then
};

} // namespace lumora
