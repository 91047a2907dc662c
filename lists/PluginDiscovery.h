#pragma once

#include <lumora/AppView.h>

#include "platform/foundation/Class.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/Result.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// A plug-in object: what a plug-in's principal class handed out as its one shared instance. A copy is the same object;
/// every question is asked of the plug-in anew. Its code stays for the life of the process.
class Plugin {
  public:
    explicit Plugin(const LumoraAppView& object) : object_(&object) {}

    [[nodiscard]] bool respondsToIdentifier() const { return object_->identifier != nullptr; }
    [[nodiscard]] bool respondsToName() const { return object_->name != nullptr; }
    [[nodiscard]] bool respondsToAppID() const { return object_->appID != nullptr; }

    /// The plug-in's three texts; nothing where it answers null, no UTF-8 or with an exception.
    [[nodiscard]] std::optional<std::string> identifier() const;
    [[nodiscard]] std::optional<std::string> name() const;
    [[nodiscard]] std::optional<std::string> appID() const;

    /// The page that the plug-in's settings link opens, or why it has none. Never null, and never to be looked up by
    /// its name: two plug-ins may use the same one.
    [[nodiscard]] platform::Result<platform::Class> settingsController() const;

  private:
    const LumoraAppView* object_;
};

/// The folder that plug-ins are put into: "/Library/Nevo/Lumora/Plugins" of the device.
[[nodiscard]] std::filesystem::path pluginFolder();

/// True for a path whose extension says "bundle", in these letters.
[[nodiscard]] bool isPluginPath(const std::filesystem::path& path);

/// One plug-in bundle, loaded and asked for its object; unloaded when this goes.
///
///     const PluginExamination examination(NSBundle::bundleWithPath(folder / "Clock.bundle"));
///     if (!examination.plugin()) complain(examination.plugin().error());
///
/// Runs the plug-in's code, which may do anything to the process. Main thread.
class PluginExamination {
  public:
    /// Null is a bundle that is no folder. The file of any other has no faultOfSharedObject().
    explicit PluginExamination(std::shared_ptr<platform::NSBundle> bundle);
    PluginExamination(const PluginExamination&) = delete;
    PluginExamination& operator=(const PluginExamination&) = delete;
    ~PluginExamination();

    /// The object, or why there is none that can be used.
    [[nodiscard]] const platform::Result<Plugin>& plugin() const { return plugin_; }

  private:
    std::shared_ptr<platform::NSBundle> bundle_;
    platform::Result<Plugin> plugin_;
};

/// The plug-ins in the plug-in folder, or only those with a settings page, in the order in which the file manager lists
/// them: by the names of their bundles, since nothing is sorted here. Each call looks anew; what cannot be used is left
/// out in silence, and so is what would end or damage this process: all of it is tried in another one first, once for
/// each state of its files. Main thread.
[[nodiscard]] std::vector<Plugin> discoverPlugins(bool withSettings, const platform::ProbeLimits& limits = {});

} // namespace lumora
