#include "tweak/History.h"

#include "tweak/Defaults.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <map>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::Dictionary;
using platform::FileDescriptor;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

constexpr mode_t kHistoryMode = S_IRUSR | S_IWUSR;

Result<void> systemFailure() {
    return Result<void>::failure(std::generic_category().message(errno));
}

std::size_t sizeOf(const FileDescriptor& file) {
    struct stat status {};
    return ::fstat(file.number(), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

ChangeRecord withoutValues(ChangeRecord record, Withheld why) {
    record.before.reset();
    record.after.reset();
    record.withheld = why;
    return record;
}

/// A setting that is not set has nothing.
bool isSame(const std::optional<Value>& a, const std::optional<Value>& b) {
    return meansTheSame(a.value_or(nullptr), b.value_or(nullptr));
}

ChangeRecord withoutSecrets(ChangeRecord record) {
    const auto isSecret = [&](const std::optional<Value>& value) { return value && mayBeSecret(record.key, *value); };
    const bool secret = isSecure(record.key) || isSecret(record.before) || isSecret(record.after);
    return secret ? withoutValues(std::move(record), Withheld::secure) : record;
}

bool tellsASecret(const ChangeRecord& record) {
    return record.withheld != Withheld::secure && isSecure(record.key);
}

} // namespace

std::filesystem::path History::besideSettings(const std::filesystem::path& settings) {
    std::filesystem::path path = settings;
    if (path.extension() == ".plist") path.replace_extension();
    return path += ".history";
}

Moment History::systemClock() {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

Result<std::unique_ptr<History>> History::open(const std::filesystem::path& path, Log log, HistoryLimits limits,
                                               Clock now) {
    using Opened = Result<std::unique_ptr<History>>;
    FileDescriptor folder(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto fail = [&](const Result<void>& why) {
        return Opened::failure("cannot keep a history in " + path.string() + ": " + why.error());
    };
    if (!folder) return fail(systemFailure());
    std::unique_ptr<History> history(new History(path, std::move(folder), std::move(log), limits, std::move(now)));
    auto file = history->openFile(history->name_, O_CREAT);
    const auto loaded = file ? history->load(std::move(file).value()) : Result<void>::failure(file.error());
    if (!loaded) return fail(loaded);
    return history;
}

History::History(std::filesystem::path path, FileDescriptor folder, Log log, HistoryLimits limits, Clock now)
    : path_(std::move(path)), name_(path_.filename().string()), folder_(std::move(folder)), log_(std::move(log)),
      limits_(limits), now_(std::move(now)) {
}

std::int64_t History::revision() const {
    const std::lock_guard held(changing_);
    return revision_;
}

Result<FileDescriptor> History::openFile(const std::string& name, int flags) const {
    const auto fail = [](const char* why) { return Result<FileDescriptor>::failure(why); };
    // A pipe in its place makes nobody wait.
    constexpr int careful = O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    FileDescriptor file(::openat(folder_.number(), name.c_str(), careful | flags, kHistoryMode));
    if (!file && errno == ELOOP) return fail("it is a link");
    struct stat status {};
    if (!file || ::fstat(file.number(), &status) != 0) return Result<FileDescriptor>::failure(systemFailure().error());
    if (!S_ISREG(status.st_mode)) return fail("it is no regular file");
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? fail("another lumora-tweak uses it")
                                    : Result<FileDescriptor>::failure("cannot lock it: " + systemFailure().error());
    constexpr mode_t bits = 07777;
    if ((status.st_mode & bits) != kHistoryMode && ::fchmod(file.number(), kHistoryMode) != 0)
        return Result<FileDescriptor>::failure(systemFailure().error());
    return file;
}

Result<void> History::load(FileDescriptor file) {
    file_ = std::move(file);
    size_ = sizeOf(file_);
    lines_.clear();
    last_.reset();
    isTorn_ = false;
    if (size_ > limits_.largest) return setAside("it is too large");
    const Result<std::string> text = bytesFrom(0);
    if (!text) return Result<void>::failure(text.error());

    RecordsRead read = readRecords(text.value());
    const std::string_view rest = std::string_view(text.value()).substr(read.whole);
    const bool isTorn = isTornLine(rest);
    std::size_t foreign = read.foreign + (isTorn ? 0 : 1);
    for (std::size_t i = 0; i < read.records.size(); ++i) {
        if (tellsASecret(read.records[i])) {
            ++foreign;
            continue;
        }
        lines_.push_back({read.records[i].revision, read.places[i].begin, read.places[i].size});
        last_ = std::move(read.records[i]);
    }
    if (foreign > 0 && lines_.empty()) return setAside("lines that are no records: " + std::to_string(foreign));
    if (last_ && revision_ > 0 && last_->revision >= revision_) return setAside("its revisions are still to come");
    if (last_) revision_ = std::max(revision_, last_->revision);
    if (foreign > 0) log_(path_.string() + ": lines that are no records are left out: " + std::to_string(foreign));
    if (isTorn && !rest.empty()) {
        // Without room for it, what was torn becomes a line of its own.
        if (::ftruncate(file_.number(), static_cast<off_t>(read.whole)) == 0)
            size_ = read.whole;
        else
            isTorn_ = true;
    }
    if (foreign > 0 || lines_.size() > limits_.records || size_ > limits_.bytes)
        tell(writeAnew(limits_.records, limits_.bytes));
    return {};
}

Result<std::string> History::bytesFrom(std::size_t begin) const {
    std::string bytes(begin < size_ ? size_ - begin : 0, '\0');
    std::size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t some =
            ::pread(file_.number(), bytes.data() + got, bytes.size() - got, static_cast<off_t>(begin + got));
        if (some < 0 && errno == EINTR) continue;
        if (some < 0) return Result<std::string>::failure(systemFailure().error());
        if (some == 0) break;
        got += static_cast<std::size_t>(some);
    }
    bytes.resize(got);
    return bytes;
}

Result<void> History::setAside(const std::string& why) {
    const std::string aside = name_ + ".unreadable";
    if (::renameat(folder_.number(), name_.c_str(), folder_.number(), aside.c_str()) != 0) return systemFailure();
    log_(path_.string() + " holds no history (" + why + "): it is set aside as " + aside);
    auto opened = openFile(name_, O_CREAT | O_EXCL);
    if (!opened) return Result<void>::failure(opened.error());
    file_ = std::move(opened).value();
    size_ = 0;
    lines_.clear();
    last_.reset();
    return {};
}

bool History::isFolded(const ChangeRecord& record) const {
    if (!last_ || last_->key != record.key || last_->withheld != record.withheld) return false;
    // Taken back at once: to be seen, and to be taken back in its turn.
    const Setting* setting = last_->before ? nullptr : findSetting(record.key);
    const bool takesBack = isSame(record.after, last_->before) || (setting && record.after == setting->byDefault);
    if (takesBack && record.withheld == Withheld::nothing) return false;
    const auto apart = record.time - last_->time;
    return apart >= std::chrono::milliseconds(0) && apart < kFolding;
}

void History::record(std::int64_t revision, const std::string& key, const std::optional<Value>& before,
                     const std::optional<Value>& after) {
    ChangeRecord record{revision, revision, now_(), key, before, after};
    record = withoutSecrets(std::move(record));
    const std::lock_guard held(changing_);
    revision_ = revision;
    tell(append(record));
}

void History::catchUp(const Dictionary& set) {
    const std::lock_guard held(changing_);
    const Result<std::string> text = bytesFrom(0);
    if (!text) return tell(Result<void>::failure(text.error()));
    std::map<std::string, ChangeRecord> lastOfKey;
    for (ChangeRecord& record : readRecords(text.value()).records)
        lastOfKey[record.key] = std::move(record);
    for (const auto& [key, known] : lastOfKey) {
        if (known.withheld != Withheld::nothing || isSecure(key)) continue;
        const Value* value = set.find(key);
        const std::optional<Value> now = value ? std::optional(*value) : std::nullopt;
        if (isSame(known.after, now)) continue;
        ++revision_;
        tell(append(withoutSecrets({revision_, revision_, now_(), key, known.after, now})));
    }
}

Result<void> History::append(const ChangeRecord& record) {
    if (auto mended = mendIfMeddledWith(); !mended) return mended;
    bool folds = isFolded(record);
    ChangeRecord kept = record;
    if (folds) {
        kept.first = last_->first;
        kept.before = last_->before;
    }
    Result<std::string> line = lineOf(kept);
    if (!line || line.value().size() > limits_.line) {
        folds = false;
        kept = withoutValues(record, Withheld::large);
        line = lineOf(kept);
    }
    if (!line || line.value().size() > limits_.line) return Result<void>::failure("its key cannot be written");

    if (auto room = makeRoom(line.value().size() + 1); !room) return room;
    const std::string bytes = (isTorn_ ? "\n" : "") + line.value();
    const std::size_t begin = size_ + (isTorn_ ? 1 : 0);
    if (!file_.write(bytes.data(), bytes.size())) {
        Result<void> failed = systemFailure();
        if (::ftruncate(file_.number(), static_cast<off_t>(size_)) != 0) {
            isTorn_ = true;
            size_ = sizeOf(file_);
        }
        return failed;
    }
    isTorn_ = false;
    size_ = begin + line.value().size();
    if (folds && !lines_.empty()) lines_.pop_back();
    lines_.push_back({kept.revision, begin, line.value().size()});
    last_ = std::move(kept);
    return {};
}

Result<void> History::mendIfMeddledWith() {
    struct stat own {};
    struct stat there {};
    if (::fstat(file_.number(), &own) != 0) return systemFailure();
    const bool isThere = ::fstatat(folder_.number(), name_.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0;
    const bool isOwn = isThere && own.st_dev == there.st_dev && own.st_ino == there.st_ino;
    if (isOwn && static_cast<std::size_t>(own.st_size) == size_) return {};
    if (isThere && S_ISREG(there.st_mode) && there.st_size > 0) {
        auto file = isOwn ? Result<FileDescriptor>(std::move(file_)) : openFile(name_, 0);
        return file ? load(std::move(file).value()) : Result<void>::failure(file.error());
    }
    // A person who removes or empties the file wants to have no history, not to end it.
    return writeAnew(0, 0);
}

Result<void> History::makeRoom(std::size_t bytes) {
    if (lines_.size() < limits_.records && size_ + bytes <= limits_.bytes) return {};
    const Moment now = now_();
    if (retry_ && now < *retry_ && now + kRetry > *retry_) return Result<void>::failure("it is full");
    auto written = writeAnew(limits_.records * 4 / 5, limits_.bytes * 4 / 5);
    if (written)
        retry_.reset();
    else
        retry_ = now + kRetry;
    return written;
}

Result<void> History::writeAnew(std::size_t records, std::size_t bytes) {
    const Result<std::string> text = bytesFrom(0);
    if (!text) return Result<void>::failure(text.error());
    auto first = lines_.end();
    std::size_t total = 0;
    while (first != lines_.begin() && static_cast<std::size_t>(lines_.end() - first) < records &&
           total + std::prev(first)->size <= bytes)
        total += (--first)->size;

    std::vector<Line> lines(first, lines_.end());
    std::string kept;
    kept.reserve(total);
    for (Line& line : lines) {
        kept += std::string_view(text.value()).substr(line.begin, line.size);
        line.begin = kept.size() - line.size;
    }
    const std::string fresh = name_ + ".new";
    ::unlinkat(folder_.number(), fresh.c_str(), 0); // a process that was killed may have left it behind
    auto opened = openFile(fresh, O_CREAT | O_EXCL);
    if (!opened) return Result<void>::failure(opened.error());
    FileDescriptor file = std::move(opened).value();
    // Synced first: otherwise a power cut may leave an empty file under the name.
    if (!file.write(kept.data(), kept.size()) || ::fsync(file.number()) != 0 ||
        ::renameat(folder_.number(), fresh.c_str(), folder_.number(), name_.c_str()) != 0) {
        Result<void> failed = systemFailure();
        ::unlinkat(folder_.number(), fresh.c_str(), 0);
        return failed;
    }
    file_ = std::move(file);
    size_ = kept.size();
    lines_ = std::move(lines);
    isTorn_ = false;
    if (lines_.empty()) last_.reset();
    return {};
}

void History::tell(const Result<void>& done) {
    if (!done && !isFailing_)
        log_(path_.string() + " cannot be written: " + done.error() + "; changes are made without being recorded");
    isFailing_ = !done;
}

Result<History::Part> History::part(std::int64_t after) const {
    std::unique_lock held(changing_);
    const auto first =
        std::find_if(lines_.begin(), lines_.end(), [&](const Line& one) { return one.revision > after; });
    const Result<std::string> text = bytesFrom(first == lines_.end() ? size_ : first->begin);
    Part part;
    part.upTo = revision_;
    held.unlock();
    if (!text) return Result<Part>::failure("cannot read " + path_.string() + ": " + text.error());
    RecordsRead read = readRecords(text.value());
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < read.records.size(); ++i) {
        bytes += read.places[i].size;
        part.more = bytes > limits_.answer && !part.records.empty();
        if (part.more) break;
        part.records.push_back(withoutSecrets(std::move(read.records[i])));
    }
    if (part.more) part.upTo = part.records.back().revision;
    return part;
}

Result<void> History::clear() {
    const std::lock_guard held(changing_);
    Result<void> cleared = writeAnew(0, 0);
    return cleared ? cleared : Result<void>::failure("cannot write " + path_.string() + ": " + cleared.error());
}

} // namespace lumora
