#include "tools/lumoractl/Diff.h"

#include "tools/lumoractl/PageIndex.h"
#include "tools/lumoractl/ProfileFile.h"
#include "tools/lumoractl/RowNames.h"
#include "tools/lumoractl/Streams.h"
#include "tools/lumoractl/TweakClient.h"

#include "platform/foundation/DeviceRoot.h"
#include "profiles/Differences.h"

#include <memory>
#include <optional>
#include <utility>

using platform::Dictionary;
using platform::List;
using platform::Result;
using profiles::Difference;

namespace lumora {
namespace {

struct DiffOptions {
    std::vector<std::string> files;
    bool json = false;
    std::string root;
};

/// As other programs that compare files end.
enum DiffExit : int { kNothingDiffers = 0, kSomethingDiffers = 1, kDiffFailed = 2 };

int failDiff(const std::string& why) {
    complain(why);
    return kDiffFailed;
}

Result<std::vector<Difference>> compare(const DiffOptions& options) {
    using Compared = Result<std::vector<Difference>>;
    std::vector<Dictionary> sides;
    for (const std::string& file : options.files) {
        const Result<NamedProfile> profile = readNamedProfile(file, options.root);
        if (!profile) return Compared::failure(profile.error());
        complainOf(profile.value());
        sides.push_back(profile.value().read.profile.settings);
    }
    if (sides.size() == 2) return profiles::differences(sides[0], sides[1]);
    const Result<Dictionary> settings = fetchSettings();
    return settings ? profiles::changesBy(sides[0], settings.value()) : Compared::failure(settings.error());
}

int diff(const DiffOptions& options) {
    if (!options.root.empty()) platform::setDeviceRoot(options.root);
    const auto compared = compare(options);
    if (!compared) return failDiff(compared.error());
    const RowNames names(keptIndex());
    List documents;
    std::string lines;
    for (const Difference& difference : compared.value()) {
        documents.emplace_back(names.documentOf(difference));
        lines += names.lineOf(difference, options.files.size() == 2 ? "not named" : "not set") + "\n";
    }
    const Result<void> printed = options.json ? printJson(documents) : printText(lines);
    if (!printed) return failDiff(printed.error());
    return documents.empty() ? kNothingDiffers : kSomethingDiffers;
}

} // namespace

void addDiff(const AddCommand& add) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App& command =
        *add("diff", "Compare a profile with the settings, or two profiles", [options] { return diff(*options); });
    command
        .add_option("FILE", options->files,
                    "One profile, of whose settings those are printed that it would change; or two, the old one first")
        ->required()
        ->expected(1, 2)
        ->type_name("");
    command.add_flag("--json", options->json, "Print one JSON list, with an object for each difference");
    command.add_option("--root", options->root, "The folder that stands for the device's \"/\"")->type_name("DIR");
    command.footer("A profile is a file, - for standard input, or the name of one that is shipped. Each line is\n"
                   "NAME: OLD \u2192 NEW. Passcodes are not compared.\n\n"
                   "Example: lumoractl diff plain.json\n\n"
                   "Exit status: 0 nothing differs, 1 something does, 2 wrong use or failed.\n");
}

} // namespace lumora
