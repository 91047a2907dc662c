#include "tools/lumoractl/RunPlugin.h"

#include "tools/lumoractl/CheckPlugin.h"
#include "tools/lumoractl/RunningProgram.h"
#include "tools/lumoractl/Streams.h"
#include "tools/lumoractl/TweakClient.h"

#include "link/Messages.h"
#include "link/PreferenceKeys.h"
#include "lists/PluginDiscovery.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/messaging/CFMessagePort.h"
#include "search/IndexChild.h"
#include "search/PrivateFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lumora {

using platform::FileDescriptor;
using platform::List;
using platform::Result;
namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

/// How long a bundle has to be left alone before it counts as built.
constexpr auto kToSettle = 300ms;
/// How often a folder is looked for that has gone.
constexpr auto kToReturn = 1s;
constexpr auto kForTweak = 20s;
/// Wide enough for the lock screen beside the page.
constexpr const char* kWindowSize = "1240x844";

/// A device root made of links, but for these folders, which begin empty.
class LinkedRoot {
  public:
    static Result<void> make(const fs::path& from, const fs::path& root) {
        try {
            mirror(from, root, {});
        } catch (const fs::filesystem_error& error) {
            return Result<void>::failure(std::string("cannot make a device root: ") + error.what());
        }
        return {};
    }

  private:
    static constexpr std::array<std::string_view, 2> kOwn{"Library/Nevo/Lumora/Plugins",
                                                          "var/mobile/Library/Preferences"};

    static void mirror(const fs::path& from, const fs::path& root, const std::string& folder) {
        fs::create_directories(root / folder);
        if (std::ranges::find(kOwn, folder) != kOwn.end()) return;
        std::error_code missing;
        for (const fs::directory_entry& entry : fs::directory_iterator(from / folder, missing)) {
            const std::string name = (fs::path(folder) / entry.path().filename()).string();
            if (!leadsToOwn(name)) fs::create_symlink(fs::absolute(entry.path()), root / name);
        }
        for (const std::string_view own : kOwn) {
            const std::string begin = folder.empty() ? folder : folder + "/";
            if (!own.starts_with(begin)) continue;
            const std::string next(own.substr(0, own.find('/', begin.size())));
            if (!fs::exists(root / next)) mirror(from, root, next);
        }
    }
    static bool leadsToOwn(const std::string& name) {
        return std::ranges::any_of(kOwn,
                                   [&](std::string_view own) { return own == name || own.starts_with(name + "/"); });
    }
};

/// Becomes readable when something happens to the bundle or in it.
class BundleWatch {
  public:
    explicit BundleWatch(fs::path bundle) : bundle_(std::move(bundle)) { look(); }

    [[nodiscard]] int descriptor() const { return events_.number(); }
    /// Whether the bundle is there to be watched; else it has to be looked for again, after a while.
    bool look() {
        const bool isAround = watch(bundle_.parent_path()) >= 0;
        inside_ = {watch(bundle_)};
        std::error_code failed; // also of a folder that has gone meanwhile, of which there is word
        const auto options = fs::directory_options::skip_permission_denied;
        for (fs::recursive_directory_iterator it(bundle_, options, failed), end; it != end && !failed;
             it.increment(failed))
            if (std::error_code unknown; it->is_directory(unknown) && !it->is_symlink(unknown))
                inside_.push_back(watch(it->path()));
        return isAround && inside_.front() >= 0;
    }
    /// Takes what has happened. False where that was to others beside the bundle.
    [[nodiscard]] bool take() {
        alignas(inotify_event) std::array<char, 16384> bytes{};
        bool concerned = false;
        for (ssize_t count = 0; (count = ::read(events_.number(), bytes.data(), bytes.size())) > 0;)
            for (ssize_t at = 0; at < count;) {
                inotify_event event{};
                std::memcpy(&event, bytes.data() + at, sizeof event);
                const char* name = event.len > 0 ? bytes.data() + at + sizeof event : "";
                concerned = concerned || bundle_.filename() == name || event.wd < 0 || // there were too many
                            std::ranges::find(inside_, event.wd) != inside_.end();
                at += ssize_t(sizeof event + event.len);
            }
        return concerned;
    }

  private:
    int watch(const fs::path& folder) {
        constexpr std::uint32_t changes =
            IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
        return ::inotify_add_watch(events_.number(), folder.c_str(), changes | IN_ONLYDIR);
    }

    fs::path bundle_;
    FileDescriptor events_{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
    std::vector<int> inside_; ///< watches over the bundle and its folders as they are now
};

/// Readable once one of these comes.
FileDescriptor awaited(std::initializer_list<int> expected) {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : expected)
        sigaddset(&signals, signal);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    return FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

bool isReadable(const FileDescriptor& file) {
    pollfd awaited{file.number(), POLLIN, 0};
    return ::poll(&awaited, 1, 0) > 0;
}

void take(const FileDescriptor& signals) {
    signalfd_siginfo signal{};
    while (::read(signals.number(), &signal, sizeof signal) == sizeof signal) {
    }
}

class PluginRun {
  public:
    explicit PluginRun(const fs::path& bundle) : bundle_(bundle), watch_(bundle) {}

    Result<void> run() {
        if (Result<void> prepared = prepare(); !prepared) return prepared;
        show();
        return follow();
    }

  private:
    static fs::path program(const char* name) { return search::standardProgram().parent_path() / name; }

    Result<void> prepare() {
        std::error_code failed;
        if (!fs::is_directory(bundle_, failed) || !isPluginPath(bundle_))
            return Result<void>::failure(bundle_.string() + " is not a bundle");
        if (!ending_ || !children_ || watch_.descriptor() < 0) return Result<void>::failure("cannot watch the bundle");
        for (const char* needed : {"lumora-settings", "lumora-tweak"})
            if (!fs::exists(program(needed), failed))
                return Result<void>::failure(program(needed).string() + " is missing, which shows the page");
        const auto isSet = [](const char* name) {
            const char* value = std::getenv(name);
            return value && *value != '\0';
        };
        if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM"))
            return Result<void>::failure("there is no display to open a window on");
        return makeFolder() ? prepareDevice() : Result<void>::failure("there is no folder for temporary files");
    }

    /// One whose path leaves room for the names of sockets.
    bool makeFolder() {
        std::error_code unknown;
        for (const fs::path& parent : {fs::temp_directory_path(unknown), fs::path("/tmp")}) {
            if (!folder_.makeIn(parent)) continue;
            ::setenv("LUMORA_PORTS", (folder_.path() / "ports").c_str(), 1);
            if (platform::checkPortsFolder(portName(kRequestTweakSettings))) return true;
        }
        return false;
    }

    /// Everything that is the plug-in's own: root, ports, settings, what programs keep.
    Result<void> prepareDevice() {
        const fs::path root = folder_.path() / "root";
        if (Result<void> made = LinkedRoot::make(platform::deviceRoot(), root); !made) return made;
        platform::setDeviceRoot(root);
        std::error_code failed;
        fs::create_directory_symlink(bundle_, pluginFolder() / bundle_.filename(), failed);
        if (failed) return Result<void>::failure("cannot link the bundle: " + failed.message());
        ::setenv("LUMORA_ROOT", root.c_str(), 1);
        ::setenv("TMPDIR", folder_.path().c_str(), 1); // a probe that is ended leaves its folder
        for (const auto& [variable, name] :
             {std::pair("XDG_CACHE_HOME", "cache"), std::pair("XDG_STATE_HOME", "state")})
            ::setenv(variable, (folder_.path() / name).c_str(), 1);
        auto tweak = RunningProgram::start({program("lumora-tweak")}, true);
        if (!tweak) return Result<void>::failure(tweak.error());
        tweak_ = std::move(tweak).value();
        if (tweak_.firstLine(kForTweak).empty()) return Result<void>::failure("lumora-tweak does not begin");
        return {};
    }

    /// Judges the plug-in and opens its page; says why not, and leaves what is open, where that is no use.
    void show() {
        const auto checked = checkPlugin(bundle_, platform::ProbeLimits().clock, ending_.number());
        if (isReadable(ending_)) return;
        if (!checked) return complain(checked.error());
        if (!printText(linesOf(checked.value()))) return;
        if (!checked.value().usable) return;
        window_.end();
        const auto chosen = changeSetting(kAppViewsEnabled, List{checked.value().identifier});
        if (!chosen) complain(chosen.error());
        const std::string& page = checked.value().page;
        auto window = RunningProgram::start({program("lumora-settings"), "--size", kWindowSize, "--page",
                                             "/PluginsListController" + (page.empty() ? "" : "/" + page)},
                                            false);
        if (!window) return complain(window.error());
        window_ = std::move(window).value();
        isShown_ = true;
    }

    Result<void> follow() {
        bool changed = false;
        for (;;) {
            const auto patience = changed ? kToSettle : std::chrono::milliseconds(kToReturn);
            const bool watched = watch_.look();
            std::array<pollfd, 3> files{
                {{ending_.number(), POLLIN, 0}, {watch_.descriptor(), POLLIN, 0}, {children_.number(), POLLIN, 0}}};
            const int ready = ::poll(files.data(), files.size(), changed || !watched ? int(patience.count()) : -1);
            if (ready < 0 && errno != EINTR) return Result<void>::failure("cannot wait");
            if (files[0].revents != 0) return {};
            if (files[2].revents != 0) take(children_);
            if (const auto ended = isShown_ ? window_.status() : std::nullopt) {
                isShown_ = false;
                if (*ended >= 0) return *ended == 0 ? Result<void>() : Result<void>::failure("lumora-settings failed");
                complain(std::string("the window has crashed: ") + ::strsignal(-*ended) +
                         "; waiting for another build");
            }
            if (files[1].revents != 0) {
                changed = watch_.take() || changed;
            } else if (changed && ready == 0 && watched) {
                changed = false;
                show();
            }
        }
    }

    const fs::path bundle_;
    FileDescriptor ending_ = awaited({SIGINT, SIGTERM, SIGHUP}); ///< somebody asks the program to end
    FileDescriptor children_ = awaited({SIGCHLD});               ///< one of its programs has ended
    BundleWatch watch_;
    search::PrivateFolder folder_; ///< outlives the programs that have files in it
    RunningProgram tweak_;
    RunningProgram window_;
    bool isShown_ = false;
};

} // namespace

Result<void> runPlugin(const fs::path& bundle) {
    std::error_code failed;
    const fs::path whole = fs::absolute(bundle, failed).lexically_normal();
    return PluginRun(whole.has_filename() ? whole : whole.parent_path()).run();
}

} // namespace lumora
