#include "probe/Judgement.h"

#include "appview/AnswerOf.h"
#include "appview/ViewAnswers.h"
#include "lists/PluginDiscovery.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/Unicode.h"
#include "probe/DrawingJudge.h"
#include "probe/PageJudge.h"
#include "probe/RandomSettings.h"
#include "probe/Trial.h"
#include "settings/host/PrivateTweak.h"
#include "json/Json.h"

#include <array>
#include <chrono>
#include <exception>
#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace lumora {

using namespace platform;
namespace fs = std::filesystem;

namespace {

/// How often each text is asked for.
constexpr int kAsks = 100;
/// How many dictionaries of settings the pages are made with.
constexpr unsigned kDictionaries = 100;
/// A slow page is tried with fewer of them, so that it is judged at all.
constexpr auto kForSettings = std::chrono::seconds(20);
/// For a thousand drawings.
constexpr TrialLimits kForDrawings{.clock = std::chrono::seconds(50), .processor = std::chrono::seconds(10)};
/// How much of one of them is told, in bytes.
constexpr std::size_t kMostShown = 300;

constexpr const char* kHarm = "harm";

std::string shortened(const std::string& text, std::size_t most) {
    if (text.size() <= most) return text;
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end;
    return text.substr(0, end) + "…";
}

std::string shown(const Dictionary& settings) {
    const auto json = writeJson(settings, JsonLayout::line);
    return json ? shortened(json.value(), kMostShown) : "some settings";
}

/// One plug-in before its judge.
class Judge {
  public:
    Judge(fs::path bundle, const Traps& traps) : bundle_(std::move(bundle)), traps_(traps) {}

    Dictionary run() {
        if (const Result<void> made = tweak_.makeFolder(); !made) throw std::runtime_error(made.error());
        judgeTexts();
        if (judgePage())
            judgeSettings("settings", keys_, [](const Plugin& plugin, const Dictionary&) {
                makePages(plugin.settingsController().value(), plugin.name().value_or(""));
                return Dictionary{{"made", true}};
            });
        judgeDrawings();
        told_.set("findings", findings_);
        return told_;
    }

  private:
    /// Loads the plug-in into a copy of this process and does something with it there, with a tweak that has these
    /// settings, or with none, and then in the only thread.
    Tried tryWith(const std::function<Dictionary(const Plugin&)>& work,
                  const std::optional<Dictionary>& settings = Dictionary(), const TrialLimits& limits = {}) {
        Tried tried = tryInCopy(
            [&] {
                const auto answering = settings ? tweak_.answer(*settings) : Result<void>();
                if (!answering) throw std::runtime_error(answering.error());
                const PluginExamination examination(NSBundle::bundleWithPath(bundle_));
                if (!examination.plugin()) throw std::runtime_error(examination.plugin().error());
                const Dictionary told = work(examination.plugin().value());
                const Result<void> untouched = traps_.check();
                return untouched ? told : Dictionary{{kHarm, untouched.error()}};
            },
            limits);
        traps_.clear(); // the copies share what the traps catch
        if (const Value harm = tried.told[kHarm]; harm.text()) tried = {{}, std::string(*harm.text())};
        return tried;
    }

    void add(const char* check, const std::string& what) {
        findings_.emplace_back(Dictionary{{"check", check}, {"what", shortened(printable(what), 1000)}});
    }

    void judgeTexts() {
        const Tried tried = tryWith([](const Plugin& plugin) {
            const std::array<std::pair<const char*, std::function<std::optional<std::string>()>>, 3> texts{
                {{"identifier", [&] { return plugin.identifier(); }},
                 {"name", [&] { return plugin.name(); }},
                 {"appID", [&] { return plugin.appID(); }}}};
            Dictionary changes;
            for (const auto& [called, ask] : texts) {
                const std::string first = ask().value_or("");
                for (int i = 2; i <= kAsks; ++i) {
                    const std::string again = ask().value_or("");
                    if (again == first) continue;
                    changes.set(called, "\"" + shortened(first, 100) + "\" at first, \"" + shortened(again, 100) +
                                            "\" the " + std::to_string(i) + ". time");
                    break;
                }
            }
            return changes;
        });
        if (!tried.fault.empty()) return add("texts", "asked a hundred times, " + tried.fault);
        for (const auto& [called, change] : tried.told)
            if (change.text()) add("texts", called + ": " + std::string(*change.text()));
    }

    /// False when there is none, or none that can be made.
    bool judgePage() {
        const Tried tried = tryWith([](const Plugin& plugin) {
            const auto page = plugin.settingsController();
            if (!page) return Dictionary();
            Dictionary told = judgePages(page.value(), plugin.name().value_or(""));
            told.set("page", page.value()->name);
            return told;
        });
        if (!tried.fault.empty()) add("page", "its settings page: " + tried.fault);
        if (!tried.fault.empty() || tried.told.empty()) return false;
        told_ = tried.told;
        // The plug-in may have told something else in our place.
        const Value findings = told_["findings"];
        const Value keys = told_["keys"];
        if (findings.list()) findings_.insert(findings_.end(), findings.list()->begin(), findings.list()->end());
        for (std::size_t i = 0; keys.list() && i < keys.list()->size(); ++i)
            if (const Value& key = (*keys.list())[i]; key.text()) keys_.emplace_back(*key.text());
        return true;
    }

    using Work = std::function<Dictionary(const Plugin& plugin, const Dictionary& settings)>;

    void judgeSettings(const char* check, const std::vector<std::string>& keys, const Work& work) {
        const auto until = std::chrono::steady_clock::now() + kForSettings;
        for (unsigned i = 0; i < kDictionaries && !keys.empty() && std::chrono::steady_clock::now() < until; ++i) {
            const Dictionary settings = randomSettings(keys, i);
            const Tried tried = tryWith([&](const Plugin& plugin) { return work(plugin, settings); }, settings);
            const Value told = tried.told["fault"];
            const std::string fault = told.text() ? std::string(*told.text()) : tried.fault;
            if (fault.empty()) continue;
            add(check, "with " + shown(settings) + " " + fault);
            return; // one is enough to mend, and the others are likely the same
        }
    }

    /// Adds what a trial has found, of each kind once. False when the plug-in did not get through it.
    bool addFound(const Tried& tried, const std::string& where) {
        if (!tried.fault.empty()) add("draw", where + tried.fault);
        const Value found = tried.told["findings"];
        for (std::size_t i = 0; found.list() && i < found.list()->size(); ++i) {
            const Value& finding = (*found.list())[i];
            const Value check = finding["check"];
            if (check.text() && drawn_.emplace(*check.text()).second) findings_.push_back(finding);
        }
        return tried.fault.empty() && !drawn_.contains("draw") && !drawn_.contains("draw-time") &&
               !drawn_.contains("draw-size");
    }

    void judgeDrawings() {
        const Tried asked = tryWith([](const Plugin& plugin) {
            return Dictionary{{"draws", plugin.draws()}, {"identifier", plugin.identifier().value_or("")}};
        });
        if (!asked.told["draws"].boolValue()) return;
        const TextExtents extents; // the copies need not open the fonts
        const std::vector<DrawingQuestion> questions = questionsToJudge();
        for (const DrawingQuestion& question : questions) {
            const Tried tried =
                tryWith([&](const Plugin& plugin) { return judgeDrawing(plugin, question, extents); }, std::nullopt);
            if (!addFound(tried, "drawn at " + placeOf(question) + ", ")) return;
        }
        const auto leaks = [&](const Plugin& plugin) { return judgeLeaks(plugin, questions.front(), extents); };
        if (!addFound(tryWith(leaks, std::nullopt, kForDrawings), "drawn a thousand times, ")) return;
        std::vector<std::string> own; // which it is told
        const Value identifier = asked.told["identifier"];
        for (const std::string& key : keys_)
            if (identifier.text() && key.starts_with(std::string(*identifier.text()) + ".")) own.push_back(key);
        judgeSettings("draw-settings", own, [&](const Plugin& plugin, const Dictionary& settings) {
            DrawingQuestion question = questions.front();
            question.settings = settings;
            const DrawingAnswer answer = answerOf(plugin, question, extents, memoryToDraw());
            return answer.letter == kDrawnAnswer ? Dictionary() : Dictionary{{"fault", answer.text}};
        });
    }

    const fs::path bundle_;
    const Traps& traps_;
    settings::PrivateTweak tweak_;
    std::vector<std::string> keys_;
    std::set<std::string> drawn_; ///< the kinds of findings about drawings
    List findings_;
    Dictionary told_; ///< of its page
};

} // namespace

Result<Dictionary> judge(const fs::path& bundle, const Traps& traps) {
    try {
        return Judge(bundle, traps).run();
    } catch (const std::exception& error) {
        return Result<Dictionary>::failure(error.what());
    }
}

} // namespace lumora
