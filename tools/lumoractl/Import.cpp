#include "tools/lumoractl/Import.h"

#include "tools/lumoractl/PageIndex.h"
#include "tools/lumoractl/ProfileFile.h"
#include "tools/lumoractl/RowNames.h"
#include "tools/lumoractl/Streams.h"
#include "tools/lumoractl/TweakClient.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/Unicode.h"
#include "profiles/Differences.h"
#include "profiles/Shipped.h"

#include <algorithm>
#include <memory>
#include <utility>

using platform::Dictionary;
using platform::List;
using platform::Result;
using profiles::Difference;

namespace lumora {
namespace {

struct ImportOptions {
    std::string file;
    bool check = false;
    bool dryRun = false;
    bool list = false;
    bool json = false;
    std::string root;
};

int failImport(const std::string& why) {
    complain(why);
    return kFailed;
}

int statusOf(const Result<void>& printed, int status) {
    return printed ? status : failImport(printed.error());
}

int listShipped(bool json) {
    const auto shipped = profiles::shippedProfiles();
    if (shipped.empty()) complain("no profiles are in " + profiles::shippedFolder().string());
    List documents;
    std::string lines;
    std::size_t longest = 0;
    for (const auto& profile : shipped)
        longest = std::max(longest, profile.word.size());
    for (const auto& [word, name, file] : shipped) {
        documents.emplace_back(Dictionary{{"word", word}, {"name", name}, {"file", file.string()}});
        std::string line = word;
        line.resize(longest + 2, ' ');
        lines.append(platform::printable(line.append(name))).append("\n");
    }
    return statusOf(json ? printJson(documents) : printText(lines), kDone);
}

/// What an import comes to, told as it goes or as one document in the end.
class ImportReport {
  public:
    ImportReport(const NamedProfile& profile, bool json)
        : names_(keptIndex()),
          json_(json), document_{{"name", profile.read.profile.name}, {"by", profile.read.profile.by}} {
        List remarks;
        for (const auto& [kind, key, line, text] : profile.read.remarks)
            remarks.emplace_back(Dictionary{{"kind", profiles::nameOf(kind)},
                                            {"key", key},
                                            {"line", static_cast<std::int64_t>(line)},
                                            {"text", text}});
        document_.set("settings", static_cast<std::int64_t>(profile.read.profile.settings.size()));
        document_.set("remarks", std::move(remarks));
        if (!json) complainOf(profile);
    }

    [[nodiscard]] Result<void> changed(const Difference& change) {
        changes_.emplace_back(names_.documentOf(change));
        return json_ ? Result<void>() : printText(names_.lineOf(change) + "\n");
    }

    void refused(const std::string& key, const std::string& why) {
        refused_.emplace_back(Dictionary{{"key", key}, {"why", why}});
        if (!json_) complain("refused: " + names_.nameOf(key) + ": " + why);
    }

    [[nodiscard]] bool wasRefused() const { return !refused_.empty(); }

    [[nodiscard]] Result<void> end() {
        if (!json_) return {};
        document_.set("changes", changes_);
        document_.set("refused", refused_);
        return printJson(document_);
    }

  private:
    RowNames names_;
    bool json_;
    Dictionary document_;
    List changes_;
    List refused_;
};

/// Sends one message for each change. Fails where the tweak goes away, or where nobody reads what is told.
Result<void> makeChanges(const std::vector<Difference>& changes, ImportReport& report) {
    std::size_t made = 0;
    for (const Difference& change : changes) {
        const auto tried = tryChange(change.key, *change.after);
        if (!tried)
            return Result<void>::failure(tried.error() + "; " + std::to_string(made) + " of " +
                                         std::to_string(changes.size()) + " changes were made");
        if (tried.value()) {
            report.refused(change.key, *tried.value());
        } else {
            ++made;
            if (auto told = report.changed(change); !told) return told;
        }
    }
    return {};
}

Result<void> summarise(const NamedProfile& profile) {
    const std::string& name = profile.read.profile.name;
    const std::size_t count = profile.read.profile.settings.size();
    return printText(platform::printable(name.empty() ? profile.label : name) + ": " + std::to_string(count) +
                     (count == 1 ? " setting\n" : " settings\n"));
}

/// Makes the changes, or only tells them.
Result<void> take(const Dictionary& wanted, const ImportOptions& options, ImportReport& report) {
    const Result<Dictionary> settings = fetchSettings();
    if (!settings) return Result<void>::failure(settings.error());
    const auto changes = profiles::changesBy(wanted, settings.value());
    if (changes.empty() && !wanted.empty() && !options.json) complain("nothing changes: all settings are so already");
    if (!options.dryRun) return makeChanges(changes, report);
    Result<void> told;
    for (const Difference& change : changes)
        if (told) told = report.changed(change);
    return told;
}

int importProfile(const ImportOptions& options) {
    if (!options.root.empty()) platform::setDeviceRoot(options.root);
    if (options.list) return listShipped(options.json);
    if (options.file.empty()) {
        complain("import takes a FILE, or --list");
        return kWrongUse;
    }
    const Result<NamedProfile> named = readNamedProfile(options.file, options.root);
    if (!named) return failImport(named.error());
    const NamedProfile& profile = named.value();
    ImportReport report(profile, options.json);
    Result<void> done;
    if (!options.check) {
        done = take(profile.read.profile.settings, options, report);
    } else if (!options.json) {
        done = summarise(profile);
    }
    const Result<void> ended = report.end();
    if (!done || !ended) return failImport(done ? ended.error() : done.error());
    return leavesSomethingOut(profile) || report.wasRefused() ? kPartly : kDone;
}

} // namespace

void addImport(const AddCommand& add) {
    const auto options = std::make_shared<ImportOptions>();
    CLI::App& command =
        *add("import", "Change settings to those of a profile", [options] { return importProfile(*options); });
    command
        .add_option("FILE", options->file,
                    "The profile: a file, - for standard input, or the name of one that is shipped")
        ->type_name("");
    auto* check =
        command.add_flag("--check", options->check, "Say what is wrong with the file; the tweak is not asked");
    auto* dry = command.add_flag("--dry-run", options->dryRun, "Print what would change, and change nothing");
    auto* list = command.add_flag("--list", options->list, "List the profiles that are shipped");
    check->excludes(dry, list);
    dry->excludes(list);
    command.add_flag("--json", options->json, "Print one JSON object: changes, refused ones and remarks on the file");
    command.add_option("--root", options->root, "The folder that stands for the device's \"/\"")->type_name("DIR");
    command.footer(
        "Only what differs is sent, each change by itself, and printed as NAME: OLD \u2192 NEW. Settings that the\n"
        "profile does not name stay as they are. Passcodes are never taken.\n\n"
        "Example: lumoractl import --dry-run \"Large and Calm\"\n\n"
        "Exit status: 0 done, 1 failed, 2 wrong use, 3 done without settings that were left out or refused.\n");
}

} // namespace lumora
