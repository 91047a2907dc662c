// A plug-in that is copied into many bundles and behaves as the name of its bundle says: "KIND-NUMBER.bundle".
#include <lumora/KitTag.h>

#include "tests/lists/modules/TestPlugin.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <tuple>
#include <unistd.h>

namespace {

std::string kind() {
    const std::string name = ownName();
    return name.substr(0, name.rfind('-'));
}

std::string& asked() {
    static auto& asked = *new std::string;
    return asked;
}

/// Calls itself far more often than any stack holds.
[[gnu::noinline]] int overflow(int depth) {
    volatile char frame[4096]{};
    frame[depth % 4096] = 1;
    return depth == 1 << 30 ? 0 : overflow(depth + 1) + frame[0];
}

/// Does to the process what the bundle's kind says, "BEHAVIOUR-at-MOMENT", or "BEHAVIOUR" for when the instance is
/// asked for.
void misbehave(const std::string& moment) {
    const std::string how = kind();
    const std::size_t at = how.find("-at-");
    if ((at == std::string::npos ? "instance" : how.substr(at + 4)) != moment) return;
    const char* spoilt = std::getenv("LUMORA_TEST_SPOILT");
    const std::string what = spoilt ? spoilt : how.substr(0, at);
    if (what.starts_with("spoiling-")) // makes whoever comes next misbehave
        ::setenv("LUMORA_TEST_SPOILT", what.substr(std::strlen("spoiling-")).c_str(), 1);
    volatile bool forever = true;
    if (what == "throwing") throw std::runtime_error("no");
    if (what == "aborting") std::abort();
    if (what == "exiting" || (what == "exiting-in-settings" &&
                              std::filesystem::read_symlink("/proc/self/exe").filename() == "lumora-settings"))
        std::exit(0);
    if (what == "leaving") ::_exit(0);
    if (what == "touching") std::filesystem::last_write_time(ownFile(), std::filesystem::file_time_type::clock::now());
    if (what == "killing") ::kill(0, SIGKILL); // its process group
    if (what == "overflowing") std::ignore = overflow(0);
    while (what == "looping" && forever) {
    }
    if (what == "scribbling") // into every file that is open, whosever it is
        for (int number = 0; number < 256; ++number)
            std::ignore = ::write(number, "{}{\n", 4);
    if (what.starts_with("closing"))
        for (int number = 0; number < 256; ++number)
            ::close(number);
    while (what.ends_with("hanging") && forever)
        ::pause();
    if (what == "forking") {
        // The process that is left behind holds a lock on the module's own file for as long as it lives.
        ::flock(::open(ownFile().c_str(), O_RDONLY), LOCK_EX);
        while (::fork() == 0) {
            ::alarm(60); // in case nobody ends it
            while (forever)
                ::pause();
        }
    }
}

/// An answer of the text, unless the bundle's kind spoils just this one.
const char* answer(const char* question, const char* text) {
    asked() += std::string(question) + " ";
    misbehave(question);
    const std::string how = kind();
    if (how == std::string("null-") + question) return nullptr;
    if (how == std::string("empty-") + question) return "";
    if (how == std::string("foreign-") + question) return "caf\xE9";
    if (how == std::string("throwing-") + question) throw std::runtime_error("no");
    if (how == std::string("second-null-") + question &&
        asked().ends_with(std::string(question) + " " + question + " "))
        return nullptr;
    return text;
}

const char* identifier() {
    static const std::string text = "test." + ownName();
    return answer("identifier", text.c_str());
}
const char* name() {
    static const std::string text = ownName();
    static const std::string endless(std::size_t{10} << 20, 'x');
    static const std::string turned(1, static_cast<char>('0' + '9' - ownName().back()));
    return answer("name", (kind() == "endless" ? endless : kind() == "turned" ? turned : text).c_str());
}
const char* appID() {
    return answer("appID", "org.example.Application");
}

const LumoraSettingsController* settingsController() {
    asked() += "settingsController ";
    misbehave("page");
    static const LumoraSettingsController otherTag{"kit 0, another compiler, another library", &otherTag};
    static const LumoraSettingsController foreignTag{"caf\xE9", &foreignTag};
    static const LumoraSettingsController nullTag{nullptr, &nullTag};
    static const LumoraSettingsController nullPage{LUMORA_KIT_TAG, nullptr};
    const std::string how = kind();
    if (how == "other-tag") return &otherTag;
    if (how == "foreign-tag") return &foreignTag;
    if (how == "null-tag") return &nullTag;
    if (how == "null-page") return &nullPage;
    if (how == "throwing-page") throw 1;
    return nullptr;
}

const LumoraAppView* sharedInstance() {
    asked() += "sharedInstance ";
    static LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, name, appID, settingsController, 0, nullptr};
    misbehave("instance");
    const std::string how = kind();
    if (how == "printing") std::puts("hello\033[2J from a plug-in");
    if (how == "null-instance") return nullptr;
    if (how == "throwing-instance") throw std::runtime_error("no");
    if (how == "other-instance-version") view.version = LUMORA_APP_VIEW_VERSION + 1;
    if (how == "no-identifier") view.identifier = nullptr;
    if (how == "no-name") view.name = nullptr;
    if (how == "no-appID") view.appID = nullptr;
    if (how == "no-page") view.settingsController = nullptr;
    return &view;
}

/// Runs while the module is being loaded.
[[gnu::constructor]] void initialise() {
    if (const char* loads = std::getenv("LUMORA_TEST_LOADS")) { // a line for each, whoever loads
        const int file = ::open(loads, O_WRONLY | O_APPEND | O_CLOEXEC);
        const std::string line = ownName() + "\n";
        std::ignore = ::write(file, line.data(), line.size());
        ::close(file);
    }
    misbehave("load");
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
LUMORA_PRINCIPAL_CLASS(NullClass, nullptr)

LUMORA_PLUGIN_EXPORT const LumoraPrincipalClass LumoraPrincipalClass_OtherVersion;
const LumoraPrincipalClass LumoraPrincipalClass_OtherVersion = {LUMORA_APP_VIEW_VERSION + 1, sharedInstance};

/// What has been asked so far, in order.
LUMORA_PLUGIN_EXPORT const char* testPluginAsked() {
    return asked().c_str();
}
