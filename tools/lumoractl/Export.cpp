#include "tools/lumoractl/Export.h"

#include "tools/lumoractl/ProfileFile.h"
#include "tools/lumoractl/RowNames.h"
#include "tools/lumoractl/Streams.h"
#include "tools/lumoractl/TweakClient.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/Unicode.h"
#include "profiles/MakeProfile.h"

#include <memory>
#include <utility>

using platform::Dictionary;
using platform::Result;

namespace lumora {
namespace {

struct ExportOptions {
    bool changed = false;
    bool all = false;
    std::string name;
    std::vector<std::string> keys;
    std::string output = "-";
    std::string root;
};

int failExport(const std::string& why) {
    complain(why);
    return kFailed;
}

/// The settings of these keys, or all of them if there are none.
Dictionary chosenOf(const Dictionary& settings, const std::vector<std::string>& keys) {
    if (keys.empty()) return settings;
    Dictionary chosen;
    for (const std::string& key : keys)
        if (const platform::Value* value = settings.find(key)) chosen.set(key, *value);
    return chosen;
}

int exportSettings(const ExportOptions& options) {
    if (!options.root.empty()) platform::setDeviceRoot(options.root);
    const Result<Dictionary> settings = fetchSettings();
    if (!settings) return failExport(settings.error());
    const bool changedOnly = options.changed || (!options.all && options.keys.empty());
    const profiles::Secrets secrets = secretsFor(chosenOf(settings.value(), options.keys), options.root);
    profiles::MadeProfile made = makeProfile(settings.value(), {changedOnly, options.keys}, secrets);
    for (const std::string& key : made.missing)
        complain(key + " is not set");
    if (!made.missing.empty()) return kFailed;

    const Result<std::string> text = textOf(made.profile, options.name);
    if (!text) return failExport("the profile cannot be written: " + text.error());
    const Result<void> written = writeAll(options.output, text.value().data(), text.value().size());
    if (!written) return failExport(written.error());
    for (const std::string& remark : made.remarks)
        complain("left out: " + remark);
    return made.remarks.empty() || options.keys.empty() ? kDone : kPartly;
}

std::string utf8Only(const std::string& text) {
    return platform::isUtf8(text) ? "" : "is no UTF-8";
}

} // namespace

void addExport(const AddCommand& add) {
    const auto options = std::make_shared<ExportOptions>();
    CLI::App& command = *add("export", "Write settings as a profile, without passcodes",
                             [options] { return exportSettings(*options); });
    auto* changed = command.add_flag("--changed", options->changed,
                                     "Those that differ from the defaults; what counts when no KEY is given");
    command.add_flag("--all", options->all, "All, as they are by default too")->excludes(changed);
    command.add_option("--name", options->name, "What people call the profile")->type_name("NAME")->check(utf8Only);
    command.add_option("KEY", options->keys, "These settings alone")->type_name("")->check(utf8Only);
    command.add_option("-o,--output", options->output, "What to write; standard output when it is - or not given")
        ->type_name("FILE");
    command.add_option("--root", options->root, "The folder that stands for the device's \"/\"")->type_name("DIR");
    command.footer(
        "Passcodes are left out, whatever is asked for, and named under \"omitted\". So are texts of plug-ins\n"
        "that none of their rows shows, unless their keys are given.\n\n"
        "Example: lumoractl export --name \"Quiet evenings\" > quiet.json\n\n"
        "Exit status: 0 done, 1 failed, 2 wrong use, 3 done without a KEY that was given.\n");
}

} // namespace lumora
