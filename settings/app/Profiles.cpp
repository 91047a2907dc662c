#include "settings/app/Profiles.h"

#include "platform/foundation/Unicode.h"
#include "profiles/Differences.h"
#include "profiles/MakeProfile.h"
#include "settings/app/Background.h"
#include "settings/app/SettingNames.h"
#include "tools/lumoractl/PageIndex.h"
#include "tools/lumoractl/ProfileFile.h"
#include "tools/lumoractl/RowNames.h"
#include "tools/lumoractl/TweakClient.h"

#include <QFileInfo>
#include <QQmlEngine>
#include <QSaveFile>

#include <utility>
#include <vector>

namespace settings {

using platform::Dictionary;
using platform::Result;

namespace {

/// The toolkit's dialog tells of a name that was typed without a scheme. Empty for what is on no disk of this computer.
QString fileOf(const QUrl& url) {
    return url.scheme().isEmpty() ? url.path() : url.toLocalFile();
}

/// What there is to know of a file before it is offered.
struct Reading {
    lumora::NamedProfile profile;
    Dictionary present;
    SettingNames names;
};

QString printableText(const std::string& text) {
    return QString::fromStdString(platform::printable(text));
}

Result<Reading> readingOf(const std::string& file, const std::filesystem::path& root) {
    auto profile = lumora::readNamedProfile(file, root);
    if (!profile) return Result<Reading>::failure(profile.error());
    auto present = lumora::fetchSettings();
    if (!present) return Result<Reading>::failure(present.error());
    auto index = lumora::keptIndex();
    if (!index)
        if (auto made = lumora::currentIndex(root)) index = std::move(made).value();
    return Reading{std::move(profile).value(), std::move(present).value(),
                   index ? SettingNames(*index) : SettingNames()};
}

DifferencesModel* offerOf(const Reading& reading) {
    const auto& settings = reading.profile.read.profile.settings;
    QList<DifferencesModel::Difference> found;
    for (const auto& [key, before, after] : profiles::changesBy(settings, reading.present)) {
        DifferencesModel::Difference difference;
        difference.title = reading.names.titleOf(key);
        difference.path = reading.names.pathOf(key);
        difference.change = {key, before.value_or(nullptr), *after};
        difference.now = reading.names.shown(key, difference.change.before);
        difference.then = reading.names.shown(key, *after);
        found.append(std::move(difference));
    }
    QStringList notes;
    for (const std::string& line : linesOf(reading.profile.read.remarks))
        notes << printableText(line).replace(0, 1, printableText(line).first(1).toUpper());
    if (found.isEmpty())
        notes.prepend(settings.empty() ? QObject::tr("There is nothing in it that can be taken.")
                                       : QObject::tr("Nothing changes: all its settings are so already."));
    auto* offer = new DifferencesModel(0, found, nullptr);
    offer->setNotes(notes);
    return offer;
}

std::vector<SettingChange> chosenOf(const DifferencesModel& offer) {
    std::vector<SettingChange> chosen;
    for (const auto& difference : offer.differences())
        if (difference.chosen) chosen.push_back(difference.change);
    return chosen;
}

/// What saving comes to: how many settings are in the file, and what is left out.
struct Saved {
    std::size_t settings;
    std::vector<std::string> omitted;
};

Result<Saved> saveTo(const QString& file, const std::filesystem::path& root) {
    const auto fail = [](std::string why) { return Result<Saved>::failure(std::move(why)); };
    const auto present = lumora::fetchSettings();
    if (!present) return fail(present.error());
    const auto made = makeProfile(present.value(), {}, lumora::secretsFor(present.value(), root));
    const auto text = lumora::textOf(made.profile, QFileInfo(file).completeBaseName().toStdString());
    if (!text) return fail(text.error());
    QSaveFile out(file); // the former file stays where there is no room for another
    const std::string& bytes = text.value();
    const bool written = out.open(QIODevice::WriteOnly) && out.write(bytes.data(), qint64(bytes.size())) >= 0;
    if (!written || !out.commit()) return fail(out.errorString().toStdString());
    return Saved{made.profile.settings.size(), made.profile.omitted};
}

} // namespace

void applyAndTell(Shell& shell, const QString& title, std::vector<SettingChange> changes, const QString& words,
                  std::function<void()> done) {
    if (changes.empty()) return;
    const std::size_t wanted = changes.size();
    shell.apply(title.toStdString(), std::move(changes),
                [&shell, words, wanted, done = std::move(done)](const Sent& sent) {
                    if (done) done();
                    if (sent.made.size() == wanted) return shell.say(words, true);
                    const QString why = !sent.fault.empty() ? printableText(sent.fault)
                                        : sent.refused.empty()
                                            ? QString()
                                            : printableText(sent.refused.front().key + " " + sent.refused.front().why);
                    shell.say(QObject::tr("%1 of %2 changes were made: %3").arg(sent.made.size()).arg(wanted).arg(why),
                              !sent.made.empty());
                });
}

Profiles::Profiles(Shell& shell, LockScreen* lockScreen, std::filesystem::path root)
    : QObject(&shell), shell_(shell), lockScreen_(lockScreen), root_(std::move(root)) {
}

void Profiles::open(const QUrl& url) {
    const QString file = fileOf(url);
    const QString name = file.isEmpty() ? url.toDisplayString() : QFileInfo(file).fileName();
    if (file.isEmpty()) return shell_.say(tr("“%1” is no file of this computer").arg(name));
    ++reading_;
    inBackground(
        *this,
        [file = QFileInfo(file).absoluteFilePath().toStdString(), root = root_] { return readingOf(file, root); },
        [this, name](const Result<Reading>& read) {
            --reading_;
            hasRead_ = true;
            if (!read) {
                QString why = printableText(read.error());
                why.remove(0, why.lastIndexOf(name + QStringLiteral(": ")) < 0
                                  ? 0
                                  : why.lastIndexOf(name + QStringLiteral(": ")) + name.size() + 2);
                return shell_.say(tr("“%1” cannot be opened: %2").arg(name, why));
            }
            present_ = read.value().present;
            DifferencesModel* offer = offerOf(read.value());
            connect(offer, &DifferencesModel::chosen, this, [this, offer] { preview(offer); });
            const std::string& title = read.value().profile.read.profile.name;
            QQmlEngine::setObjectOwnership(offer, QQmlEngine::JavaScriptOwnership);
            emit offered(offer, title.empty() ? name : printableText(title));
        });
}

void Profiles::save(const QUrl& url) {
    QString file = fileOf(url);
    if (file.isEmpty()) return shell_.say(tr("“%1” is no file of this computer").arg(url.toDisplayString()));
    if (QFileInfo(file).suffix().isEmpty()) file += QStringLiteral(".json");
    const QString name = QFileInfo(file).fileName();
    inBackground(
        *this, [file, root = root_] { return saveTo(file, root); },
        [this, name](const Result<Saved>& saved) {
            if (!saved) return shell_.say(tr("“%1” cannot be saved: %2").arg(name, printableText(saved.error())));
            const auto& [settings, omitted] = saved.value();
            QString words =
                settings == 1 ? tr("“%1” has 1 setting").arg(name) : tr("“%1” has %2 settings").arg(name).arg(settings);
            if (!omitted.empty())
                words += omitted.size() == 1 ? tr(", without 1 that is or may be secret")
                                             : tr(", without %1 that are or may be secret").arg(omitted.size());
            shell_.say(words);
        });
}

void Profiles::preview(DifferencesModel* offer) {
    if (!lockScreen_ || !offer) return;
    Dictionary shown = present_;
    for (const SettingChange& change : chosenOf(*offer))
        shown.set(change.key, change.after);
    lockScreen_->preview(shown);
}

void Profiles::endPreview() {
    if (lockScreen_) lockScreen_->preview(std::nullopt);
}

void Profiles::apply(DifferencesModel* offer, const QString& title) {
    if (offer) applyAndTell(shell_, title, chosenOf(*offer), tr("“%1” is applied").arg(title));
}

} // namespace settings
