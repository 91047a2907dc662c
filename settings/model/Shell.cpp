#include "settings/model/Shell.h"

#include "link/Messages.h"

#include <QGuiApplication>
#include <QWindow>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>

namespace settings {

using namespace std::chrono_literals;

namespace {

constexpr auto kNoticeable = 200ms;
constexpr auto kBothTimeOuts =
    std::chrono::round<std::chrono::milliseconds>(1s * (lumora::kSendTimeout + lumora::kReceiveTimeout));
constexpr auto kSpare = 200ms;
/// A page may work for that long, as when it probes a few plug-ins that do not answer.
constexpr auto kWorkAtMost = 30s;
/// A little longer than sending a message may take.
constexpr std::chrono::milliseconds kMailAtMost = 130s;

QString titleOf(const Opening& opening) {
    return QString::fromStdString(opening.title.empty() ? opening.className : opening.title);
}

} // namespace

// The host is never destroyed, because the main thread may be blocked in it for good.
Shell::Shell()
    : host_(*new Host([this](StackSnapshot stack) { later([this, stack = std::move(stack)] { take(stack); }); })) {
    looks_.setInterval(kNoticeable);
    connect(&looks_, &QTimer::timeout, this, &Shell::look);
}

void Shell::launch(Launch launch, std::function<void(const std::string&)> failed) {
    setBusy(+1);
    host_.launch(std::move(launch), [this, failed = std::move(failed)](const platform::Result<void>& result) {
        later([this, failed, result] {
            setBusy(-1);
            if (!result) failed(result.error());
        });
    });
}

void Shell::post(std::function<void(Navigation&)> work, std::function<void()> done) {
    setBusy(+1);
    host_.post([this, work = std::move(work), done = std::move(done)](Navigation& navigation) {
        navigation.run(work); // what it throws must not keep the window waiting
        later([this, done] {
            setBusy(-1);
            if (done) done();
        });
    });
}

/// Hands work from the main thread to this one.
void Shell::later(std::function<void()> work) {
    QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
}

QString Shell::waitingTitle() const {
    if (opening_) return titleOf(*opening_);
    return pages_.empty() ? tr("Lumora") : pages_.back()->title();
}

QString Shell::waitingHeadline() const {
    if (!asksTweak_)
        return lost() ? tr("%1 does not go on").arg(waitingTitle()) : tr("Waiting for %1").arg(waitingTitle());
    return lost() ? tr("Lumora did not answer") : tr("Waiting for Lumora");
}

QString Shell::waitingText() const {
    if (!asksTweak_) return lost() ? tr("You can go on waiting, or restart Settings.") : QString();
    const QLatin1String request(lumora::kRequestTweakSettings);
    if (lost()) {
        return tr("Both time-outs of “%1” are over: no answer can come any more, and “%2” cannot open. "
                  "Restart Settings to ask again.")
            .arg(request, waitingTitle());
    }
    return tr("“%1” opens when “%2” is answered.").arg(waitingTitle(), request);
}

void Shell::back() {
    if (pages_.empty()) return;
    post([page = topPage()->id](Navigation& navigation) { navigation.back(page); });
}

void Shell::setContentSize(const QSizeF& size) {
    post([size](Navigation& navigation) { navigation.setContentSize({size.width(), size.height()}); });
}

void Shell::pageGone(PageModel* page) {
    if (page && std::find(pages_.begin(), pages_.end(), page) == pages_.end()) page->deleteLater();
}

void Shell::restart() {
    std::ifstream in("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(in, argument, '\0');)
        arguments.push_back(argument);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    // Replaces the process whole, the blocked main thread with it; every descriptor closes by itself.
    execv("/proc/self/exe", pointers.data());
    std::perror("lumora-settings: cannot restart");
}

void Shell::leave() {
    for (QWindow* window : QGuiApplication::topLevelWindows())
        window->hide();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); // so that it is gone from the screen
    host_.finish(lost() ? 0ms : isComposing() ? kMailAtMost : kBothTimeOuts + kSpare);
    std::fflush(nullptr);
    _exit(0); // without joining: the main thread may be blocked for good
}

SendEvent Shell::sendTo(std::uint64_t page) {
    return [this, page](Event event, std::function<void()> taken) {
        post([page, event = std::move(event)](Navigation& navigation) { navigation.handle(page, event); },
             std::move(taken));
    };
}

void Shell::take(const StackSnapshot& stack) {
    std::size_t common = 0;
    while (common < pages_.size() && common < stack.pages.size() &&
           pages_[common]->snapshot().id == stack.pages[common]->id)
        ++common;
    if (common < pages_.size()) {
        pages_.resize(common);
        emit pagesPopped(static_cast<int>(common));
    }
    for (std::size_t i = 0; i < common; ++i)
        pages_[i]->read(stack.pages[i]);
    for (std::size_t i = common; i < stack.pages.size(); ++i) {
        pages_.push_back(new PageModel(sendTo(stack.pages[i]->id), stack.pages[i], this));
        emit pagePushed(pages_.back());
    }
    opening_ = stack.opening;
    if (waiting()) emit waitingChanged();
}

/// The end of any work shows that the main thread goes on, however much is left to do; new work may have to queue.
void Shell::setBusy(int change) {
    const bool queues = change > 0 && workUnderWay_ > 0;
    workUnderWay_ += change;
    if (queues) return;
    setPatience(Patience::fresh, false);
    since_.start();
    if (workUnderWay_ > 0)
        looks_.start();
    else
        looks_.stop();
}

/// A page may work before it asks the tweak, and afterwards.
void Shell::look() {
    const bool asks = waitsForTweak();
    if (asks != asksTweak_) since_.start();
    const std::chrono::milliseconds atMost = asks ? kBothTimeOuts + kSpare : kWorkAtMost;
    setPatience(since_.hasExpired(atMost.count()) ? Patience::over : Patience::waiting, asks);
}

void Shell::setPatience(Patience patience, bool asksTweak) {
    const bool changes = patience != patience_ || asksTweak != asksTweak_;
    patience_ = patience;
    asksTweak_ = asksTweak;
    if (changes) emit waitingChanged();
}

} // namespace settings
