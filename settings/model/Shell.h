#pragma once

#include "settings/host/Host.h"
#include "settings/model/PageModel.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSizeF>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace settings {

/// What stands between the drawn window and the main thread: takes its snapshots, posts the user's events to it, and
/// knows when it is busy. Never waits for it. GUI thread.
class Shell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one shell")

    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY darkChanged)
    Q_PROPERTY(bool animated READ animated WRITE setAnimated NOTIFY animatedChanged)
    Q_PROPERTY(int textSize READ textSize WRITE setTextSize NOTIFY textSizeChanged)
    Q_PROPERTY(bool waiting READ waiting NOTIFY waitingChanged)
    Q_PROPERTY(bool lost READ lost NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingTitle READ waitingTitle NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingHeadline READ waitingHeadline NOTIFY waitingChanged)
    Q_PROPERTY(QString waitingText READ waitingText NOTIFY waitingChanged)
    Q_PROPERTY(int barHeight READ barHeight CONSTANT)

  public:
    Shell();

    /// Opens the first page. `failed` is told why there is none.
    void launch(Launch launch, std::function<void(const std::string& why)> failed);
    /// Hands work to the main thread; `done` is called here, after every snapshot that the work brought.
    void post(std::function<void(Navigation&)> work, std::function<void()> done = {});

    [[nodiscard]] static int barHeight() { return kBarHeight; }
    [[nodiscard]] bool dark() const { return dark_; }
    void setDark(bool dark);
    /// In percent of the usual size.
    [[nodiscard]] int textSize() const { return textSize_; }
    void setTextSize(int percent);
    [[nodiscard]] bool animated() const { return animated_; }
    void setAnimated(bool animated);

    /// The main thread has been busy with one thing for longer than one notices.
    [[nodiscard]] bool waiting() const { return patience_ != Patience::fresh; }
    /// It has waited for the tweak for so long that no answer can come any more; or it has worked at something for
    /// longer than is to be expected.
    [[nodiscard]] bool lost() const { return patience_ == Patience::over; }
    [[nodiscard]] QString waitingTitle() const;
    [[nodiscard]] QString waitingHeadline() const;
    [[nodiscard]] QString waitingText() const;

    [[nodiscard]] const std::vector<PageModel*>& pages() const { return pages_; }
    /// The top page's snapshot, null when no page is open.
    [[nodiscard]] const PageSnapshot* topPage() const { return pages_.empty() ? nullptr : &pages_.back()->snapshot(); }

    Q_INVOKABLE void back();
    Q_INVOKABLE void setContentSize(const QSizeF& size);
    /// A popped page is no longer drawn.
    Q_INVOKABLE void pageGone(settings::PageModel* page);
    /// Begins anew in place, with the arguments of this process.
    Q_INVOKABLE void restart();
    /// The window has been closed: lets what is under way end, and ends the process.
    Q_INVOKABLE void leave();

    enum class Patience : unsigned char { fresh, waiting, over };
    /// How long the main thread has been busy, and whether it is the tweak that it waits for.
    void setPatience(Patience patience, bool asksTweak);
    /// Shows what the main thread holds now.
    void take(const StackSnapshot& stack);

  signals:
    void darkChanged();
    void textSizeChanged();
    void animatedChanged();
    void waitingChanged();
    void pagePushed(settings::PageModel* page);
    /// So many pages are left.
    void pagesPopped(int depth);

  private:
    void later(std::function<void()> work);
    SendEvent sendTo(std::uint64_t page);
    [[nodiscard]] bool isComposing() const { return topPage() && topPage()->composer; }
    void setBusy(int change);
    void look();

    Host& host_;
    std::vector<PageModel*> pages_;
    std::optional<Opening> opening_;
    int workUnderWay_ = 0;
    Patience patience_ = Patience::fresh;
    bool asksTweak_ = false; ///< the main thread waits for the tweak, as it does not while it works
    QTimer looks_;
    QElapsedTimer since_; ///< the main thread has worked, or has waited for the tweak
    bool dark_ = false;
    int textSize_ = 100;
    bool animated_ = true;
};

} // namespace settings
