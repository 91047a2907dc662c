#include "settings/model/Shell.h"

#include "link/Messages.h"
#include "platform/foundation/Unicode.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/preferences/PSSpecifier.h"

#include <QGuiApplication>
#include <QSocketNotifier>
#include <QWindow>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

namespace settings {

using namespace std::chrono_literals;

namespace {

constexpr auto kNoticeable = 200ms;
constexpr auto kMoment = 20ms;
/// A window that is being turned or dragged to another size tells of many, and each appearance asks the tweak.
constexpr auto kTurnAtMost = 150ms;
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

/// Those of this process, without the page that it was to open.
std::vector<std::string> argumentsWithoutPage() {
    std::ifstream in("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(in, argument, '\0');) {
        if (argument == "--page")
            std::getline(in, argument, '\0');
        else if (!argument.starts_with("--page="))
            arguments.push_back(argument);
    }
    return arguments;
}

} // namespace

// The host is never destroyed, because the main thread may be blocked in it for good.
Shell::Shell()
    : host_(*new Host([this](StackSnapshot stack) { later([this, stack = std::move(stack)] { take(stack); }); })) {
    looks_.setInterval(kNoticeable);
    connect(&looks_, &QTimer::timeout, this, &Shell::look);
    turned_.setSingleShot(true);
    turned_.setInterval(kTurnAtMost);
    connect(&turned_, &QTimer::timeout, this, &Shell::appearAnew);
}

void Shell::launch(Launch launch, std::function<void(const std::string&)> failed) {
    setBusy(+1);
    page_ = launch.page;
    contentSize_ = {launch.contentSize.width, launch.contentSize.height};
    host_.launch(std::move(launch), [this, failed = std::move(failed)](const platform::Result<void>& result) {
        later([this, failed, result] {
            setBusy(-1);
            if (result) return;
            setFault(result.error());
            failed(result.error());
        });
    });
}

void Shell::followTweak() {
    tweak_.emplace();
    looksForTweak_.setSingleShot(true);
    looksForTweak_.setInterval(kMoment);
    connect(&looksForTweak_, &QTimer::timeout, this, &Shell::lookForTweak);
    if (tweak_->descriptor() >= 0) {
        auto* changes = new QSocketNotifier(tweak_->descriptor(), QSocketNotifier::Read, this);
        connect(changes, &QSocketNotifier::activated, this, [this] {
            tweak_->forgetChanges();
            // Many files may change at once; and a process that ends closes its lock file a moment before its sockets.
            if (!looksForTweak_.isActive()) looksForTweak_.start();
            QTimer::singleShot(kNoticeable, this, &Shell::lookForTweak);
        });
    }
    lookForTweak();
}

void Shell::lookForTweak() {
    setTweakGone(!tweak_->look());
}

void Shell::setFault(const std::string& why) {
    fault_ = QString::fromStdString(platform::printable(why));
    if (!fault_.isEmpty()) fault_[0] = fault_[0].toUpper(); // a sentence of its own here
    emit waitingChanged();
}

void Shell::setTweakGone(bool gone) {
    if (std::exchange(tweakGone_, gone) == gone) return;
    post([gone](Navigation& navigation) { navigation.setTweakGone(gone); });
    emit tweakChanged();
    emit waitingChanged();
    // What was asked before it came is lost, and the page that waits for the answer is never asked again. What was asked
    // just now may still be answered.
    if (!gone) QTimer::singleShot(kNoticeable, this, &Shell::restartIfForgotten);
}

void Shell::restartIfForgotten() {
    if (waiting() && asksTweak_ && !tweakGone_) restart();
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
    if (!fault_.isEmpty()) return tr("Settings cannot open");
    if (!asksTweak_)
        return lost() ? tr("%1 does not go on").arg(waitingTitle()) : tr("Waiting for %1").arg(waitingTitle());
    if (!lost()) return tr("Waiting for Lumora");
    return tweakGone_ ? tr("Lumora is not running") : tr("Lumora does not answer");
}

QString Shell::waitingText() const {
    if (!fault_.isEmpty()) return fault_;
    if (!asksTweak_) return lost() ? tr("You can go on waiting, or try again.") : QString();
    if (!lost()) return tr("“%1” opens when Lumora answers.").arg(waitingTitle());
    return tweakGone_ ? tr("“%1” opens by itself as soon as Lumora runs.").arg(waitingTitle())
                      : tr("“%1” cannot open without its answer.").arg(waitingTitle());
}

QString Shell::waitingDetails() const {
    if (!fault_.isEmpty() || !asksTweak_) return {};
    return tr("Message: %1\nPorts: %2")
        .arg(QLatin1String(lumora::kRequestTweakSettings),
             QString::fromStdString(platform::printable(platform::portsFolder().string())));
}

void Shell::back() {
    if (pages_.empty()) return;
    post([page = topPage()->id](Navigation& navigation) { navigation.back(page); }, [this] { emit wentBack(); });
}

void Shell::reload() {
    if (pages_.empty() || waiting() || isComposing()) return;
    post([page = topPage()->id](Navigation& navigation) { navigation.reload(page); });
    if (std::exchange(changesLost_, false)) emit tweakChanged();
}

void Shell::land(const Landing& landing) {
    ++landings_;
    const auto landed = std::make_shared<Landed>();
    post([landing, landed](Navigation& navigation) { *landed = navigation.land(landing); },
         [this, landed] {
             --landings_;
             // A page that has failed meanwhile is closed.
             const bool stands = topPage() && topPage()->id == landed->page;
             if (topPage())
                 emit this->landed(pages_.back(), stands && landed->row ? int(*landed->row) : -1,
                                   landed->gone || !stands);
         });
}

void Shell::setContentSize(const QSizeF& size) {
    if (std::exchange(contentSize_, size) == size) return;
    turned_.start();
    post([size](Navigation& navigation) { navigation.setContentSize({size.width(), size.height()}); });
}

void Shell::appearAnew() {
    if (!topPage() || !topPage()->keepsPlaces || isComposing()) return;
    emit aboutToAppearAnew();
    post([page = topPage()->id](Navigation& navigation) { navigation.appearAnew(page); });
}

void Shell::pageGone(PageModel* page) {
    if (page && std::find(pages_.begin(), pages_.end(), page) == pages_.end()) page->deleteLater();
}

void Shell::restart() {
    std::vector<std::string> arguments = argumentsWithoutPage();
    if (const std::string page = wayToHere(); !page.empty()) arguments.push_back("--page=" + page);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    // Replaces the process whole, the blocked main thread with it; every descriptor closes by itself.
    execv("/proc/self/exe", pointers.data());
    std::perror("lumora-settings: cannot restart");
}

/// An option list is not part of it: only its row can open it. Nor has a page a way that was opened without one.
std::string Shell::wayToHere() const {
    const bool isClass = !page_.empty() && page_.front() != '/';
    if (isClass && (pages_.empty() || pages_.front()->snapshot().className == page_)) return page_;
    std::vector<std::string> classes;
    for (const PageModel* page : pages_)
        classes.push_back(page->snapshot().className);
    if (opening_ && (classes.empty() || classes.back() != opening_->className)) classes.push_back(opening_->className);
    std::string way;
    for (std::size_t i = 1; i < classes.size() && classes[i] != "PSListItemsController"; ++i)
        way += "/" + classes[i];
    return way;
}

bool Shell::activate(const QString& className, const QString& profile) {
    const std::string name = className.section('/', -1).toStdString(); // the end of a way
    const bool isLoaded = !pages_.empty();
    if (isLoaded && !name.empty() && !platform::NSClassFromString(name)) return false;
    emit activated(!name.empty(), profile);
    if (!name.empty()) post([name](Navigation& navigation) { navigation.goTo(platform::NSClassFromString(name)); });
    return true;
}

void Shell::leave() {
    emit leaving();
    for (QWindow* window : QGuiApplication::topLevelWindows())
        window->hide();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); // so that it is gone from the screen
    host_.finish(lost() ? 0ms : isComposing() ? kMailAtMost : kBothTimeOuts + kSpare);
    std::fflush(nullptr);
    _exit(fault_.isEmpty() ? 0 : 1); // without joining: the main thread may be blocked for good
}

SendEvent Shell::sendTo(std::uint64_t page) {
    return [this, page](Event event, std::function<void()> taken) {
        if (isOpenRow(page, event)) return emit openRowTapped();
        // Which part of a list is seen says nothing of what the user means.
        if (!std::holds_alternative<TableScrolled>(event)) turnBackTo(page);
        noteTap(page, event);
        noteChange(event);
        const QString words = wordsFor(page, event);
        post([page, event = std::move(event)](Navigation& navigation) { navigation.handle(page, event); },
             [this, words, changes = undo_.changes, taken = std::move(taken)] {
                 if (taken) taken();
                 if (!words.isEmpty() && undo_.changes != changes) emit said(words, true);
             });
    };
}

/// What is changed while the tweak is gone is shown, as the page keeps it, and yet lost.
void Shell::noteChange(const Event& event) {
    const auto isOption = [&] {
        const auto* tap = std::get_if<RowTapped>(&event);
        return tap && topPage() && tap->row < topPage()->rows.size() &&
               topPage()->rows[tap->row].cell == platform::PSListItemCell;
    };
    const bool changes = std::holds_alternative<ValueChanged>(event) || std::holds_alternative<RowMoved>(event) ||
                         std::holds_alternative<Touched>(event) || std::holds_alternative<TableRowTapped>(event) ||
                         isOption();
    if (tweakGone_ && changes && !std::exchange(changesLost_, true)) emit tweakChanged();
}

void Shell::take(const StackSnapshot& stack) {
    std::size_t common = 0;
    while (common < pages_.size() && common < stack.pages.size() &&
           pages_[common]->snapshot().id == stack.pages[common]->id)
        ++common;
    const bool alone = common > 0 && common == pages_.size() && stack.pages.size() == common + 1;
    const bool replaces = common + 1 == pages_.size() && pages_.size() == stack.pages.size();
    if (common < pages_.size()) {
        pages_.resize(common);
        if (!replaces) emit pagesPopped(static_cast<int>(common), landings_ == 0);
    }
    for (std::size_t i = 0; i < common; ++i)
        pages_[i]->read(stack.pages[i]);
    for (std::size_t i = common; i < stack.pages.size(); ++i) {
        pages_.push_back(new PageModel(sendTo(stack.pages[i]->id), stack.pages[i], this));
        connect(pages_.back(), &PageModel::begun, this, [this, id = stack.pages[i]->id] { turnBackTo(id); });
        connect(pages_.back(), &PageModel::held, this, &Shell::held);
        connect(pages_.back(), &PageModel::released, this, &Shell::released);
        replaces ? emit pageReplaced(pages_.back()) : emit pagePushed(pages_.back(), alone && landings_ == 0);
    }
    opening_ = stack.opening;
    takeUndo(stack.undo);
    markOpenRows();
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
