#include "tools/lumoractl/AddCommand.h"
#include "tools/lumoractl/Diff.h"
#include "tools/lumoractl/Ending.h"
#include "tools/lumoractl/Export.h"
#include "tools/lumoractl/Import.h"
#include "tools/lumoractl/PastCommands.h"
#include "tools/lumoractl/PluginCommand.h"
#include "tools/lumoractl/Plugins.h"
#include "tools/lumoractl/Search.h"
#include "tools/lumoractl/Streams.h"
#include "tools/lumoractl/TweakClient.h"
#include "tools/lumoractl/Watch.h"

#include "lists/PluginDiscovery.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/foundation/Unicode.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

struct Arguments {
    std::string key;
    std::string value;
    std::string input = "-";
    std::string output = "-";
    bool secrets = false;
    std::string plugins;
    std::string root;
    std::vector<std::string> words;
    std::size_t most = 50;
    double timeout = std::chrono::duration<double>(platform::ProbeLimits().clock).count();
    bool json = false;
};

int write(const std::string& name, const void* bytes, std::size_t size) {
    const Result<void> written = writeAll(name, bytes, size);
    return written ? kDone : report(written.error());
}

int writeJsonTo(const std::string& name, const Value& value) {
    const Result<std::string> json = writeJson(value);
    if (!json) return report(json.error());
    const std::string text = json.value() + "\n";
    return write(name, text.data(), text.size());
}

Result<Value> parseJson(const Data& bytes) {
    return readJson({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

int list(const Arguments& arguments) {
    Result<Dictionary> settings = fetchSettings();
    if (!settings) return report(settings.error());
    Dictionary shown = std::move(settings).value();
    for (const Setting& setting : knownSettings()) {
        const Value* const value = shown.find(setting.key);
        if (value && !arguments.secrets) shown.set(setting.key, shownValue(setting.key, *value));
    }
    return writeJsonTo("-", shown);
}

int get(const Arguments& arguments) {
    // Dots in place of the value would look like a value to a script.
    if (isSecure(arguments.key) && !arguments.secrets)
        return report(arguments.key + " is a secret: ask for it with --secrets", kWrongUse);
    const Result<Dictionary> settings = fetchSettings();
    if (!settings) return report(settings.error());
    const Value* value = settings.value().find(arguments.key);
    return value ? writeJsonTo("-", *value) : report(arguments.key + " is not set");
}

/// What makes a change that the tweak takes look like a mistake; empty when nothing does.
std::string doubtAbout(const std::string& key, const Setting* setting, const Value& value) {
    // Keys of plug-ins have dots.
    if (!setting) return key.find('.') == std::string::npos ? "warning: Lumora has no setting " + key : "";
    const std::string beyond = beyondItsPage(*setting, value);
    return beyond.empty() ? "" : "warning: " + beyond;
}

int set(const Arguments& arguments) {
    Data json(arguments.value.begin(), arguments.value.end());
    if (arguments.value == "-") {
        Result<Data> read = readAll("-");
        if (!read) return report(read.error());
        json = std::move(read).value();
    }
    const Setting* setting = findSetting(arguments.key);
    const Result<Value> value = parseJson(json);
    if (!value) {
        const std::string wanted = setting ? "; " + setting->key + " takes " + std::string(wantedBy(*setting)) : "";
        return report("the value is not understood: " + value.error() + R"( (a text has quotes: '"text"'))" + wanted,
                      kWrongUse);
    }
    const std::string doubt = doubtAbout(arguments.key, setting, value.value());
    const Result<void> changed = changeSetting(arguments.key, value.value());
    if (!changed) return report(changed.error());
    return doubt.empty() ? kDone : report(doubt, kDone);
}

int archive(const Arguments& arguments) {
    const Result<Data> json = readAll(arguments.input);
    if (!json) return report(json.error());
    const Result<Value> value = parseJson(json.value());
    if (!value) return report("the input is no JSON: " + value.error());
    const std::optional<Data> archived = NSKeyedArchiver::archivedDataWithRootObject(value.value());
    if (!archived) return report("the value is nested too deeply, or too large, for an archive");
    return write(arguments.output, archived->data(), archived->size());
}

int unarchive(const Arguments& arguments) {
    const Result<Data> archived = readAll(arguments.input);
    if (!archived) return report(archived.error());
    const Result<Value> value = NSKeyedUnarchiver::unarchive(archived.value());
    return value ? writeJsonTo(arguments.output, value.value())
                 : report("the input is no keyed archive: " + value.error());
}

int plugins(const Arguments& arguments) {
    if (!arguments.root.empty()) platform::setDeviceRoot(arguments.root);
    const auto limit = std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(arguments.timeout));
    const auto found = probePlugins(arguments.plugins, limit);
    if (!found) return report(found.error());
    std::error_code unknown;
    if (arguments.plugins.empty() && !std::filesystem::exists(pluginFolder(), unknown))
        report("there is no plug-in folder at " + pluginFolder().string());
    else if (found.value().empty())
        report("nothing is in " + (arguments.plugins.empty() ? pluginFolder().string() : arguments.plugins));
    const Result<std::string> text = arguments.json ? writeJson(found.value()) : pluginTable(found.value());
    if (!text) return report(text.error());
    const std::string shown = arguments.json ? text.value() + "\n" : text.value();
    const int written = write("-", shown.data(), shown.size());
    return written != kDone ? written : allUsable(found.value()) ? kDone : kFailed;
}

int search(const Arguments& arguments) {
    if (!arguments.root.empty()) platform::setDeviceRoot(arguments.root);
    std::string words;
    for (const std::string& word : arguments.words)
        words += (words.empty() ? "" : " ") + word;
    const auto found = searchSettings(words, arguments.root, arguments.most);
    if (!found) return report(found.error());
    const platform::List& results = found.value();
    if (!results.empty() && results.front()["similar"].boolValue())
        complain("nothing has these words; these are similar");
    const Result<std::string> text = arguments.json ? writeJson(results) : resultLines(results);
    if (!text) return report(text.error());
    const std::string shown = arguments.json ? text.value() + "\n" : text.value();
    const int written = write("-", shown.data(), shown.size());
    return written != kDone ? written : results.empty() ? report("nothing is found") : kDone;
}

int watch(const Arguments& arguments) {
    const Result<void> watched = watchSettings(arguments.json);
    return watched ? kDone : report(watched.error());
}

constexpr const char* kAbout = R"(Reads and changes the settings of Lumora's tweak from a shell, as JSON.

Settings travel over the tweak's ports, under $LUMORA_PORTS, else $XDG_RUNTIME_DIR, else
/run/user/UID, else /tmp/lumora-UID.)";

constexpr const char* kJsonForms = R"(JSON keeps 1, 1.0 and true apart. What it has no form for is written
  {"$data": "base64"}
  {"$date": "2025-01-31T08:00:00Z"}   or seconds since 2001-01-01 00:00:00 UTC
  {"$real": "nan"}                    or "inf" or "-inf"
and a key of your own that begins with "$" has that sign twice.)";

constexpr const char* kExitStatus = "Exit status: 0 done, 1 failed, 2 wrong use.\n";

/// The commands, each with its help, and what the chosen one does.
class CommandLine {
  public:
    CommandLine() {
        app_.footer(std::string(kJsonForms) + "\n\n" + kExitStatus);
        app_.set_version_flag("--version", "lumoractl " LUMORA_VERSION, "Print the version and exit");
        app_.set_help_flag("-h,--help", "Print this help and exit; each command has its own");
        app_.require_subcommand(1);

        CLI::App* listing = command("list", "Print all settings as one JSON object", list);
        addSecrets(*listing);
        CLI::App* getting = command("get", "Print one setting as JSON; fails when it is not set", get);
        addKey(*getting);
        addSecrets(*getting);
        CLI::App* setting = command("set", "Change one setting; fails when the tweak refuses", set);
        addKey(*setting);
        setting
            ->add_option("JSON", arguments_.value, "The new value, or - to read it from standard input, out of sight")
            ->required()
            ->type_name("");
        setting->footer("Example: lumoractl set kSleepTime 30\n"
                        "         lumoractl set kLSDateSubtitle '\"EEEE\"'\n\n" +
                        std::string(kExitStatus));
        addWatch(*command("watch", "Print each change of the settings as it comes, until interrupted", watch));
        addFiles(*command("archive", "Turn JSON into a keyed archive, the form that messages have", archive));
        addFiles(*command("unarchive", "Turn a keyed archive into JSON", unarchive));
        addPlugins(*command("plugins", "List the App View plug-ins, or why they are skipped", plugins));
        const AddCommand add = [this](const std::string& name, const std::string& help, std::function<int()> run) {
            return command(name, help, [run = std::move(run)](const Arguments&) { return run(); });
        };
        addPlugin(add);
        addSearch(*command("search", "Find rows of the pages by their words", lumora::search));
        addExport(add);
        addImport(add);
        addDiff(add);
        past_.addTo(app_, [this](std::function<int()> action) {
            chosen_ = [action = std::move(action)](const Arguments&) { return action(); };
        });
    }

    int run(int count, const char* const* words) {
        try {
            app_.parse(count, words);
        } catch (const CLI::ParseError& error) {
            // The library says only that a command is missing.
            if (const auto strays = app_.remaining(); !chosen_ && !strays.empty() && error.get_exit_code() != 0)
                return report("there is no command \"" + strays.front() + "\": see lumoractl --help", kWrongUse);
            return app_.exit(error) == 0 ? kDone : kWrongUse;
        }
        return chosen_(arguments_);
    }

  private:
    using Action = std::function<int(const Arguments&)>;

    CLI::App* command(const std::string& name, const std::string& help, const Action& action) {
        CLI::App* command = app_.add_subcommand(name, help);
        command->footer(kExitStatus);
        command->callback([this, action] { chosen_ = action; });
        return command;
    }

    void addKey(CLI::App& command) {
        command.add_option("KEY", arguments_.key, "The preference key, such as kTweakEnabled")
            ->required()
            ->type_name("")
            ->check([](const std::string& key) { return platform::isUtf8(key) ? "" : "a key is UTF-8"; });
    }

    void addSecrets(CLI::App& command) {
        command.add_flag("--secrets", arguments_.secrets, "Show passcodes; without it they are dots or refused");
    }

    void addFiles(CLI::App& command) {
        command.add_option("FILE", arguments_.input, "What to read; standard input when it is - or not given")
            ->type_name("");
        command
            .add_option("-o,--output", arguments_.output, "What to write; standard output when it is - or not given")
            ->type_name("FILE");
        command.footer(std::string(kJsonForms) + "\n\n" + kExitStatus);
    }

    void addWatch(CLI::App& command) {
        command.add_flag("--json", arguments_.json, "Print a JSON object for each change: key, value and revision");
        command.footer(
            "Each line is KEY = VALUE, with passcodes as dots. Without a tweak it waits for one. It ends with\n"
            "SIGINT, with SIGTERM, and when nobody reads its output any more.\n\n" +
            std::string(kExitStatus));
    }

    void addPlugins(CLI::App& command) {
        command
            .add_option("PATH", arguments_.plugins,
                        "A folder of plug-ins or one bundle; /Library/Nevo/Lumora/Plugins when not given")
            ->type_name("");
        command.add_option("--root", arguments_.root, "The folder that stands for the device's \"/\"")
            ->type_name("DIR");
        command.add_option("--timeout", arguments_.timeout, "How long each may take to answer")
            ->type_name("SECONDS")
            ->capture_default_str()
            ->check(CLI::Range(0.001, 3600.0));
        command.add_flag("--json", arguments_.json, "Print one JSON list, with an object for each entry");
        command.footer("Each plug-in runs in a process of its own, so that none can harm the others.\n\n"
                       "Exit status: 0 all can be used, 1 one is skipped or the folder cannot be read, 2 wrong use.\n");
    }

    void addSearch(CLI::App& command) {
        command.add_option("WORDS", arguments_.words, "What to look for: rows that have all of them are found")
            ->required()
            ->type_name("")
            ->check([](const std::string& word) { return platform::isUtf8(word) ? "" : "a word is UTF-8"; });
        command.add_option("--root", arguments_.root, "The folder that stands for the device's \"/\"")
            ->type_name("DIR");
        command.add_option("--most", arguments_.most, "How many rows to print at most")
            ->type_name("NUMBER")
            ->capture_default_str()
            ->check(CLI::Range(1, 100'000));
        command.add_flag("--json", arguments_.json, "Print one JSON list, with an object for each row");
        command.footer("Titles, the path to them, options, help texts and other words for the same thing are looked\n"
                       "through, whatever their case and accents. Where nothing has the words, a mistake in each is\n"
                       "forgiven. The tweak is not asked.\n\n"
                       "Example: lumoractl search blur color\n\n"
                       "Exit status: 0 something is found, 1 nothing is or it failed, 2 wrong use.\n");
    }

    CLI::App app_{kAbout, "lumoractl"};
    Arguments arguments_;
    PastCommands past_;
    Action chosen_;
};

} // namespace
} // namespace lumora

int main(int count, char** words) {
    std::signal(SIGCHLD, SIG_DFL); // whoever starts this may ignore it, and then no child's end could be known
    return lumora::CommandLine().run(count, words);
}
