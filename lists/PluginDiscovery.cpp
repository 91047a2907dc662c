#include "lists/PluginDiscovery.h"

#include <lumora/KitTag.h>

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FolderContents.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/Unicode.h"

#include <string_view>
#include <utility>

namespace lumora {

using platform::Class;
using platform::NSBundle;
using platform::Result;
namespace fs = std::filesystem;

namespace {

/// Calls a plug-in's function. One that throws answers as one that returns nothing: what it throws is its own affair.
template<class Answer>
Answer ask(Answer (*function)()) {
    try {
        return function();
    } catch (...) {
        return nullptr;
    }
}

std::optional<std::string> askText(const char* (*function)()) {
    const char* text = function ? ask(function) : nullptr;
    // Bytes that are no UTF-8 are no text, neither in a row nor in a message to the tweak.
    return text && platform::isUtf8(text) ? std::optional<std::string>(text) : std::nullopt;
}

/// The last questions about one text; empty when it can be used. It is asked twice, so that a plug-in is held to what
/// it says: once for whether there is a text, once for whether there is anything in it.
std::string faultOfText(const Plugin& plugin, std::optional<std::string> (Plugin::*text)() const, const char* called) {
    if (!(plugin.*text)()) return std::string("its plug-in object gives no ") + called;
    if ((plugin.*text)() == "") return std::string("its plug-in object gives an empty ") + called;
    return {};
}

Result<Plugin> fail(std::string why) {
    return Result<Plugin>::failure(std::move(why));
}

/// The object that the principal class hands out.
Result<Plugin> sharedInstance(const LumoraPrincipalClass* principalClass) {
    if (!principalClass) return fail("its shared object exports no table for its NSPrincipalClass");
    if (principalClass->version != LUMORA_APP_VIEW_VERSION) return fail("its principal class is of another version");
    if (!principalClass->sharedInstance) return fail("its principal class does not answer sharedInstance");
    const LumoraAppView* object = ask(principalClass->sharedInstance);
    if (!object) return fail("its principal class has no sharedInstance");
    if (object->version != LUMORA_APP_VIEW_VERSION) return fail("its plug-in object is of another version");
    return Plugin(*object);
}

Result<Plugin> examineLoaded(const LumoraPrincipalClass* principalClass) {
    Result<Plugin> plugin = sharedInstance(principalClass);
    if (!plugin) return plugin;
    const Plugin& object = plugin.value();
    if (!object.respondsToIdentifier()) return fail("its plug-in object does not answer identifier");
    if (!object.respondsToName()) return fail("its plug-in object does not answer name");
    if (!object.respondsToAppID()) return fail("its plug-in object does not answer appID");
    if (auto fault = faultOfText(object, &Plugin::identifier, "identifier"); !fault.empty()) return fail(fault);
    if (auto fault = faultOfText(object, &Plugin::name, "name"); !fault.empty()) return fail(fault);
    if (auto fault = faultOfText(object, &Plugin::appID, "appID"); !fault.empty()) return fail(fault);
    return plugin;
}

std::vector<fs::path> bundlePaths(const fs::path& folder) {
    std::vector<fs::path> paths;
    std::error_code failed; // a folder that is missing or cannot be read lists nothing
    for (fs::path& entry : platform::contentsOfDirectoryAtPath(folder, failed))
        if (isPluginPath(entry)) paths.push_back(std::move(entry));
    return paths;
}

} // namespace

std::optional<std::string> Plugin::identifier() const {
    return askText(object_->identifier);
}

std::optional<std::string> Plugin::name() const {
    return askText(object_->name);
}

std::optional<std::string> Plugin::appID() const {
    return askText(object_->appID);
}

Result<Class> Plugin::settingsController() const {
    const auto none = [](std::string why) { return Result<Class>::failure(std::move(why)); };
    const LumoraSettingsController* controller =
        object_->settingsController ? ask(object_->settingsController) : nullptr;
    if (!controller) return none("it has none");
    const std::string_view tag = controller->tag ? controller->tag : "nothing known";
    if (tag != LUMORA_KIT_TAG)
        return none("it was made with " + std::string(tag) + " and does not fit " + LUMORA_KIT_TAG);
    if (!controller->pageClass) return none("it has none");
    return static_cast<Class>(controller->pageClass);
}

fs::path pluginFolder() {
    return platform::devicePath("/Library/Nevo/Lumora/Plugins");
}

bool isPluginPath(const fs::path& path) {
    return path.extension() == ".bundle";
}

Result<Plugin> examine(const fs::path& path) {
    const auto bundle = NSBundle::bundleWithPath(path);
    if (!bundle) return fail("it is no folder");
    const Result<bool> loaded = bundle->load();
    // Asked whether or not loading succeeded; without a loaded object there is no such table.
    const auto* principalClass =
        static_cast<const LumoraPrincipalClass*>(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL));
    Result<Plugin> plugin = loaded ? examineLoaded(principalClass) : fail(loaded.error());
    bundle->unload(); // in every case, and no matter what it answers
    return plugin;
}

std::vector<Plugin> discoverPlugins(bool withSettings) {
    std::vector<Plugin> found;
    for (const fs::path& path : bundlePaths(pluginFolder())) {
        const Result<Plugin> plugin = examine(path);
        // Kept on purpose: here every reason is dropped. A broken plug-in is simply not there, so that one author's
        // mistake never stands in the way of the others; `lumoractl plugins` tells the reasons to whoever asks.
        if (!plugin) continue;
        if (withSettings && !plugin.value().settingsController()) continue;
        found.push_back(plugin.value());
    }
    return found;
}

} // namespace lumora
