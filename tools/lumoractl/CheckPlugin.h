#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace lumora {

/// Something that the author of a plug-in had better change.
struct PluginFinding {
    std::string check; ///< by which scripts know it, as "slider"
    std::string what;  ///< one line
    std::string why;
    std::string mend;
    bool isWarning = false; ///< the plug-in does its work all the same
};

/// What is known of a plug-in that has been judged.
struct CheckedPlugin {
    std::string entry; ///< the name of its bundle
    bool usable = false;
    std::string name; ///< this and the next two are empty where it cannot be used
    std::string identifier;
    std::string appID;
    std::string page; ///< the class of its settings page; empty for none
    std::vector<PluginFinding> findings;
};

/// Judges a plug-in bundle, which is loaded into other processes alone. Fails where that cannot be done: when there is
/// no bundle, or no process to try it in. `limit` is how long it may take to answer discovery's questions. `stop` is a
/// file; once it can be read, what is told is worth nothing, and comes soon.
[[nodiscard]] platform::Result<CheckedPlugin> checkPlugin(const std::filesystem::path& bundle,
                                                          std::chrono::milliseconds limit, int stop = -1);

/// A dictionary for scripts:
///
///     {"entry": "MyView.bundle", "name": …, "identifier": …, "appID": …,
///      "findings": [{"check": …, "severity": "error" or "warning", "what": …, "why": …, "mend": …}, …]}
[[nodiscard]] platform::Value documentOf(const CheckedPlugin& plugin);
/// The same for people to read.
[[nodiscard]] std::string linesOf(const CheckedPlugin& plugin);

} // namespace lumora
