#include "settings/app/Application.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/NSBundle.h"
#include "platform/messaging/Dispatch.h"
#include "programs/Program.h"
#include "settings/host/Host.h"
#include "settings/host/IndexRun.h"
#include "settings/host/PrivateTweak.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace settings {

using platform::FileDescriptor;
using platform::Result;
using programs::complain;

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// All pages together, when nobody ends this process before.
constexpr auto kTimeForIndex = 20s;

/// Standard output, out of the reach of what pages print by chance: that goes to standard error.
class IndexLines {
  public:
    IndexLines() : output_(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 64)) { ::dup2(STDERR_FILENO, STDOUT_FILENO); }

    /// Any thread.
    void tell(std::string_view line) {
        const std::lock_guard held(mutex_);
        const std::string whole = std::string(line) + "\n";
        if (!output_.write(whole.data(), whole.size())) failed_ = true;
    }
    [[nodiscard]] bool failed() const { return failed_; }

  private:
    std::mutex mutex_;
    FileDescriptor output_;
    std::atomic<bool> failed_ = false;
};

Result<void> walk(const Options& options, IndexLines& lines) {
    const fs::path folder = options.bundle.value_or(platform::standardBundle());
    const auto bundle = platform::NSBundle::bundleWithPath(folder);
    if (!bundle) return Result<void>::failure("there is no settings bundle at " + folder.string());
    if (const Result<void> loaded = bundle->load(); !loaded)
        return Result<void>::failure("the settings bundle cannot be loaded: " + loaded.error());
    const platform::Class first = bundle->principalClass();
    if (!first) return Result<void>::failure("the settings bundle " + folder.string() + " names no page");
    walkForIndex({first, bundle->bundlePath().stem().string(), contentSizeOf(kUsualSize), *options.indexBehind},
                 [&lines](std::string_view line) { lines.tell(line); });
    return {};
}

} // namespace

int printIndex(const Options& options) {
    PrivateTweak tweak;
    Result<void> opened = tweak.makeFolder();
    if (opened) opened = tweak.answer({});
    if (!opened) return complain(opened.error());
    auto& lines = *new IndexLines; // never destroyed: the main thread may be blocked for good
    auto& walked = *new std::promise<Result<void>>;
    platform::startMainThread();
    platform::dispatch_async(platform::dispatch_get_main_queue(),
                             [&lines, &walked, options] { walked.set_value(walk(options, lines)); });
    const auto until = std::chrono::steady_clock::now() + kTimeForIndex;
    auto whole = walked.get_future();
    while (whole.wait_for(500ms) != std::future_status::ready && std::chrono::steady_clock::now() < until)
        if (!platform::beingTried().empty()) lines.tell("alive"); // the time of a trial is not the page's
    const bool isOver = whole.wait_for(0s) == std::future_status::ready;
    const Result<void> result =
        isOver ? whole.get() : Result<void>::failure("timed out waiting for " + whatBlocks("of the index"));
    tweak.removeFolder();
    if (!result) return complain(result.error());
    return lines.failed() ? complain("cannot write to standard output") : 0;
}

} // namespace settings
