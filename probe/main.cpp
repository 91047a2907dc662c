// lumora-probe loads strangers' code and asks it what the Settings application would ask, so that any harm is done to
// this process. platform::probe() calls it
//
//     lumora-probe TOKEN ROOT KIND REPORT PATH…
//
// and hears of each path, in order, whether its code left the process alone, and on request what it answered or what there
// is to find fault with.

#include "lists/PluginDiscovery.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/RegularFile.h"
#include "platform/foundation/SharedObject.h"
#include "platform/services/ALApplicationList.h"
#include "probe/Channel.h"
#include "probe/Judgement.h"
#include "probe/Traps.h"
#include "probe/Trial.h"

#include <string>
#include <tuple>
#include <unistd.h>

namespace {

using platform::Dictionary;
using platform::ForeignCode;
using platform::NSBundle;
using platform::Result;
using Verdict = platform::Probed::Verdict;

/// In bytes; a longer text is a plug-in's joke, and is cut.
constexpr std::size_t kLongestText = 4096;

std::string shortened(const std::string& text) {
    if (text.size() <= kLongestText) return text;
    std::size_t end = kLongestText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end; // between two characters
    return text.substr(0, end) + "…";
}

Dictionary answersOf(const std::shared_ptr<NSBundle>& bundle) {
    const lumora::PluginExamination examination(bundle);
    if (!examination.plugin()) return {{"skipped", shortened(examination.plugin().error())}};
    const lumora::Plugin& plugin = examination.plugin().value();
    const auto page = plugin.settingsController();
    Dictionary answers{{"name", shortened(plugin.name().value_or(""))},
                       {"identifier", shortened(plugin.identifier().value_or(""))},
                       {"appID", shortened(plugin.appID().value_or(""))},
                       {"settings", static_cast<bool>(page)},
                       {"secure", plugin.isSecure()},
                       {"draws", plugin.draws()}};
    if (!page) answers.set("why", shortened(page.error()));
    return answers;
}

void tryApplicationList(const std::filesystem::path& library) {
    const auto handle = platform::openUntriedLibrary(library);
    const auto* list = platform::ALApplicationList::sharedApplicationList();
    if (!list) return;
    std::ignore = list->applications();
    std::ignore = list->iconOfSize(29, ""); // of no application: the library is tried, no picture
}

} // namespace

int main(int argc, char** argv) {
    constexpr int firstPath = 5;
    if (argc < firstPath) return 2;
    const lumora::Channel channel(argv[1]);
    platform::setDeviceRoot(argv[2]);
    const auto kind = static_cast<ForeignCode>(argv[3][0]);
    const auto report = static_cast<platform::ProbeReport>(argv[4][0]);
    // A plug-in may use the page classes of the settings bundle, which is there whenever Settings looks for plug-ins.
    if (const auto bundle = NSBundle::bundleWithPath(platform::standardBundle())) bundle->load();
    const lumora::Traps traps;
    channel.say(0, platform::kReadyAnswer, {});

    for (int i = firstPath; i < argc; ++i) {
        const auto index = static_cast<std::size_t>(i - firstPath);
        const auto bundle = kind == ForeignCode::plugin ? NSBundle::bundleWithPath(argv[i]) : nullptr;
        const std::filesystem::path code = kind != ForeignCode::plugin ? argv[i]
                                           : bundle                    ? bundle->executablePath()
                                                                       : "";
        Result<void> sound = code.empty() ? Result<void>() : platform::checkSharedObject(code);
        // A fault need not last: there may be too many files open at the moment.
        const bool unread = !sound && !platform::RegularFile(code);
        Dictionary answers;
        if (sound) {
            if (report == platform::ProbeReport::judgement) {
                const auto judged = lumora::judge(argv[i], traps);
                if (judged)
                    answers = judged.value();
                else
                    sound = Result<void>::failure(judged.error());
            } else if (kind == ForeignCode::plugin) {
                answers = answersOf(bundle);
            } else {
                tryApplicationList(code);
            }
            if (sound) sound = traps.check();
        }
        const Verdict verdict = sound ? Verdict::safe : unread ? Verdict::undecided : Verdict::dangerous;
        const std::string told = report == platform::ProbeReport::verdict ? std::string() : lumora::encoded(answers);
        channel.say(index, static_cast<char>(verdict), sound ? told : sound.error());
    }
    ::_exit(0); // without the destructors of what was loaded, which Settings does not run either
}
