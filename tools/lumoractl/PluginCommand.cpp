#include "tools/lumoractl/PluginCommand.h"

#include "tools/lumoractl/CheckPlugin.h"
#include "tools/lumoractl/NewPlugin.h"
#include "tools/lumoractl/RunPlugin.h"
#include "tools/lumoractl/Streams.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/LoadProbe.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <memory>
#include <utility>

using platform::Result;

namespace lumora {
namespace {

struct PluginOptions {
    NewPlugin wanted;
    std::string bundle;
    std::string root;
    bool json = false;
    bool strict = false;
    std::function<int()> chosen;
};

/// How "check" ends.
enum CheckExit : int { kClean = 0, kToMend = 1, kNotJudged = 2 };

std::string isIdentifier(const std::string& text) {
    return isReverseDomain(text) ? "" : "an identifier is in reverse-domain form, as org.example.clock";
}

int makeNew(NewPlugin wanted) {
    if (wanted.identifier.empty()) {
        wanted.identifier = "com.example." + wanted.name;
        std::ranges::transform(wanted.identifier, wanted.identifier.begin(),
                               [](unsigned char c) { return char(std::tolower(c)); });
    }
    if (wanted.folder.empty()) wanted.folder = wanted.name;
    const auto made = makePlugin(wanted);
    if (!made) return report(made.error());
    std::string names;
    for (const std::string& name : made.value())
        names += (names.empty() ? "" : ", ") + name;
    return print(wanted.folder.string() + ": " + names + "\n");
}

int check(const PluginOptions& options) {
    if (!options.root.empty()) platform::setDeviceRoot(options.root);
    const auto checked = checkPlugin(options.bundle, platform::ProbeLimits().clock);
    if (!checked) {
        complain(checked.error());
        return kNotJudged;
    }
    const Result<void> printed =
        options.json ? printJson(documentOf(checked.value())) : printText(linesOf(checked.value()));
    if (!printed) {
        complain(printed.error());
        return kNotJudged;
    }
    const bool toMend = std::ranges::any_of(
        checked.value().findings, [&](const PluginFinding& finding) { return options.strict || !finding.isWarning; });
    return toMend ? kToMend : kClean;
}

int run(const PluginOptions& options) {
    if (!options.root.empty()) platform::setDeviceRoot(options.root);
    const Result<void> ran = runPlugin(options.bundle);
    return ran ? kDone : report(ran.error());
}

void addBundle(CLI::App& command, PluginOptions& options) {
    command.add_option("BUNDLE", options.bundle, "The plug-in's bundle, as build/NextBus.bundle")
        ->required()
        ->type_name("");
    command.add_option("--root", options.root, "The folder that stands for the device's \"/\"")->type_name("DIR");
}

} // namespace

void addPlugin(const AddCommand& add) {
    const auto options = std::make_shared<PluginOptions>();
    CLI::App& command =
        *add("plugin", "Make an App View plug-in, judge it, or try it", [options] { return options->chosen(); });
    command.require_subcommand(1);
    command.footer("Exit status: that of the command.\n");
    const auto sub = [&](const char* name, const char* help, std::function<int()> action) -> CLI::App& {
        CLI::App& added = *command.add_subcommand(name, help);
        added.callback([options, action = std::move(action)] { options->chosen = action; });
        return added;
    };

    PluginOptions& to = *options; // lives as long as the action of the command
    CLI::App& making =
        sub("new", "Make a folder with a plug-in of your own, ready to be built", [&to] { return makeNew(to.wanted); });
    making.add_option("NAME", to.wanted.name, "Of the bundle and its class, as NextBus")
        ->required()
        ->type_name("")
        ->check(isPluginName);
    making
        .add_option("--identifier", to.wanted.identifier,
                    "What tells it apart, in reverse-domain form (default: com.example.NAME)")
        ->type_name("TEXT")
        ->check(isIdentifier);
    making.add_option("--folder", to.wanted.folder, "What to make, missing or empty (default: NAME)")->type_name("DIR");
    making.footer("Nothing is overwritten.\n\nExit status: 0 done, 1 failed, 2 wrong use.\n");

    CLI::App& checking =
        sub("check", "Say what is to be mended in a plug-in, why, and how", [&to] { return check(to); });
    addBundle(checking, to);
    checking.add_flag("--json", to.json, "Print a JSON object with all findings");
    checking.add_flag("--strict", to.strict, "Have warnings count as errors");
    checking.footer(
        "It is loaded into other processes alone, and all that happens there is a finding.\n\n"
        "Exit status: 0 nothing to mend but warnings, 1 something is, 2 wrong use or it cannot be judged.\n");

    CLI::App& running =
        sub("run", "Show the plug-in's settings page beside the lock screen", [&to] { return run(to); });
    addBundle(running, to);
    running.footer(
        "The plug-in is alone, with settings of its own that go with it; those of the user are neither read\n"
        "nor changed. When the bundle has been built anew, it is judged and shown again. It ends with its\n"
        "window, with SIGINT and with SIGTERM.\n\n"
        "Exit status: 0 done, 1 failed, 2 wrong use.\n");
}

} // namespace lumora
