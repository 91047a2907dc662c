#pragma once

#include <lumora/AppView.h>

#include "platform/foundation/Class.h"
#include "platform/foundation/Result.h"

#include <filesystem>
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

/// Loads one plug-in bundle and asks for its object: the object, or why there is none that can be used.
///
///     const auto plugin = examine(folder / "Clock.bundle");
///     if (!plugin) complain(plugin.error());
///
/// Runs the plug-in's code. Main thread.
[[nodiscard]] platform::Result<Plugin> examine(const std::filesystem::path& bundle);

/// The plug-ins in the plug-in folder, or only those with a settings page, in the order in which the file manager lists
/// them: by the names of their bundles, since nothing is sorted here. Each call looks anew; what cannot be used is left
/// out in silence. Main thread.
[[nodiscard]] std::vector<Plugin> discoverPlugins(bool withSettings);

} // namespace lumora
