#include "tools/lumoractl/CheckPlugin.h"

#include "tools/lumoractl/ElfFile.h"
#include "tools/lumoractl/NewPlugin.h"
#include "tools/lumoractl/Plugins.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace lumora {

using platform::Dictionary;
using platform::List;
using platform::NSBundle;
using platform::Probed;
using platform::Result;
using platform::Value;
namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

/// All that is judged beyond what discovery asks, with a hundred processes.
constexpr platform::ProbeLimits kToJudge{120s, 60s};

struct Check {
    std::string_view name;
    const char* why;
    const char* mend;
    bool isWarning = false;
};

constexpr std::array kChecks{
    Check{"usable", "Settings leaves it out, without a word.",
          "Compare Info.plist and the two tables with \"What is in a bundle\" of plugins.md."},
    Check{"library", "Settings cannot load it, and leaves it out.",
          "Install that library in a system folder, or beside the kit, or do without it."},
    Check{"harm", "It would take Settings along, so Settings leaves it out.",
          "Run it in a debugger: what is said here happens while it is loaded or asked."},
    Check{"tag", "A page shares C++ objects with Settings, so one of another make is not opened.",
          "Build it anew with the compiler and the kit that are named."},
    Check{"prints", "What it prints goes to the terminal or the log of whoever started Settings.",
          "Leave out the printing; NSLog() is there for authors.", true},
    Check{"texts", "Settings asks more than once, and keeps the order of plug-ins by their identifiers.",
          "Answer the same each time, with a text that stays where it is."},
    Check{"identifier", "Another author may choose the same word; a domain is yours alone.",
          "Name it after a domain of yours, turned round, as org.example.clock."},
    Check{"identifier-taken", "Settings takes both for one: they share a place in the order, and a switch.",
          "Choose another identifier."},
    Check{"key-prefix", "All keys share one dictionary, and what you draw is told your own alone.",
          "Begin it with your identifier and a dot.", true},
    Check{"page", "The page does not open.",
          "Run it in a debugger: what is said here happens while the page or its rows are made."},
    Check{"rows-differ", "Rows are found again by their place, in search as when one goes back.",
          "Make the rows from nothing but the settings."},
    Check{"key", "Without a key there is nothing to read or change.", "Give the row an identifier."},
    Check{"key-twice", "Both rows change one setting, and one shows what is no longer so.",
          "Give each row a key of its own."},
    Check{"options", "Only options with both a title and a value are shown.", "Give each title one value."},
    Check{"slider", "There is nothing between the bounds to choose.", "Give the smaller bound first."},
    Check{"link", "A tap does nothing.", "Give it a page class that is there, or an action."},
    Check{"icon", "It is drawn blurred or too large, or not at all.",
          "Put NAME.png with 29 × 29 pixels and NAME@2x.png with 58 × 58 into the bundle's resources."},
    Check{"settings", "Anybody can change a setting, to anything: the page then opens no more.",
          "Look at the kind of a value before you use it, and at its bounds."},
    Check{"draw", "The card says \"stopped\", and shows nothing.",
          "Run it in a debugger: what is said here happens in draw()."},
    Check{"draw-time", "A drawing has 100 ms of the processor, and 2 s in all; else its card says \"stopped\".",
          "Do what takes long once, when the plug-in is loaded, or draw less."},
    Check{"draw-size", "The card says \"draws too much\", and shows nothing.",
          "Keep within 4,096 steps and 1 MB: a path is one step, however many parts it has."},
    Check{"contrast", "Texts need a contrast of 4.5 : 1 at the worst place of any wallpaper to be read.",
          "Write in a colour by role, or lay an opaque ground of your own behind the text."},
    Check{"outside", "What is beyond the card is cut off.",
          "Give the text a width and lines that fit, and leave out what has no room where texts are large.", true},
    Check{"leak", "A card may be seen for hours, and the process has 8 MB to draw with.",
          "Free what a drawing has taken, or keep it for the next one."},
    Check{"draw-settings", "Anybody can change a setting, to anything: the card then says \"stopped\".",
          "Look at a number's bounds and at a text's length before you use them."},
    Check{
        "exports", "Another library's function of that name may be called in its place.",
        "Compile with -fvisibility=hidden and -fno-gnu-unique, as lumora_add_plugin() does; make what is left static."},
    Check{"runpath", "Nobody else has that folder, so the plug-in is not loaded there.",
          "Before you give it away, build with the kit in a system folder, or with CMAKE_SKIP_RPATH=ON.", true},
    Check{"unread", "What it exports, and where it looks for libraries, is not known.",
          "Build it with the usual linker, and strip no more than strip does.", true},
};

PluginFinding findingOf(std::string_view check, const std::string& what) {
    const auto known = std::ranges::find(kChecks, check, &Check::name);
    if (known == kChecks.end()) return {std::string(check), platform::printable(what), "", "", false};
    return {std::string(check), platform::printable(what), known->why, known->mend, known->isWarning};
}

std::string textIn(const Value& told, const char* key) {
    const Value value = told[key];
    return value.text() ? std::string(*value.text()) : std::string();
}

bool isInHome(const std::string& folder) {
    const char* home = std::getenv("HOME");
    const std::string own = home && std::string_view(home) != "/" ? fs::path(home).lexically_normal().string() : "";
    for (const std::string& one : {own, std::string("/home"), std::string("/root")})
        if (!one.empty() && (folder == one || folder.starts_with(one.ends_with('/') ? one : one + "/"))) return true;
    return false;
}

/// One plug-in before its judge.
class PluginCheck {
  public:
    PluginCheck(fs::path bundle, std::chrono::milliseconds limit, int stop)
        : path_(std::move(bundle)), limit_(limit), stop_(stop) {}

    Result<CheckedPlugin> run() {
        const auto bundle = NSBundle::bundleWithPath(path_);
        if (!bundle || !isPluginPath(path_))
            return Result<CheckedPlugin>::failure(path_.string() +
                                                  (bundle ? R"( is not a bundle: its extension is not "bundle")"
                                                          : " is not a bundle: there is no such folder"));
        checked_.entry = platform::printable(path_.filename().string());
        const Result<void> asked = ask(*bundle);
        if (!asked) return Result<CheckedPlugin>::failure(asked.error());
        readObject(*bundle);
        if (!checked_.usable) return std::move(checked_);
        judgeIdentifier();
        const Result<void> judged = judge();
        if (!judged) return Result<CheckedPlugin>::failure(judged.error());
        return std::move(checked_);
    }

  private:
    void add(std::string_view check, const std::string& what) { checked_.findings.push_back(findingOf(check, what)); }

    [[nodiscard]] Probed probed(platform::ProbeReport report, const platform::ProbeLimits& limits) const {
        return platform::probe(platform::ForeignCode::plugin, {path_}, report, limits).front();
    }

    /// What discovery asks.
    Result<void> ask(const NSBundle& bundle) {
        const Probed tried = probed(platform::ProbeReport::answers,
                                    {limit_, std::min(limit_, platform::ProbeLimits().processor), stop_});
        const bool hangs = tried.why.starts_with("it hangs");
        std::error_code unknown;
        const bool isThere = fs::exists(bundle.executablePath(), unknown);
        if (tried.verdict == Probed::Verdict::untried ||
            (tried.verdict == Probed::Verdict::undecided && !hangs && isThere))
            return Result<void>::failure(tried.why);
        if (!tried.printed.empty() && tried.verdict == Probed::Verdict::safe)
            add("prints",
                "it prints \"" + tried.printed.substr(0, std::min(tried.printed.find('\n'), std::size_t{60})) + "\"");
        const std::string skipped = tried.verdict == Probed::Verdict::safe ? textIn(tried.told, "skipped") : tried.why;
        if (!skipped.empty()) {
            const bool missesLibrary = skipped.find("cannot open shared object file") != std::string::npos;
            const bool harms = tried.verdict != Probed::Verdict::safe && isThere;
            add(missesLibrary ? "library" : harms ? "harm" : "usable", skipped);
            return {};
        }
        checked_.usable = true;
        checked_.name = textIn(tried.told, "name");
        checked_.identifier = textIn(tried.told, "identifier");
        checked_.appID = textIn(tried.told, "appID");
        if (const std::string why = textIn(tried.told, "why"); why.starts_with("it was made with")) add("tag", why);
        return {};
    }

    void readObject(const NSBundle& bundle) {
        const auto object = readElfFile(bundle.executablePath());
        if (!object) {
            if (checked_.usable) add("unread", object.error());
            return;
        }
        const Value name = bundle.infoDictionary()["NSPrincipalClass"];
        const std::string own = LUMORA_PRINCIPAL_CLASS_SYMBOL + (name.text() ? std::string(*name.text()) : "");
        std::string others;
        for (const std::string& symbol : object.value().exported)
            if (symbol != own && others.size() < 200) others += (others.empty() ? "" : ", ") + symbol;
        if (!others.empty()) add("exports", "it exports more than its principal class: " + others);
        for (const std::string& folder : object.value().searched)
            if (isInHome(folder)) add("runpath", "its RUNPATH names a home folder: " + folder);
    }

    void judgeIdentifier() {
        const std::string& own = checked_.identifier;
        if (!isReverseDomain(own)) add("identifier", "the identifier \"" + own + "\" is not in reverse-domain form");
        const Result<List> installed = probePlugins({}, limit_, stop_);
        if (!installed) return;
        for (const Value& other : installed.value()) {
            if (textIn(other, "entry") != path_.filename() && textIn(other, "identifier") == own)
                add("identifier-taken",
                    "the identifier \"" + own + "\" is that of " + textIn(other, "entry") + ", which is installed");
        }
    }

    /// All that needs the plug-in loaded, which lumora-probe does.
    Result<void> judge() {
        const Probed tried = probed(platform::ProbeReport::judgement, {kToJudge.clock, kToJudge.processor, stop_});
        if (tried.verdict != Probed::Verdict::safe)
            return Result<void>::failure("it could not be judged: " + tried.why);
        const Value told = tried.told;
        checked_.page = textIn(tried.told, "page");
        if (const Value findings = told["findings"]; findings.list())
            for (const Value& finding : *findings.list())
                add(textIn(finding, "check"), textIn(finding, "what"));
        if (const Value keys = told["keys"]; keys.list())
            for (const Value& key : *keys.list())
                if (key.text()) judgeKey(std::string(*key.text()));
        return {};
    }

    void judgeKey(const std::string& key) {
        const std::string& own = checked_.identifier;
        if (!isReverseDomain(own)) return; // which is what is to be mended
        if (!key.starts_with(own + ".")) add("key-prefix", "the key \"" + key + "\" does not begin with " + own + ".");
    }

    const fs::path path_;
    std::chrono::milliseconds limit_;
    int stop_;
    CheckedPlugin checked_;
};

} // namespace

Result<CheckedPlugin> checkPlugin(const fs::path& bundle, std::chrono::milliseconds limit, int stop) {
    std::error_code failed;
    fs::path whole = fs::absolute(bundle, failed).lexically_normal();
    return PluginCheck(whole.has_filename() ? whole : whole.parent_path(), limit, stop).run();
}

Value documentOf(const CheckedPlugin& plugin) {
    Dictionary document{{"entry", plugin.entry}};
    if (plugin.usable) {
        document.set("name", plugin.name);
        document.set("identifier", plugin.identifier);
        document.set("appID", plugin.appID);
    }
    List findings;
    for (const PluginFinding& finding : plugin.findings)
        findings.emplace_back(Dictionary{{"check", finding.check},
                                         {"severity", finding.isWarning ? "warning" : "error"},
                                         {"what", finding.what},
                                         {"why", finding.why},
                                         {"mend", finding.mend}});
    document.set("findings", std::move(findings));
    return document;
}

std::string linesOf(const CheckedPlugin& plugin) {
    std::string lines;
    for (const PluginFinding& finding : plugin.findings)
        lines += std::string(finding.isWarning ? "warning: " : "error: ") + finding.what + "\n    " + finding.why +
                 "\n    " + finding.mend + "\n";
    const auto count = [&](bool warnings, const char* word) {
        const auto found = std::ranges::count(plugin.findings, warnings, &PluginFinding::isWarning);
        return found == 0 ? std::string() : std::to_string(found) + " " + word + (found == 1 ? "" : "s");
    };
    const std::string errors = count(false, "error");
    const std::string warnings = count(true, "warning");
    return lines + plugin.entry + ": " + errors + (!errors.empty() && !warnings.empty() ? ", " : "") + warnings +
           (plugin.findings.empty() ? "nothing to mend" : "") + "\n";
}

} // namespace lumora
