#include "tweak/History.h"
#include "tweak/SettingsStore.h"
#include "tweak/Tweak.h"

#include "link/Messages.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Unicode.h"
#include "platform/foundation/UserFolder.h"
#include "platform/messaging/CFMessagePort.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using platform::CFMessagePortRef;
using platform::CFRunLoopRef;
using platform::Data;
using platform::Result;

namespace lumora {
namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kWrongUse = 2 };

struct Arguments {
    std::string root;
    std::string settings;
    Tweak::Options tweak;
    bool noHistory = false;
};

void logLine(const std::string& line) {
    static ErrorLog log;
    log.write(line);
}

int failed(const std::string& why) {
    logLine(why);
    return kFailed;
}

/// The signals that ask the tweak to leave. They are blocked in every thread and waited for in the first one, so that
/// nothing is ever interrupted half-way.
sigset_t leavingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

void prepareSignals() {
    const sigset_t leaving = leavingSignals();
    pthread_sigmask(SIG_BLOCK, &leaving, nullptr);
    // A full disk, a file-size limit or a closed log must be an error to report, not an end.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

void waitUntilAskedToLeave() {
    const sigset_t leaving = leavingSignals();
    int signal = 0;
    while (sigwait(&leaving, &signal) != 0) {
    }
}

/// Tells a service manager that this program is ready, by one datagram to the socket that it named; a name that begins
/// with "@" is not that of a file. Without a service manager this does nothing.
void notifyServiceManager() {
    const char* name = std::getenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = name ? std::strlen(name) : 0;
    if (length == 0 || length > sizeof address.sun_path) return;
    std::memcpy(address.sun_path, name, length);
    if (*name == '@') address.sun_path[0] = '\0';
    const platform::FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket) return;
    constexpr std::string_view ready = "READY=1";
    const auto* receiver = reinterpret_cast<const sockaddr*>(&address);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
    if (::sendto(socket.number(), ready.data(), ready.size(), MSG_NOSIGNAL, receiver, size) < 0)
        logLine(std::string("cannot tell the service manager: ") + std::strerror(errno));
}

using Answer = std::function<std::optional<Data>(const std::optional<Data>& body, long sender)>;

/// A message of another id asks only for a sign of life.
Result<CFMessagePortRef> openPort(const char* message, Answer answer) {
    return platform::openLocalPort(
        portName(message), [answer = std::move(answer)](auto& port, auto id, const auto& body) {
            return id == kMessageId ? answer(body, platform::CFMessagePortGetSender(port)) : std::nullopt;
        });
}

/// The descriptors that a run loop opens for itself, and for each port that it serves. If it cannot open one, it is silent.
constexpr std::size_t kDescriptorsOfALoop = 2;
constexpr std::size_t kDescriptorsOfAPort = 1;

bool hasDescriptorsLeft(std::size_t count) {
    std::vector<platform::FileDescriptor> spare(count);
    return std::ranges::all_of(spare, [](auto& one) {
        one = platform::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        return bool(one);
    });
}

/// Serves ports on a thread of their own, so that what takes long on these delays nothing on others.
class PortThread {
  public:
    explicit PortThread(const std::vector<CFMessagePortRef>& ports) {
        std::promise<CFRunLoopRef> prepared;
        serving_ = std::async(std::launch::async, [&prepared, ports] {
            for (const CFMessagePortRef& port : ports)
                platform::CFRunLoopAddSource(platform::CFRunLoopGetCurrent(),
                                             platform::CFMessagePortCreateRunLoopSource(port));
            prepared.set_value(platform::CFRunLoopGetCurrent());
            platform::CFRunLoopRun();
        });
        loop_ = prepared.get_future().get();
    }
    void stop() const { platform::CFRunLoopStop(loop_); }
    /// Waits for the end of the thread; false if a message is stuck.
    [[nodiscard]] bool ends(std::chrono::seconds atMost) const {
        return serving_.wait_for(atMost) == std::future_status::ready;
    }

  private:
    CFRunLoopRef loop_;
    std::future<void> serving_;
};

/// Opens the ports and serves them until a signal comes.
int serve(Tweak& tweak, const std::filesystem::path& settings, bool withHistory) {
    // One after the other: of two tweaks that start at once, the one that gets the first port gets both.
    const auto changes = openPort(kUpdateSettings, [&](const auto& body, long) { return tweak.updateSettings(body); });
    if (!changes) return failed(changes.error());
    const auto requests =
        openPort(kRequestTweakSettings, [&](const auto&, long) { return tweak.requestTweakSettings(); });
    if (!requests) return failed(requests.error());

    // All that a tweak may be without, none of which a page waits for.
    std::vector<CFMessagePortRef> optional;
    const auto open = [&](const char* message, Answer answer) {
        auto port = openPort(message, std::move(answer));
        if (!port) return Result<void>::failure(port.error());
        optional.push_back(std::move(port).value());
        return Result<void>();
    };
    Result<void> opened =
        open(kFollowSettings, [&](const auto& body, long sender) { return tweak.followSettings(body, sender); });
    if (opened) opened = open(kDefaults, [&](const auto&, long) { return tweak.defaults(); });
    if (opened && withHistory) opened = open(kHistory, [&](const auto& body, long) { return tweak.history(body); });
    if (!opened) return failed(opened.error());

    const std::size_t ports = 2 + optional.size();
    if (!hasDescriptorsLeft(3 * kDescriptorsOfALoop + ports * kDescriptorsOfAPort + 1)) // one for a client
        return failed("cannot serve the ports: not enough descriptors are left");

    if (const auto usable = platform::checkPortsFolder(portName(kUpdateSettings)); !usable) logLine(usable.error());
    const std::array<PortThread, 3> threads{PortThread({changes.value()}), PortThread({requests.value()}),
                                            PortThread(optional)};
    writeAtOnce(STDOUT_FILENO, "lumora-tweak ready, settings at " + settings.string() + "\n");
    notifyServiceManager();
    waitUntilAskedToLeave();
    std::ranges::for_each(threads, &PortThread::stop);
    if (!std::ranges::all_of(threads, [](const PortThread& thread) { return thread.ends(std::chrono::seconds(10)); })) {
        logLine("a message is stuck: leaving without it");
        std::_Exit(kFailed);
    }
    return kDone;
}

/// The path of the settings; empty for a user without a home folder.
std::filesystem::path settingsFile(const Arguments& arguments) {
    if (!arguments.settings.empty()) return arguments.settings;
    if (!platform::chosenDeviceRoot().empty()) return platform::devicePath(kSettingsPath);
    // All users share an installed device root.
    const std::filesystem::path own = platform::userFolder("XDG_CONFIG_HOME", ".config");
    return own.empty() ? own : own / "lumora" / std::filesystem::path(kSettingsPath).filename();
}

int run(const Arguments& arguments) {
    prepareSignals();
    // Every file and folder that is made here is for the user alone.
    umask(S_IRWXG | S_IRWXO);
    if (!arguments.root.empty()) platform::setDeviceRoot(arguments.root);
    const std::filesystem::path settings = settingsFile(arguments);
    if (settings.empty())
        return failed("there is no home folder to keep settings in: set $XDG_CONFIG_HOME or use --settings");
    const Result<std::unique_ptr<SettingsStore>> store = SettingsStore::open(settings, logLine);
    if (!store) return failed(store.error());
    std::unique_ptr<History> history;
    if (!arguments.noHistory) {
        auto opened = History::open(History::besideSettings(store.value()->path()), logLine);
        if (opened)
            history = std::move(opened).value();
        else
            logLine(opened.error());
    }
    Tweak tweak(*store.value(), arguments.tweak, logLine, history.get());
    return serve(tweak, store.value()->path(), history != nullptr);
}

} // namespace
} // namespace lumora

// Only a mistake in the options below throws here, and that had better end the program.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int count, char** words) {
    lumora::Arguments arguments;
    CLI::App app(R"(The stand-in for the device's tweak: owns every setting of Lumora and keeps it on disk.

It answers the messages "requestTweakSettings" and "updateSettings" on the ports of those names under
$LUMORA_PORTS, else $XDG_RUNTIME_DIR, else /run/user/UID, else /tmp/lumora-UID, and says on standard output
when it is ready. SIGTERM and SIGINT end it once the change in hand is on disk.)",
                 "lumora-tweak");
    app.footer(
        R"(A change that a setting cannot have is refused, with a line on standard error, and so is one that would
make the settings larger than 4 MiB. Keys that are not Lumora's own belong to plug-ins and are kept like
any other. A settings file that holds no settings is renamed to FILE.unreadable, never overwritten.

Each change is recorded in a file beside the settings, com.nevo.lumora.history, with the values before and
after it; of passcodes only that they have changed. It keeps the last 5,000 changes at most.

Exit status: 0 after SIGTERM or SIGINT, 1 when it cannot start, 2 for wrong use.
)");
    app.add_option("--root", arguments.root, "The folder that stands for the device's \"/\"; else $LUMORA_ROOT")
        ->type_name("DIR");
    app.add_option("--settings", arguments.settings,
                   std::string("Where the settings are kept; else ") + lumora::kSettingsPath +
                       " under the root, else $XDG_CONFIG_HOME/lumora/com.nevo.lumora.plist")
        ->type_name("FILE");
    app.add_option("--omit", arguments.tweak.omitted, "Answer as if KEY were not set; may be given several times")
        ->type_name("KEY")
        ->check([](const std::string& key) { return platform::isUtf8(key) ? "" : "a key is UTF-8"; })
        ->allow_extra_args(false);
    app.add_flag("--no-history", arguments.noHistory, "Record no changes, and offer no history");
    app.add_flag("--verbose", arguments.tweak.verbose,
                 "Write a line to standard error for each message, passcodes and texts of plug-ins as dots");
    app.set_version_flag("--version", "lumora-tweak " LUMORA_VERSION, "Print the version and exit");
    app.set_help_flag("--help", "Print this help and exit");
    try {
        app.parse(count, words);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? lumora::kDone : lumora::kWrongUse;
    }
    return lumora::run(arguments);
}
