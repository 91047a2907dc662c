// A plug-in that is copied into many bundles and behaves as the name of its bundle says: "KIND-NUMBER.bundle".
#include <lumora/KitTag.h>

#include "tests/lists/modules/TestPlugin.h"

#include <cstdio>
#include <cstdlib>
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

/// An answer of the text, unless the bundle's kind spoils just this one.
const char* answer(const char* question, const char* text) {
    asked() += std::string(question) + " ";
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
    static const std::string endless(std::size_t{2} << 20, 'x');
    return answer("name", kind() == "endless" ? endless.c_str() : text.c_str());
}
const char* appID() {
    return answer("appID", "org.example.Application");
}

const LumoraSettingsController* settingsController() {
    asked() += "settingsController ";
    static const LumoraSettingsController otherTag{"kit 0, another compiler, another library", &otherTag};
    static const LumoraSettingsController nullTag{nullptr, &nullTag};
    static const LumoraSettingsController nullPage{LUMORA_KIT_TAG, nullptr};
    const std::string how = kind();
    if (how == "other-tag") return &otherTag;
    if (how == "null-tag") return &nullTag;
    if (how == "null-page") return &nullPage;
    if (how == "throwing-page") throw 1;
    return nullptr;
}

const LumoraAppView* sharedInstance() {
    asked() += "sharedInstance ";
    static LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, name, appID, settingsController};
    const std::string how = kind();
    if (how == "crashing") std::abort();
    if (how == "exiting") std::exit(0);
    if (how == "scribbling") // into every file that is open, whosever it is
        for (int number = 0; number < 256; ++number)
            std::ignore = ::write(number, "{}{\n", 4);
    if (how.starts_with("closing"))
        for (int number = 0; number < 256; ++number)
            ::close(number);
    while (how.ends_with("hanging"))
        ::pause();
    if (how == "forking") {
        // The process that is left behind holds a lock on the module's own file for as long as it lives.
        ::flock(::open(ownFile().c_str(), O_RDONLY), LOCK_EX);
        while (::fork() == 0)
            ::pause();
    }
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
    if (kind() == "throwing-initialiser") throw std::runtime_error("no");
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
