#include "lists/PluginDiscovery.h"

#include <lumora/KitTag.h>

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FolderContents.h"
#include "platform/foundation/LoadVerdicts.h"
#include "platform/foundation/SharedObject.h"
#include "platform/foundation/Unicode.h"

#include <array>
#include <string_view>
#include <utility>

namespace lumora {

using platform::Class;
using platform::NSBundle;
using platform::Result;
namespace fs = std::filesystem;

namespace {

/// Calls a plug-in's function. One that throws counts as one that returns null: what it throws is its own affair.
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
    // Neither a row nor a message to the tweak can hold anything but UTF-8.
    return text && platform::isUtf8(text) ? std::optional<std::string>(text) : std::nullopt;
}

/// A table of version 1 ends before all that.
bool hasDrawing(const LumoraAppView& object) {
    return object.version >= 2;
}

Result<Plugin> fail(std::string why) {
    return Result<Plugin>::failure(std::move(why));
}

bool isKnown(std::uint32_t version) {
    return version >= 1 && version <= LUMORA_APP_VIEW_VERSION;
}

/// The object that the principal class hands out, if it answers all that is asked of it.
Result<Plugin> sharedInstance(const LumoraPrincipalClass* principalClass) {
    if (!principalClass) return fail("its shared object exports no table for its NSPrincipalClass");
    if (!isKnown(principalClass->version)) return fail("its principal class is of another version");
    if (!principalClass->sharedInstance) return fail("its principal class does not answer sharedInstance");
    const LumoraAppView* object = ask(principalClass->sharedInstance);
    if (!object) return fail("its principal class has no sharedInstance");
    if (!isKnown(object->version)) return fail("its plug-in object is of another version");
    const std::array<std::pair<std::string, const char* (*)()>, 3> texts{
        {{"identifier", object->identifier}, {"name", object->name}, {"appID", object->appID}}};
    for (const auto& [called, text] : texts)
        if (!text) return fail("its plug-in object does not answer " + called);
    for (const auto& [called, text] : texts) {
        // Asked twice, so that a plug-in is held to what it says: is there a text, and is there anything in it?
        if (!askText(text)) return fail("its plug-in object gives no " + called);
        if (askText(text) == "") return fail("its plug-in object gives an empty " + called);
    }
    return Plugin(*object);
}

using Bundles = std::vector<std::shared_ptr<NSBundle>>;

/// The plug-in bundles of a folder, in its order.
Bundles bundlesIn(const fs::path& folder) {
    Bundles bundles;
    std::error_code failed; // a folder that is missing or cannot be read lists nothing
    for (const fs::path& entry : platform::contentsOfDirectoryAtPath(folder, failed))
        if (auto bundle = isPluginPath(entry) ? NSBundle::bundleWithPath(entry) : nullptr)
            bundles.push_back(std::move(bundle));
    return bundles;
}

/// For each bundle, whether loading it does this process no harm.
std::vector<bool> mayBeLoaded(const Bundles& bundles, const platform::ProbeLimits& limits) {
    std::vector<platform::LoadCandidate> candidates;
    candidates.reserve(bundles.size());
    for (const auto& bundle : bundles) {
        const fs::path& folder = bundle->bundlePath();
        candidates.push_back({folder, {folder, folder / "Info.plist", bundle->executablePath()}});
    }
    return platform::mayBeLoaded(platform::ForeignCode::plugin, candidates, limits);
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

bool Plugin::isSecure() const {
    return hasDrawing(*object_) && (object_->flags & LUMORA_APP_VIEW_SECURE) != 0;
}

bool Plugin::draws() const {
    return hasDrawing(*object_) && object_->draw;
}

Result<double> Plugin::draw(const LumoraCanvas& canvas, const LumoraDrawing& drawing) const {
    if (!draws()) return Result<double>::failure("it does not draw");
    try {
        return object_->draw(&canvas, &drawing);
    } catch (...) {
        return Result<double>::failure("it throws");
    }
}

fs::path pluginFolder() {
    return platform::devicePath("/Library/Nevo/Lumora/Plugins");
}

bool isPluginPath(const fs::path& path) {
    return path.extension() == ".bundle";
}

PluginExamination::PluginExamination(std::shared_ptr<NSBundle> bundle)
    : bundle_(std::move(bundle)), plugin_(fail("it is no folder")) {
    if (!bundle_) return;
    const Result<void> loaded = bundle_->load(platform::FileCheck::None);
    // Kept on purpose: asked even if loading failed; the answer is null then.
    const auto* principalClass =
        static_cast<const LumoraPrincipalClass*>(bundle_->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL));
    plugin_ = loaded ? sharedInstance(principalClass) : fail(loaded.error());
}

PluginExamination::~PluginExamination() {
    if (bundle_) bundle_->unload(); // even a bundle that did not load, and whatever the answer
}

std::vector<Plugin> discoverPlugins(bool withSettings, const platform::ProbeLimits& limits) {
    const Bundles bundles = bundlesIn(pluginFolder());
    const std::vector<bool> safe = mayBeLoaded(bundles, limits);
    std::vector<Plugin> found;
    for (std::size_t i = 0; i < bundles.size(); ++i) {
        // Kept on purpose: here every reason is dropped. A broken plug-in is simply not there, so that one author's
        // mistake never stands in the way of the others; `lumoractl plugins` tells the reasons.
        if (!safe[i]) continue;
        const PluginExamination examination(bundles[i]);
        const Result<Plugin>& plugin = examination.plugin();
        if (!plugin) continue;
        if (withSettings && !plugin.value().settingsController()) continue;
        found.push_back(plugin.value());
    }
    return found;
}

std::vector<PluginTexts> askPlugins(const platform::ProbeLimits& limits) {
    std::error_code failed; // a folder that is missing or cannot be read lists nothing
    std::vector<fs::path> bundles = platform::contentsOfDirectoryAtPath(pluginFolder(), failed);
    std::erase_if(bundles, [](const fs::path& entry) { return !isPluginPath(entry); });
    std::vector<PluginTexts> answers;
    const auto probed = platform::probe(platform::ForeignCode::plugin, bundles, platform::ProbeReport::answers, limits);
    for (std::size_t i = 0; i < probed.size(); ++i) {
        const platform::Probed& plugin = probed[i];
        const auto answer = [&](const char* key) {
            const platform::Value* const text = plugin.told.find(key);
            return text && text->text() ? std::string(*text->text()) : std::string();
        };
        // Kept on purpose: here every reason is dropped, as above.
        if (plugin.verdict != platform::Probed::Verdict::safe || plugin.told.find("skipped")) continue;
        PluginTexts texts{answer("identifier"),
                          answer("name"),
                          answer("appID"),
                          plugin.told["secure"].boolValue(),
                          plugin.told["draws"].boolValue(),
                          bundles[i]};
        if (!texts.identifier.empty()) answers.push_back(std::move(texts));
    }
    return answers;
}

} // namespace lumora
