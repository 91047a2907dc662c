#include "tools/lumoractl/Watch.h"

#include "tools/lumoractl/Streams.h"
#include "tools/lumoractl/TweakClient.h"

#include "lockscreen/SettingsFeed.h"
#include "json/Json.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <climits>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

using platform::Dictionary;
using platform::FileDescriptor;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// Readable when a signal asks the program to end. Such signals do nothing else from then on, in later threads neither.
FileDescriptor endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
}

/// The latest that the feed has handed on, between its thread and the one that prints.
class Latest {
  public:
    void put(const Heard& heard) {
        {
            const std::lock_guard held(mutex_);
            heard_ = heard;
        }
        const std::uint64_t once = 1;
        [[maybe_unused]] const bool given = came_.write(&once, sizeof once);
    }
    [[nodiscard]] std::optional<Heard> take() {
        std::uint64_t calls = 0;
        [[maybe_unused]] const auto taken = ::read(came_.number(), &calls, sizeof calls);
        const std::lock_guard held(mutex_);
        return std::exchange(heard_, {});
    }
    /// Readable when there is something to take.
    [[nodiscard]] int descriptor() const { return came_.number(); }

  private:
    FileDescriptor came_{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::mutex mutex_;
    std::optional<Heard> heard_;
};

/// Turns what is heard into lines.
class Printer {
  public:
    explicit Printer(bool json) : json_(json) {}

    /// The lines of what has changed; none the first time, and none while no tweak answers.
    [[nodiscard]] std::string linesOf(const Heard& heard) {
        if (std::exchange(answers_, heard.tweakAnswers) && !heard.tweakAnswers) complain(whyNoTweakAnswers());
        if (!heard.tweakAnswers) return {};
        std::string lines;
        if (shown_)
            for (const std::string& key : changedKeys(*shown_, heard.settings))
                lines += lineOf(key, heard.settings[key], heard.revision);
        shown_ = heard.settings;
        return lines;
    }

  private:
    [[nodiscard]] std::string lineOf(const std::string& key, const Value& value, std::int64_t revision) const {
        const Value shown = shownValue(key, value);
        const auto json = writeJson(json_ ? Dictionary{{"key", key}, {"value", shown}, {"revision", revision}} : shown,
                                    JsonLayout::line);
        if (!json) {
            complain(json.error());
            return {};
        }
        return (json_ ? "" : platform::printable(key) + " = ") + json.value() + "\n";
    }

    bool json_;
    bool answers_ = true; ///< until the opposite is known
    std::optional<Dictionary> shown_;
};

} // namespace

Result<void> watchSettings(bool json) {
    const auto fail = [](const char* what) {
        return Result<void>::failure(std::string("cannot ") + what + ": " + std::generic_category().message(errno));
    };
    std::signal(SIGPIPE, SIG_IGN);
    const FileDescriptor signals = endingSignals(); // before the feed has a thread
    Latest latest;
    if (!signals || latest.descriptor() < 0) return fail("watch");
    SettingsFeed feed([&](const Heard& heard) { latest.put(heard); });
    Printer printer(json);
    std::string unwritten;
    while (true) {
        const short output = unwritten.empty() ? 0 : POLLOUT;
        std::array<pollfd, 3> awaited{{{signals.number(), POLLIN, 0},
                                       {STDOUT_FILENO, output, 0},
                                       {unwritten.empty() ? latest.descriptor() : -1, POLLIN, 0}}};
        if (::poll(awaited.data(), awaited.size(), -1) < 0) continue;
        if (awaited[0].revents != 0 || (awaited[1].revents & (POLLERR | POLLHUP)) != 0) return {};
        if ((awaited[1].revents & (POLLOUT | POLLNVAL)) != 0) {
            // A pipe that is writable takes as many without making the writer wait, and signals with it.
            const auto count =
                ::write(STDOUT_FILENO, unwritten.data(), std::min<std::size_t>(unwritten.size(), PIPE_BUF));
            if (count < 0 && errno == EPIPE) return {};
            if (count < 0 && errno != EAGAIN && errno != EINTR) return fail("write standard output");
            unwritten.erase(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        if (awaited[2].revents != 0)
            if (const auto heard = latest.take()) unwritten = printer.linesOf(*heard);
    }
}

} // namespace lumora
