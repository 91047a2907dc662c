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

/// A plug-in object: the one shared instance of a plug-in's principal class. A copy is the same object; each question
/// is put to the plug-in anew. Its code stays for the life of the process.
class Plugin {
  public:
    explicit Plugin(const LumoraAppView& object) : object_(&object) {}

    /// The plug-in's three texts; nothing if it answers null, another encoding than UTF-8, or with an exception.
    [[nodiscard]] std::optional<std::string> identifier() const;
    [[nodiscard]] std::optional<std::string> name() const;
    [[nodiscard]] std::optional<std::string> appID() const;

    /// The page that the plug-in's settings link opens, or why it has none. Never null. Keep the class itself: its name
    /// may be used by two plug-ins.
    [[nodiscard]] platform::Result<platform::Class> settingsController() const;

  private:
    const LumoraAppView* object_;
};

/// The folder of plug-ins: "/Library/Nevo/Lumora/Plugins" of the device.
[[nodiscard]] std::filesystem::path pluginFolder();

/// True for a path whose extension is exactly "bundle".
[[nodiscard]] bool isPluginPath(const std::filesystem::path& path);

/// Loads one plug-in bundle and asks for its object; unloads it at the end.
///
///     const PluginExamination examination(NSBundle::bundleWithPath(folder / "Clock.bundle"));
///     if (!examination.plugin()) complain(examination.plugin().error());
///
/// Runs the plug-in's code, which may do anything to the process. Main thread.
class PluginExamination {
  public:
    /// Null stands for a bundle that is no folder. The file of any other has passed checkSharedObject().
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
/// call looks anew. Each plug-in is tried in another process first, once for each state of its files. One that cannot
/// be used, or would end or damage this process, is left out in silence. Main thread.
[[nodiscard]] std::vector<Plugin> discoverPlugins(bool withSettings, const platform::ProbeLimits& limits = {});

} // namespace lumora
