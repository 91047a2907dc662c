#pragma once

#include "settings/host/Host.h"
#include "settings/host/TweakWatch.h"
#include "settings/model/DifferencesModel.h"
#include "settings/model/PageModel.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSizeF>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace settings {

/// Stands between the drawn window and the main thread: takes the main thread's snapshots, posts the user's events to
/// it, and knows when it is busy. Never waits for it. GUI thread.
class Shell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one shell")

    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY lookChanged)
    Q_PROPERTY(bool moreContrast READ moreContrast WRITE setMoreContrast NOTIFY lookChanged)
    Q_PROPERTY(bool animated READ animated WRITE setAnimated NOTIFY lookChanged)
    Q_PROPERTY(int textSize READ textSize WRITE setTextSize NOTIFY lookChanged)
    Q_PROPERTY(bool waiting READ waiting NOTIFY waitingChanged)
    Q_PROPERTY(bool lost READ lost NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingTitle READ waitingTitle NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingHeadline READ waitingHeadline NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingText READ waitingText NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingDetails READ waitingDetails NOTIFY waitingChanged)
    Q_PROPERTY(bool tweakGone READ tweakGone NOTIFY tweakChanged)
    Q_PROPERTY(bool changesLost READ changesLost NOTIFY tweakChanged)
    Q_PROPERTY(int barHeight READ barHeight CONSTANT)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY undoChanged)
    Q_PROPERTY(QString redoTitle READ redoTitle NOTIFY undoChanged)
    Q_PROPERTY(bool sideBySide READ sideBySide WRITE setSideBySide NOTIFY sideBySideChanged)

  public:
    Shell();

    /// Opens the first page. If that does not work, the window says why, and so is `failed` told.
    void launch(Launch launch, std::function<void(const std::string& why)> failed);
    /// Watches from now on whether the tweak is there.
    void followTweak();
    /// Hands work to the main thread; `done` is called here, after every snapshot that the work brought.
    void post(std::function<void(Navigation&)> work, std::function<void()> done = {});

    [[nodiscard]] static int barHeight() { return kBarHeight; }
    [[nodiscard]] bool dark() const { return dark_; }
    void setDark(bool dark) { set(dark_, dark); }
    [[nodiscard]] bool moreContrast() const { return moreContrast_; }
    void setMoreContrast(bool more) { set(moreContrast_, more); }
    /// In percent of the usual size.
    [[nodiscard]] int textSize() const { return textSize_; }
    void setTextSize(int percent) { set(textSize_, percent); }
    [[nodiscard]] bool animated() const { return animated_; }
    void setAnimated(bool animated) { set(animated_, animated); }

    /// The page before the one on top is shown, too. What the user does there first goes back to it, as by hand.
    [[nodiscard]] bool sideBySide() const { return sideBySide_; }
    void setSideBySide(bool both);

    /// The main thread has been busy with one thing for a noticeable time, or there is no first page.
    [[nodiscard]] bool waiting() const { return patience_ != Patience::fresh || !fault_.isEmpty(); }
    /// No answer of the tweak can come any more, as it is not there or both time-outs are over; or the main thread has
    /// worked on something for far longer than usual; or there is no first page.
    [[nodiscard]] bool lost() const {
        return patience_ == Patience::over || !fault_.isEmpty() || (waiting() && asksTweak_ && tweakGone_);
    }
    [[nodiscard]] QString waitingTitle() const;
    [[nodiscard]] QString waitingHeadline() const;
    [[nodiscard]] QString waitingText() const;
    /// What helps who looks after the programs; empty for nothing.
    [[nodiscard]] QString waitingDetails() const;
    /// No process takes messages for the tweak.
    [[nodiscard]] bool tweakGone() const { return tweakGone_; }
    /// Changes were made while the tweak was gone, and nothing that is shown has been read anew since.
    [[nodiscard]] bool changesLost() const { return changesLost_; }

    /// What undo() would take back, and redo() do again; empty for nothing.
    [[nodiscard]] QString undoTitle() const;
    [[nodiscard]] QString redoTitle() const;

    [[nodiscard]] const std::vector<PageModel*>& pages() const { return pages_; }
    /// The top page's snapshot, null when no page is open.
    [[nodiscard]] const PageSnapshot* topPage() const { return pages_.empty() ? nullptr : &pages_.back()->snapshot(); }

    Q_INVOKABLE void back();
    /// Opens the page on top anew.
    Q_INVOKABLE void reload();
    /// Takes back the last change, or does it again, on its page; said() tells what has come of it.
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// How the page on top differs from what it was when it was opened; the caller owns it. Null for no differences.
    Q_INVOKABLE [[nodiscard]] settings::DifferencesModel* differences() const;
    Q_INVOKABLE [[nodiscard]] bool hasDifferences() const { return !differencesOfTop().isEmpty(); }
    /// Takes back the chosen differences of the page on top, as one change.
    Q_INVOKABLE void revert(settings::DifferencesModel* differences);
    /// What the tweak tells of its defaults.
    void setDefaults(platform::Dictionary defaults);
    /// Changes these settings as one change of that title; `done` is told here what has come of it.
    void apply(std::string title, std::vector<SettingChange> changes, std::function<void(const Sent&)> done);
    /// Has something said in passing, perhaps with a button that takes the last change back.
    void say(const QString& words, bool offersUndo = false) { emit said(words, offersUndo); }
    /// Goes to a row from wherever the user is, without animation in between; landed() tells what has come of it.
    void land(const Landing& landing);
    /// In points. A moment after the last change, a page whose view has not followed appears anew.
    Q_INVOKABLE void setContentSize(const QSizeF& size);
    [[nodiscard]] QSizeF contentSize() const { return contentSize_; }
    /// Deletes a popped page, which is no longer drawn.
    Q_INVOKABLE void pageGone(settings::PageModel* page);
    /// Starts the program again in this process, with the same arguments, and goes to where the user is.
    Q_INVOKABLE void restart();
    /// Another start of the program has ended in favour of this one: comes to the front, and goes to that page
    /// unless the name is empty; has the profile of that URL offered, unless that is. False when there is no such page.
    bool activate(const QString& className, const QString& profile = {});
    /// For closing the window: lets what is under way end, and ends the process.
    Q_INVOKABLE void leave();

    enum class Patience : unsigned char { fresh, waiting, over };
    /// Shows for how long the main thread has been busy, and whether it is waiting for the tweak.
    void setPatience(Patience patience, bool asksTweak);
    /// Shows whether a tweak is there.
    void setTweakGone(bool gone);
    /// Shows why there is no first page; empty when there is one.
    void setFault(const std::string& why);
    /// Shows the pages that the main thread holds now.
    void take(const StackSnapshot& stack);

  signals:
    void lookChanged();
    void waitingChanged();
    void tweakChanged();
    void sideBySideChanged();
    /// The user has turned to the page before the one on top, which is about to go: what is held in it is to be put back.
    void aboutToTurnBack();
    /// The row that leads to the page on top was tapped again.
    void openRowTapped();
    /// The window is to come to the front and, if a page is asked for, make ready to leave the one on top. A profile is
    /// to be offered unless its URL is empty.
    void activated(bool forPage, const QString& profile);
    /// The process is about to end.
    void leaving();
    /// The page on top is about to appear anew: what the user holds in it is to be put back.
    void aboutToAppearAnew();
    /// `alone` when it is the only one that comes, upon a page that is seen.
    void pagePushed(settings::PageModel* page, bool alone);
    /// It stands where the last one stood.
    void pageReplaced(settings::PageModel* page);
    /// The page on top is the one that land() has led to. Its row, or place in its table, is -1 for the page itself;
    /// `gone` when there is no such row any more.
    void landed(settings::PageModel* page, int row, bool gone);
    void undoChanged();
    /// The user has changed something, on whatever page.
    void changed();
    /// The page on top is the one on which a change was taken back or done again. Its row is -1 for a view.
    void changedBack(settings::PageModel* page, int row);
    /// What the user is to hear of a change, perhaps with a button that takes it back.
    void said(const QString& words, bool offersUndo);
    /// A hand is on the slider of a row that has that identifier, and has let go.
    void held(const QString& identifier, double number);
    void released(const QString& identifier);
    /// What back() has asked for is done, if the page on top was still the one that it was asked for.
    void wentBack();
    /// `depth` pages are left; `alone` unless others come at once.
    void pagesPopped(int depth, bool alone);

  private:
    void set(auto& part, auto value) {
        if (std::exchange(part, value) != value) emit lookChanged();
    }
    void later(std::function<void()> work);
    SendEvent sendTo(std::uint64_t page);
    [[nodiscard]] PageModel* pageBefore(std::uint64_t page) const;
    void turnBackTo(std::uint64_t page);
    bool isOpenRow(std::uint64_t page, const Event& event) const;
    void noteTap(std::uint64_t page, const Event& event);
    void markOpenRows();
    [[nodiscard]] bool isComposing() const { return topPage() && topPage()->composer; }
    void setBusy(int change);
    void look();
    void lookForTweak();
    void restartIfForgotten();
    void appearAnew();
    void noteChange(const Event& event);
    void takeBack(Navigation::Undone (Navigation::*work)(), const QString& words);
    [[nodiscard]] QList<DifferencesModel::Difference> differencesOfTop() const;
    void takeUndo(const UndoSnapshot& undo);
    [[nodiscard]] QString wordsFor(std::uint64_t page, const Event& event) const;
    [[nodiscard]] std::string wayToHere() const;

    Host& host_;
    std::vector<PageModel*> pages_;
    std::optional<Opening> opening_;
    int workUnderWay_ = 0;
    int landings_ = 0; ///< under way
    Patience patience_ = Patience::fresh;
    bool asksTweak_ = false; ///< the main thread waits for the tweak instead of working
    QTimer looks_;
    QSizeF contentSize_;  ///< as the main thread was told last
    QTimer turned_;       ///< runs out once the window keeps its size
    QElapsedTimer since_; ///< when the main thread began to work, or to wait for the tweak
    std::string page_;    ///< the page that was asked for
    QString fault_;       ///< why there is no first page
    std::optional<TweakWatch> tweak_;
    QTimer looksForTweak_;
    bool tweakGone_ = false;
    bool changesLost_ = false;
    bool sideBySide_ = false;
    UndoSnapshot undo_;
    std::uint64_t turnedBackFrom_ = 0; ///< the last page that was left for the one before it
    bool dark_ = false;
    bool moreContrast_ = false;
    int textSize_ = 100;
    bool animated_ = true;
};

} // namespace settings
