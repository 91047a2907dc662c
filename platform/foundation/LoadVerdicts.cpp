#include "platform/foundation/LoadVerdicts.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/HelperProgram.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/RegularFile.h"
#include "platform/foundation/UserFolder.h"

#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <utility>

namespace platform {
namespace {

namespace fs = std::filesystem;
using Verdict = Probed::Verdict;

constexpr std::size_t kLargest = std::size_t{4} << 20;
constexpr std::string_view kFormat = "lumora-probed 2";

/// Tells a file and its states apart; nothing when there is no such file.
std::optional<std::string> stateOf(const fs::path& file, bool asCode) {
    struct stat facts {};
    if (::stat(file.c_str(), &facts) != 0 || (asCode && !S_ISREG(facts.st_mode))) return std::nullopt;
    std::ostringstream state;
    state << std::hex << facts.st_dev << ':' << facts.st_ino << ':' << facts.st_size;
    for (const timespec& time : {facts.st_mtim, facts.st_ctim})
        state << ':' << time.tv_sec << '.' << time.tv_nsec;
    return state.str();
}

/// All of the candidate's files; nothing when there is no shared object.
std::optional<std::string> stateOf(const LoadCandidate& candidate) {
    std::string states;
    for (const fs::path& file : candidate.files) {
        const bool asCode = &file == &candidate.files.back();
        const auto state = stateOf(file, asCode);
        if (!state && asCode) return std::nullopt;
        states += state.value_or("-") + ",";
    }
    return states;
}

/// What every verdict rests on beside the candidate's own files, as one line: the states of the probe, of the system's
/// libraries and of the settings bundle, which the probe loads first.
std::string groundsOfAll() {
    const auto bundle = NSBundle::bundleWithPath(standardBundle());
    std::string line(kFormat);
    for (const fs::path& file :
         {helperProgram("lumora-probe"), fs::path("/etc/ld.so.cache"), bundle ? bundle->executablePath() : fs::path()})
        line += " " + stateOf(file, true).value_or("none");
    return line + "\n";
}

std::uint64_t checksum(std::string_view text) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char c : text)
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return sum;
}

/// The file of earlier verdicts: a line for each, with a checksum of the whole. A file that is damaged, belongs to
/// another user or was written on other grounds counts as empty.
class KeptVerdicts {
  public:
    KeptVerdicts() : file_(userFolder("XDG_CACHE_HOME", ".cache") / "lumora/probed"), header_(groundsOfAll()) {
        read();
    }

    /// Untried unless there is a verdict on the candidate in this state.
    [[nodiscard]] Verdict find(const std::string& name, const std::string& state) const {
        const auto found = verdicts_.find(name);
        const bool known = found != verdicts_.end() && found->second.substr(2) == state;
        return known ? static_cast<Verdict>(found->second.front()) : Verdict::untried;
    }
    void keep(const std::string& name, const std::string& state, Verdict verdict) {
        fresh_[name] = std::string{static_cast<char>(verdict), ' '} + state;
    }
    /// False when some verdicts cannot be kept.
    [[nodiscard]] bool write() const {
        std::string text = header_;
        bool all = true;
        for (const auto& [name, verdict] : fresh_)
            all = append(text, name, verdict) && all;
        for (const auto& [name, verdict] : verdicts_)
            if (!fresh_.contains(std::string(name))) all = append(text, name, verdict) && all;
        text += std::to_string(checksum(text)) + "\n";
        if (file_.is_relative() || !makeFolders(file_.parent_path())) return false;
        // What a writer that was killed has left behind gives way. So does what another writes just now, whose verdicts
        // may be lost: the file that stands in the end is whole.
        const std::string made = file_.native() + ".new";
        ::unlink(made.c_str());
        FileDescriptor file(::open(made.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!file) return false;
        const bool written = file.write(text.data(), text.size());
        if (file.close() && written && ::rename(made.c_str(), file_.c_str()) == 0) return all;
        ::unlink(made.c_str());
        return false;
    }
    /// What all of the verdicts rest on.
    [[nodiscard]] const std::string& grounds() const { return header_; }

  private:
    static bool append(std::string& text, std::string_view name, std::string_view verdict) {
        constexpr std::size_t room = 64; // for what stands around it
        if (name.find('\n') != std::string_view::npos || text.size() + verdict.size() + name.size() + room >= kLargest)
            return false;
        text.append(verdict).append(" ").append(name).append("\n");
        return true;
    }
    void read() {
        text_ = contents();
        const std::string_view text = text_;
        const std::size_t end = text.size() < 2 ? std::string_view::npos : text.rfind('\n', text.size() - 2);
        if (end == std::string_view::npos || !text.starts_with(header_) ||
            text.substr(end + 1) != std::to_string(checksum(text.substr(0, end + 1))) + "\n")
            return;
        // "s STATE NAME": what was written whole needs no further doubts.
        for (std::size_t at = header_.size(); at <= end;) {
            const std::size_t stop = text.find('\n', at);
            const std::size_t name = text.find(' ', at + 2);
            verdicts_.emplace(text.substr(name + 1, stop - name - 1), text.substr(at, name - at));
            at = stop + 1;
        }
    }
    [[nodiscard]] std::string contents() const {
        if (file_.is_relative()) return {}; // of a user without a home
        const RegularFile file(file_);
        struct stat facts {};
        if (!file || ::fstat(file.descriptor(), &facts) != 0 || facts.st_uid != ::geteuid() ||
            (facts.st_mode & 0077) != 0 || file.size() > kLargest)
            return {};
        std::string bytes(static_cast<std::size_t>(file.size()), '\0');
        return file.read(0, bytes.data(), bytes.size()) ? bytes : std::string();
    }

    fs::path file_;
    std::string header_;
    std::string text_;
    std::unordered_map<std::string_view, std::string_view> verdicts_; ///< by name, in the text
    std::unordered_map<std::string, std::string> fresh_;
};

/// The verdicts that this process remembers by itself: those that stay undecided, and those that no file can keep.
/// Never destroyed.
class Remembered {
  public:
    static Remembered& inThisProcess() {
        static auto& remembered = *new Remembered;
        return remembered;
    }
    [[nodiscard]] Verdict find(const std::string& which) {
        const std::lock_guard lock(mutex_);
        const auto found = verdicts_.find(which);
        return found != verdicts_.end() ? found->second : Verdict::untried;
    }
    void add(std::string which, Verdict verdict) {
        const std::lock_guard lock(mutex_);
        verdicts_[std::move(which)] = verdict;
    }

  private:
    std::mutex mutex_;
    std::unordered_map<std::string, Verdict> verdicts_;
};

void complainOnce(const std::string& why) {
    static std::once_flag once;
    std::call_once(once, [&why] {
        std::fprintf(stderr, "lumora: plug-ins and the application list are left out, because %s\n", why.c_str());
    });
}

} // namespace

std::vector<bool> mayBeLoaded(ForeignCode kind, const std::vector<LoadCandidate>& candidates,
                              const ProbeLimits& limits) {
    struct Unknown {
        std::size_t index;
        std::string name;
        std::string state;
    };
    std::vector<bool> allowed(candidates.size(), false);
    std::vector<Unknown> unknown;
    std::vector<fs::path> paths;
    KeptVerdicts kept;
    Remembered& remembered = Remembered::inThisProcess();
    const auto key = [&kept](const Unknown& which) { return kept.grounds() + which.state + which.name; };
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto state = stateOf(candidates[i]);
        if (!state) continue;
        Unknown which{i, static_cast<char>(kind) + candidates[i].path.native(), *state};
        Verdict verdict = kept.find(which.name, which.state);
        if (verdict == Verdict::untried) verdict = remembered.find(key(which));
        allowed[i] = verdict == Verdict::safe;
        if (verdict != Verdict::untried) continue;
        paths.push_back(candidates[i].path);
        unknown.push_back(std::move(which));
    }
    if (unknown.empty()) return allowed;

    const std::vector<Probed> probed = probe(kind, paths, ProbeReport::verdict, limits);
    std::vector<std::pair<std::string, Verdict>> fresh;
    for (std::size_t i = 0; i < unknown.size(); ++i) {
        const Unknown& which = unknown[i];
        // The code that was tried may be another: it is refused this once.
        if (stateOf(candidates[which.index]) != which.state) continue;
        const Verdict verdict = probed[i].verdict;
        allowed[which.index] = verdict == Verdict::safe;
        if (verdict == Verdict::untried) {
            complainOnce(probed[i].why);
        } else if (verdict == Verdict::undecided) {
            remembered.add(key(which), verdict);
        } else {
            kept.keep(which.name, which.state, verdict);
            fresh.emplace_back(key(which), verdict);
        }
    }
    // Silent: without the file, the next start probes again, and nothing else is lost.
    if (!fresh.empty() && !kept.write())
        for (auto& [which, verdict] : fresh)
            remembered.add(std::move(which), verdict);
    return allowed;
}

} // namespace platform
