#include "search/IndexChild.h"

#include "platform/foundation/ChildProcess.h"
#include "platform/foundation/Unicode.h"
#include "search/IndexFile.h"
#include "search/PageLine.h"
#include "search/PrivateFolder.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <utility>

namespace search {

using platform::ChildProcess;
using platform::Result;
using Heard = ChildProcess::Heard;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// The memory that the process may have: as much as the one in which plug-ins are tried.
constexpr std::uint64_t kIndexMemory = std::uint64_t{4} << 30U;
/// How long the process may take to begin.
constexpr std::chrono::seconds kToBegin{10};
/// How long a stop may go unseen.
constexpr std::chrono::milliseconds kLook{50};

/// A page that a process has begun to make.
struct BegunPage {
    std::string name; ///< by which another process goes on behind it; "s…" for the page of a plug-in
    std::string title;
    [[nodiscard]] bool isOfPlugin() const { return name.starts_with('s'); }
};

std::string howItEnded(int status) {
    if (WIFSIGNALED(status)) return std::string("it crashes: ") + ::strsignal(WTERMSIG(status));
    return "it ends the process, with exit status " + std::to_string(WEXITSTATUS(status));
}

/// Takes what one process after the other says of the pages.
class IndexWalk {
  public:
    IndexWalk(const IndexOrder& order, const std::function<void(const Index&)>& known, std::stop_token stop)
        : order_(order), known_(known), stop_(std::move(stop)), deadline_(Clock::now() + order.forAll),
          bytesLeft_(order.mostBytes) {}

    Result<MadeIndex> run() {
        std::error_code unknown;
        const fs::path temporary = fs::temp_directory_path(unknown);
        if (unknown || !folder_.makeIn(temporary))
            return Result<MadeIndex>::failure("there is no folder for temporary files");
        while (!ended_) {
            auto started = ChildProcess::start(command(), {.memory = kIndexMemory});
            if (!started) return Result<MadeIndex>::failure(started.error());
            child_ = std::move(started).value();
            begun_.clear();
            giveTime(kToBegin);
            const std::string why = follow();
            const int status = child_->end();
            if (stop_.stop_requested()) return Result<MadeIndex>::failure("it was stopped");
            if (!ended_ && !goOn(why.empty() ? howItEnded(status) : why)) break;
        }
        if (lines_.empty())
            return Result<MadeIndex>::failure(made_.missing.empty() ? "no page can be read" : made_.missing.front());
        made_.index = indexOf(std::move(lines_));
        return std::move(made_);
    }

  private:
    [[nodiscard]] std::vector<std::string> command() const {
        // Whatever it leaves in its folder for temporary files is removed behind it.
        std::vector<std::string> words{
            "/bin/sh", "-c", R"(TMPDIR=$0; export TMPDIR; exec "$@")", folder_.path().string(), order_.program.string(),
            "--index"};
        if (!behind_.empty()) words.push_back("--index-behind=" + behind_);
        if (!order_.root.empty()) words.insert(words.end(), {"--root", order_.root.string()});
        if (!order_.bundle.empty()) words.insert(words.end(), {"--bundle", order_.bundle.string()});
        return words;
    }

    /// From now on, by the clock and in processor time.
    void giveTime(std::chrono::milliseconds time) {
        pageUntil_ = Clock::now() + time;
        processorUntil_ = child_->processorTime() + time;
    }
    [[nodiscard]] Clock::time_point until() const { return std::min(pageUntil_, deadline_); }

    /// Takes what the process says until it has ended, or until that is cut short: then says why.
    std::string follow() {
        unread_.clear();
        while (!ended_ && !stop_.stop_requested()) {
            const ChildProcess::Patience patience{std::min(Clock::now() + kLook, until()), processorUntil_};
            const std::size_t before = unread_.size();
            Heard heard = child_->receive(unread_, before + bytesLeft_, patience);
            bytesLeft_ -= unread_.size() - before;
            if (heard == Heard::something) {
                if (!takeLines()) return "it says what is no line of an index";
                continue;
            }
            if (heard == Heard::end) heard = child_->awaitEnd(patience);
            if (heard == Heard::end) break;
            if (heard == Heard::enough) return "it says too much";
            if (heard == Heard::tooCostly || Clock::now() >= until()) {
                made_.whole = false;
                return "it takes too long";
            }
        }
        return {};
    }

    /// False for what no process of ours says.
    bool takeLines() {
        const std::size_t pages = lines_.size();
        for (std::size_t end = 0; !ended_ && (end = unread_.find('\n')) != std::string::npos; unread_.erase(0, end + 1))
            if (!take(std::string_view(unread_).substr(0, end))) return false;
        if (known_ && lines_.size() > pages) known_(indexOf(lines_));
        return true;
    }

    bool take(std::string_view line) {
        const auto [what, rest] = cutAtSpace(line);
        if (what == "begin") {
            const auto [name, title] = cutAtSpace(rest);
            begun_.push_back({std::string(name), platform::printable(title)});
            giveTime(order_.forPage);
        } else if (what == "page") {
            auto page = readPageLine(rest);
            if (!page) return false;
            lines_.push_back(std::move(page).value());
        } else if (what == "missing") {
            made_.missing.push_back(platform::printable(rest));
        } else if (what == "alive") {
            giveTime(order_.forPage);
        } else {
            ended_ = what == "end";
            return ended_;
        }
        return true;
    }
    static std::pair<std::string_view, std::string_view> cutAtSpace(std::string_view text) {
        const std::size_t space = std::min(text.find(' '), text.size());
        return {text.substr(0, space), text.substr(std::min(space + 1, text.size()))};
    }

    /// Has the next process go on behind the page that was begun last. False when there is no use in another one.
    bool goOn(const std::string& why) {
        const BegunPage last = begun_.empty() ? BegunPage() : begun_.back();
        if (last.name.empty()) { // not even the first page
            made_.missing.push_back(order_.program.filename().string() + ": " + why + printed());
            made_.whole = false;
            return false;
        }
        // A plug-in whose page was made before may be to blame, so this page has to do it again without that.
        const bool again = last.isOfPlugin() && begun_.size() > 1 && begun_[begun_.size() - 2].isOfPlugin();
        behind_ = (again ? begun_[begun_.size() - 2] : last).name;
        if (!again) made_.missing.push_back((last.title.empty() ? "page " + last.name : last.title) + ": " + why);
        const bool goesOn = bytesLeft_ > 0 && Clock::now() < deadline_;
        made_.whole = made_.whole && goesOn;
        return goesOn;
    }
    [[nodiscard]] std::string printed() const {
        const std::string printed = platform::printable(child_->printed());
        return printed.empty() ? "" : " (" + printed + ")";
    }

    const IndexOrder& order_;
    const std::function<void(const Index&)>& known_;
    std::stop_token stop_;
    PrivateFolder folder_; ///< for what the process leaves behind, however it ends
    const Clock::time_point deadline_;
    std::size_t bytesLeft_;
    std::unique_ptr<ChildProcess> child_;
    std::string unread_;
    Clock::time_point pageUntil_;
    std::chrono::nanoseconds processorUntil_{0};
    std::vector<BegunPage> begun_; ///< by the present process
    std::string behind_;           ///< the page behind which the present process began
    bool ended_ = false;
    std::vector<PageLine> lines_;
    MadeIndex made_;
};

} // namespace

fs::path standardProgram() {
    std::error_code unknown;
    return fs::read_symlink("/proc/self/exe", unknown).parent_path() / "lumora-settings";
}

Sources sourcesOf(const IndexOrder& order) {
    return {order.bundle, order.program};
}

Result<MadeIndex> makeIndex(const IndexOrder& order, const std::function<void(const Index&)>& known,
                            std::stop_token stop) {
    return IndexWalk(order, known, std::move(stop)).run();
}

Result<MadeIndex> makeAndKeepIndex(const IndexOrder& order, const std::function<void(const Index&)>& known,
                                   std::stop_token stop) {
    const std::string stamp = stampOf(sourcesOf(order)); // of before: what changes meanwhile may be missing
    Result<MadeIndex> made = makeIndex(order, known, std::move(stop));
    if (!made) return made;
    // Silent: without the file, the next start makes the index again, and nothing else is lost.
    (void)writeIndex(indexFile(sourcesOf(order)), made.value().index, made.value().whole ? stamp : "");
    return made;
}

} // namespace search
