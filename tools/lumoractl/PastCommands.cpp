#include "tools/lumoractl/PastCommands.h"

#include "tools/lumoractl/Past.h"

#include "platform/foundation/Unicode.h"

namespace lumora {
namespace {

constexpr const char* kTimes =
    "A time is 18:36 (when it was that time last), \"yesterday 18:36\", \"2026-11-20 18:36\", 2026-11-20T18:36:00Z,\n"
    "2h, \"3 days ago\" and the like, in your own time zone unless it names one.\n\n";
constexpr const char* kPastExitStatus =
    "Exit status: 0 done, 1 failed, 2 wrong use, 3 the tweak does not offer what this needs.\n";

std::string isKey(const std::string& key) {
    return platform::isUtf8(key) ? "" : "a key is UTF-8";
}

} // namespace

void PastCommands::addTo(CLI::App& app, const Choose& choose) {
    const auto command = [&](const char* name, const char* help, const std::string& footer, auto action) {
        CLI::App* made = app.add_subcommand(name, help);
        made->footer(footer + kPastExitStatus);
        made->callback([choose, action] { choose(action); });
        return made;
    };

    CLI::App* history = command("history", "List the changes that the tweak has recorded, the last one at the end",
                                kTimes, [this] { return showHistory(history_); });
    history->add_option("KEY", history_.key, "Only those of this key")->type_name("")->check(isKey);
    history->add_option("--since", history_.since, "Only those since a time, or after the change of a revision")
        ->type_name("TIME");
    history->add_flag("--json", history_.json, "Print one JSON list, with an object for each change");
    CLI::Option* clear = history->add_flag("--clear", history_.clear, "Have the tweak forget all of them");
    for (const char* other : {"KEY", "--since", "--json"})
        clear->excludes(history->get_option(other));

    CLI::App* undo = command("undo", "Take back one change, and no other",
                             "Without CHANGE it is the last one; taken back twice, a change is made again.\n"
                             "A change is not taken back where the same setting has been changed again since.\n\n"
                             "Example: lumoractl undo -2\n\n",
                             [this] { return undoChange(change_); });
    undo->add_option("CHANGE", change_, "Its revision, as listed by history, or -N for the last but N - 1")
        ->type_name("");

    CLI::App* at =
        command("at", "Print the settings as they were then, as one JSON object",
                std::string("Passcodes are left out.\n\n") + kTimes, [this] { return showSettingsAt(joined(time_)); });
    at->add_option("TIME", time_, "A time, or the revision of a change")->required()->type_name("");

    CLI::App* restore = command("restore", "Set all of Lumora's settings back to what they were then",
                                "Passcodes stay as they are, and so do the settings of plug-ins. Each setting that\n"
                                "differs is one change.\n\n" +
                                    std::string(kTimes),
                                [this] { return restoreSettings(joined(time_), dryRun_); });
    restore->add_option("TIME", time_, "A time, or the revision of a change, to what was after it")
        ->required()
        ->type_name("");
    restore->add_flag("--dry-run", dryRun_, "Print what would change, and change nothing");

    CLI::App* reset =
        command("reset", "Set settings back to their defaults", "", [this] { return resetSettings(keys_, all_); });
    CLI::Option* keys = reset->add_option("KEY", keys_, "The preference keys")->type_name("")->check(isKey);
    reset->add_flag("--all", all_, "All settings but passcodes and those of plug-ins")->excludes(keys);
}

} // namespace lumora
