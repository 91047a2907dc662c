#include "search/IndexChild.h"

#include "platform/foundation/ChildProcess.h"
#include "platform/foundation/Unicode.h"
#include "search/IndexFile.h"
#include "search/PageLine.h"

#include <algorithm>
#include <cstdlib>
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
/// How long a stop may go unseen.
constexpr std::chrono::milliseconds kLook{50};

/// A folder for what the process leaves behind, however it ends.
class PrivateFolder {
  public:
    PrivateFolder() {
        std::error_code unknown;
        std::string name = (fs::temp_directory_path(unknown) / "lumora-index-XXXXXX").string();
        if (!unknown && ::mkdtemp(name.data())) path_ = name;
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() {
        std::error_code left; // what cannot be removed is the system's to tidy up
        if (!path_.empty()) fs::remove_all(path_, left);
    }
    [[nodiscard]] const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

/// Takes what one process after the other says of the pages.
class IndexWalk {
  public:
    IndexWalk(const IndexOrder& order, const std::function<void(const Index&)>& known, std::stop_token stop)
        : order_(order), known_(known), stop_(std::move(stop)), deadline_(Clock::now() + order.forAll),
          bytesLeft_(order.mostBytes) {}

    Result<MadeIndex> run() {
        if (folder_.path().empty()) return Result<MadeIndex>::failure("there is no folder for temporary files");
        while (!ended_) {
            auto started = ChildProcess::start(command(), {.memory = kIndexMemory});
            if (!started) return Result<MadeIndex>::failure(started.error());
            child_ = std::move(started).value();
            begun_.reset();
            startPage();
            const std::string why = follow();
            spent_ += child_->processorTime();
            const int status = child_->end();
            if (stop_.stop_requested()) return Result<MadeIndex>::failure("it was stopped");
            if (!ended_ && !goOnBehind(why.empty() ? howItEnded(status) : why)) break;
        }
        made_.index = indexOf(lines_);
        if (lines_.empty())
            return Result<MadeIndex>::failure(made_.missing.empty() ? "no page can be read" : made_.missing.front());
        return std::move(made_);
    }

  private:
    [[nodiscard]] std::vector<std::string> command() const {
        // Whatever it leaves in its folder for temporary files is removed behind it.
        std::vector<std::string> words{"/usr/bin/env", "TMPDIR=" + folder_.path().string(), order_.program.string(),
                                       "--index"};
        if (behind_) words.push_back("--index-behind=" + behind_->text());
        if (!order_.root.empty()) words.insert(words.end(), {"--root", order_.root.string()});
        if (!order_.bundle.empty()) words.insert(words.end(), {"--bundle", order_.bundle.string()});
        return words;
    }

    /// A page has its time from now on.
    void startPage() {
        pageUntil_ = Clock::now() + order_.forPage;
        processorUntil_ = child_->processorTime() + order_.forPage;
    }

    /// Takes what the process says until it has ended, or why that is cut short.
    std::string follow() {
        unread_.clear();
        while (!stop_.stop_requested()) {
            const auto left = processorUntil_ - child_->processorTime();
            const ChildProcess::Patience patience =
                child_->patience(std::min<std::chrono::nanoseconds>(kLook, until() - Clock::now()), left);
            const std::size_t before = unread_.size();
            Heard heard = child_->receive(unread_, before + bytesLeft_, patience);
            bytesLeft_ -= unread_.size() - before;
            if (heard == Heard::something) {
                if (const std::string wrong = takeLines(); !wrong.empty() || ended_) return wrong;
                continue;
            }
            if (heard == Heard::end) heard = child_->awaitEnd(patience);
            if (heard == Heard::end) return "";
            if (heard == Heard::enough) return "it says too much";
            if (heard == Heard::tooCostly || Clock::now() >= until()) {
                timeIsWhy_ = true;
                return "it takes too long";
            }
        }
        return "it was stopped";
    }
    [[nodiscard]] Clock::time_point until() const { return std::min(pageUntil_, deadline_); }

    /// Why the process says nothing useful; empty when it does.
    std::string takeLines() {
        std::size_t end = 0;
        for (; (end = unread_.find('\n')) != std::string::npos; unread_.erase(0, end + 1)) {
            if (!take(std::string_view(unread_).substr(0, end))) return "it says what is no line of an index";
            if (ended_) break;
        }
        return {};
    }

    bool take(std::string_view line) {
        const std::size_t space = std::min(line.find(' '), line.size());
        const std::string_view what = line.substr(0, space);
        const std::string_view rest = line.substr(std::min(space + 1, line.size()));
        if (what == "alive") return startPage(), true;
        if (what == "end") return ended_ = true;
        if (what == "begin") return begin(rest);
        if (what == "missing") return made_.missing.emplace_back(platform::printable(rest)), true;
        if (what == "page") return addPage(rest);
        return false;
    }

    /// "begin 4.1 TITLE"
    bool begin(std::string_view rest) {
        const std::size_t space = std::min(rest.find(' '), rest.size());
        begun_ = Way::of(rest.substr(0, space));
        title_ = platform::printable(rest.substr(std::min(space + 1, rest.size())));
        startPage();
        return begun_.has_value();
    }
    bool addPage(std::string_view text) {
        auto page = readPageLine(text);
        if (!page) return false;
        lines_.push_back(std::move(page).value());
        if (known_) known_(indexOf(lines_));
        return true;
    }

    /// Leaves out the page that was begun. False when there is no use in another process.
    bool goOnBehind(const std::string& why) {
        if (begun_) made_.missing.push_back((title_.empty() ? "the page " + begun_->text() : title_) + ": " + why);
        made_.whole = made_.whole && !timeIsWhy_;
        const bool goesOn = begun_ && !begun_->rows.empty() && bytesLeft_ > 0 && Clock::now() < deadline_;
        behind_ = begun_;
        if (goesOn) return true;
        if (!begun_) made_.missing.push_back(program() + ": " + why + printedByChild());
        made_.whole = false;
        return false;
    }
    [[nodiscard]] std::string program() const { return order_.program.filename().string(); }
    [[nodiscard]] std::string printedByChild() const {
        const std::string printed = platform::printable(child_->printed());
        return printed.empty() ? "" : " (" + printed + ")";
    }
    static std::string howItEnded(int status) {
        if (WIFSIGNALED(status)) return "it ends the process, with signal " + std::to_string(WTERMSIG(status));
        return "it ends the process, with exit status " + std::to_string(WEXITSTATUS(status));
    }

    const IndexOrder& order_;
    const std::function<void(const Index&)>& known_;
    std::stop_token stop_;
    const PrivateFolder folder_;
    const Clock::time_point deadline_;
    std::size_t bytesLeft_;
    std::chrono::nanoseconds spent_{0};
    std::unique_ptr<ChildProcess> child_;
    std::string unread_;
    Clock::time_point pageUntil_;
    std::chrono::nanoseconds processorUntil_{0};
    std::optional<Way> begun_; ///< the page that the process has begun last
    std::string title_;        ///< of the row that opens it
    std::optional<Way> behind_;
    bool timeIsWhy_ = false;
    bool ended_ = false;
    std::vector<PageLine> lines_;
    MadeIndex made_;
};

} // namespace

fs::path standardProgram() {
    std::error_code unknown;
    return fs::read_symlink("/proc/self/exe", unknown).parent_path() / "lumora-settings";
}

Result<MadeIndex> makeIndex(const IndexOrder& order, const std::function<void(const Index&)>& known,
                            std::stop_token stop) {
    return IndexWalk(order, known, std::move(stop)).run();
}

Result<MadeIndex> makeAndKeepIndex(const IndexOrder& order, const std::function<void(const Index&)>& known,
                                   std::stop_token stop) {
    const std::string stamp =
        stampOf({order.bundle, order.program}); // of before: what changes meanwhile may be missing
    Result<MadeIndex> made = makeIndex(order, known, std::move(stop));
    if (!made) return made;
    // Silent: without the file, the next start makes the index again, and nothing else is lost.
    (void)writeIndex(indexFile(), made.value().index, made.value().whole ? stamp : "");
    return made;
}

} // namespace search
