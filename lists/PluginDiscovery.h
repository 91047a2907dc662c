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

/// A plug-in object: the one shared instance of a plug-in's principal class. A copy refers to the same object, and each
/// call asks the plug-in anew. The plug-in's code stays loaded for the life of the process. Main thread.
class Plugin {
  public:
    explicit Plugin(const LumoraAppView& object) : object_(&object) {}

    /// The plug-in's three texts; nothing if it answers null or a text that is not UTF-8, or throws.
    [[nodiscard]] std::optional<std::string> identifier() const;
    [[nodiscard]] std::optional<std::string> name() const;
    [[nodiscard]] std::optional<std::string> appID() const;

    /// The page that the plug-in's settings link opens, never null, or why there is none. Keep the class itself, since
    /// two plug-ins may use one name.
    [[nodiscard]] platform::Result<platform::Class> settingsController() const;

    /// Whether the view shows what is private.
    [[nodiscard]] bool isSecure() const;
    /// Whether it draws itself, which only a process of its own may have it do.
    [[nodiscard]] bool draws() const;
    /// The seconds after which it wants to draw again. Fails if it does not draw, or throws.
    [[nodiscard]] platform::Result<double> draw(const LumoraCanvas& canvas, const LumoraDrawing& drawing) const;

  private:
    const LumoraAppView* object_;
};

/// The folder of plug-ins: "/Library/Nevo/Lumora/Plugins" of the device.
[[nodiscard]] std::filesystem::path pluginFolder();

/// True for a path whose extension is exactly "bundle".
[[nodiscard]] bool isPluginPath(const std::filesystem::path& path);

/// Loads one plug-in bundle, asks for its object and unloads the bundle at the end.
///
///     const PluginExamination examination(NSBundle::bundleWithPath(folder / "Clock.bundle"));
///     if (!examination.plugin()) complain(examination.plugin().error());
///
/// Runs the plug-in's code, which may do anything to the process. Main thread.
class PluginExamination {
  public:
    /// Null stands for a bundle that is not a folder. The shared object of any other has passed checkSharedObject().
    explicit PluginExamination(std::shared_ptr<platform::NSBundle> bundle);
    PluginExamination(const PluginExamination&) = delete;
    PluginExamination& operator=(const PluginExamination&) = delete;
    ~PluginExamination();

    /// The object, or why it cannot be used.
    [[nodiscard]] const platform::Result<Plugin>& plugin() const { return plugin_; }

  private:
    std::shared_ptr<platform::NSBundle> bundle_;
    platform::Result<Plugin> plugin_;
};

/// The plug-ins in the plug-in folder, or only those with a settings page, in the order of their bundles' names. Each
/// call looks anew. A plug-in is tried in another process first, once for each state of its files and within the limits.
/// One that cannot be used, or would end or damage this process, is left out in silence. Main thread.
[[nodiscard]] std::vector<Plugin> discoverPlugins(bool withSettings, const platform::ProbeLimits& limits = {});

/// What a plug-in says of itself.
struct PluginTexts {
    std::string identifier;
    std::string name;
    std::string appID;
    bool secure = false;
    bool draws = false;
    std::filesystem::path bundle;
};

/// The plug-ins in the plug-in folder that can be used, in the order of their bundles' names, each asked in a process
/// of its own: nothing of them is loaded into this one, and none is remembered. Waits for all of them; any thread.
[[nodiscard]] std::vector<PluginTexts> askPlugins(const platform::ProbeLimits& limits = {});

} // namespace lumora
