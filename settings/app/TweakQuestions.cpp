#include "settings/app/TweakQuestions.h"

#include "settings/app/Background.h"
#include "tools/lumoractl/TweakClient.h"
#include "tools/lumoractl/TweakPast.h"

#include <utility>

namespace settings {
namespace {

/// Silent about a failure: the rows then have no defaults.
void askForDefaults(Shell& shell) {
    inBackground(
        shell,
        [] {
            const auto told = lumora::fetchDefaults();
            return told && told.value() ? *told.value() : platform::Dictionary();
        },
        [&shell](platform::Dictionary defaults) { shell.setDefaults(std::move(defaults)); });
}

} // namespace

void bringDefaults(Shell& shell) {
    QObject::connect(
        &shell, &Shell::pagePushed, &shell, [&shell] { askForDefaults(shell); }, Qt::SingleShotConnection);
    QObject::connect(&shell, &Shell::tweakChanged, &shell, [&shell, gone = false]() mutable {
        if (std::exchange(gone, shell.tweakGone()) && !gone && shell.topPage()) askForDefaults(shell);
    });
}

Sent sendChanges(const std::vector<SettingChange>& changes) {
    Sent sent;
    for (const SettingChange& change : changes) {
        const auto tried = lumora::tryChange(change.key, change.after);
        if (!tried) {
            sent.fault = tried.error();
            break;
        }
        if (tried.value())
            sent.refused.push_back({change.key, *tried.value()});
        else
            sent.made.push_back(change);
    }
    return sent;
}

} // namespace settings
