#include "settings/app/SearchSource.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/Dispatch.h"
#include "search/IndexFile.h"

#include <QEvent>

#include <malloc.h>

#include <chrono>
#include <utility>

namespace settings {

using namespace std::chrono_literals;

namespace {

constexpr auto kRest = 1s;

/// Silent about a failure: the results then stand without values.
platform::Value requestedSettings() {
    const auto port = platform::CFMessagePortCreateRemote(lumora::portName(lumora::kRequestTweakSettings));
    std::optional<platform::Data> reply;
    const auto result = platform::CFMessagePortSendRequest(*port, lumora::kMessageId, {}, lumora::kSendTimeout,
                                                           lumora::kReceiveTimeout, &reply);
    const bool answered = result == platform::kCFMessagePortSuccess && reply;
    return answered ? platform::NSKeyedUnarchiver::unarchiveObjectWithData(*reply) : platform::Value();
}

} // namespace

SearchSource::SearchSource(SearchModel& model, search::IndexOrder order, QObject* parent)
    : QObject(parent), model_(model), order_(std::move(order)) {
    rest_.setSingleShot(true);
    rest_.setInterval(kRest);
    connect(&rest_, &QTimer::timeout, this, &SearchSource::hasten);
    connect(&model_, &SearchModel::opened, this, [this] {
        hasten();
        askForSettings();
    });
    worker_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

SearchSource::~SearchSource() {
    stop();
}

void SearchSource::stop() {
    worker_.request_stop();
    if (worker_.joinable()) worker_.join();
}

void SearchSource::awaitRest(QObject& window) {
    window.installEventFilter(this);
    rest_.start();
}

bool SearchSource::eventFilter(QObject* watched, QEvent* event) {
    if (event->isInputEvent() && rest_.isActive()) rest_.start();
    return QObject::eventFilter(watched, event);
}

/// On a thread of its own.
void SearchSource::run(const std::stop_token& stop) {
    work(stop);
    // An index is read by way of many small values, the room for which this thread's heap would keep: tens of
    // megabytes where there are ten thousand applications.
    ::malloc_trim(0);
}

void SearchSource::work(const std::stop_token& stop) {
    const search::Sources sources = sourcesOf(order_);
    const auto kept = search::readIndex(search::indexFile(sources), search::stampOf(sources));
    if (kept) bring(kept->index, kept->current);
    if (kept && kept->current) return;
    {
        std::unique_lock held(mutex_);
        if (!hastened_.wait(held, stop, [this] { return isWanted_; })) return;
    }
    // What comes bit by bit is worth showing only where there is nothing else.
    const auto known = [&](const search::Index& index) {
        if (!kept) bring(index, false);
    };
    if (auto made = search::makeAndKeepIndex(order_, known, stop)) bring(made.value().index, true);
}

void SearchSource::bring(search::Index index, bool last) {
    QMetaObject::invokeMethod(
        this,
        [this, index = std::move(index), last] {
            model_.setIndex(index);
            hasIndex_ = hasIndex_ || last;
        },
        Qt::QueuedConnection);
}

void SearchSource::hasten() {
    const std::lock_guard held(mutex_);
    isWanted_ = true;
    hastened_.notify_all();
}

void SearchSource::askForSettings() {
    platform::dispatch_async(platform::dispatch_get_global_queue(0, 0), [this] {
        platform::Value settings = requestedSettings();
        // The program ends without destroying this, so it can be handed work from any thread.
        QMetaObject::invokeMethod(
            this,
            [this, settings = std::move(settings)] {
                model_.setSettings(settings);
                hasSettings_ = true;
            },
            Qt::QueuedConnection);
    });
}

} // namespace settings
