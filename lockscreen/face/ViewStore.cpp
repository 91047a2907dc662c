#include "lockscreen/face/ViewStore.h"

#include "platform/services/PictureDecoder.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <system_error>
#include <utility>

namespace lumora {
namespace {

using Outcome = ViewAnswer::Outcome;

constexpr std::chrono::milliseconds kForPictures(1000); // of one drawing
constexpr std::chrono::milliseconds kSlice(50);         // after which a view that is seen no more waits no longer

/// The pictures of one drawing, as the program draws them that draws strangers' pictures.
struct Pictures {
    const std::filesystem::path& bundle;
    const std::atomic<bool>& closed;
    std::chrono::milliseconds left = kForPictures;
    std::vector<platform::PictureWanted> late = {};

    QImage find(const std::string& name, int pixels) {
        std::error_code failed;
        for (const char* ending : {".svg", "@2x.png", ".png"}) {
            const std::filesystem::path file = bundle / (name + ending);
            if (!std::filesystem::exists(file, failed)) continue;
            auto& decoder = platform::PictureDecoder::shared();
            const auto order = decoder.order({{file, pixels}});
            for (;;) {
                platform::PicturePatience patience(std::min(kSlice, left));
                if (const auto drawn = decoder.wait(order, patience, nullptr)) {
                    if (drawn->empty()) return {};
                    const platform::Data& png = drawn->front();
                    return QImage::fromData(png.data(), static_cast<int>(png.size()));
                }
                left -= std::min(kSlice, left);
                if (left.count() == 0 || closed) break;
            }
            late.push_back({file, pixels});
            return {};
        }
        return {};
    }
};

/// What the painting thread needs to know.
struct Easel {
    std::atomic<bool> closed = false;
    std::mutex mutex;
    DrawingPlace place;

    [[nodiscard]] DrawingPlace placeNow() {
        const std::lock_guard lock(mutex);
        return place;
    }
};

} // namespace

/// What the painting thread hands over.
struct ViewStore::Painted {
    int host = 0;
    std::uint64_t question = 0;
    Drawn drawn;
    double again = 0;
    std::vector<platform::PictureWanted> late = {}; ///< pictures that are missing in it
};

struct ViewStore::View {
    explicit View(AppViewInfo about) : info(std::move(about)) {}
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    ~View() { end(); }
    /// Ends its process.
    void end() {
        if (easel) easel->closed = true;
        host.reset();
        easel.reset();
        asked.reset();
        late.reset();
        awaited = answered = repeat = 0;
    }

    AppViewInfo info;
    Drawn drawn;
    std::shared_ptr<Easel> easel;
    std::unique_ptr<ViewHost> host; ///< while it is seen
    int hostNumber = 0;
    std::optional<DrawingQuestion> asked;
    DrawingPlace place; ///< of what was asked
    std::uint64_t awaited = 0;
    std::uint64_t answered = 0;
    platform::PictureOrderRef late; ///< pictures that were missing
    std::uint64_t repeat = 0;       ///< the question that was asked again since they have come
};

ViewStore::ViewStore(QObject* parent) : QObject(parent) {
    again_.setSingleShot(true);
    again_.setTimerType(Qt::PreciseTimer);
    connect(&again_, &QTimer::timeout, this, [this] { ask(true); });
}

ViewStore::~ViewStore() = default;

void ViewStore::setViews(const std::vector<AppViewInfo>& views) {
    views_.clear();
    for (const AppViewInfo& view : views)
        if (view.draws) views_.emplace(QString::fromStdString(view.identifier), std::make_unique<View>(view));
    emit changed({});
    ask();
}

void ViewStore::setSettings(const platform::Dictionary& settings) {
    settings_ = settings;
    ask();
}

void ViewStore::setTextScale(double scale) {
    textScale_ = scale;
    ask();
}

void ViewStore::setVisible(bool visible) {
    if (visible == std::exchange(visible_, visible)) return;
    if (visible)
        ask();
    else if (View* view = seen())
        rest(*view);
}

void ViewStore::show(const void* shower, const QString& identifier, const DrawingPlace& place) {
    const QString before = seenName();
    std::erase_if(shown_, [&](const Shown& shown) { return shown.shower == shower; });
    shown_.push_back({shower, identifier, place});
    turnFrom(before);
}

void ViewStore::hide(const void* shower) {
    const QString before = seenName();
    if (std::erase_if(shown_, [&](const Shown& shown) { return shown.shower == shower; }) > 0) turnFrom(before);
}

void ViewStore::turnFrom(const QString& before) {
    if (const auto found = views_.find(before); found != views_.end() && before != seenName()) rest(*found->second);
    ask();
}

void ViewStore::rest(View& view) {
    again_.stop();
    view.end();
}

void ViewStore::restart(const QString& identifier) {
    const auto found = views_.find(identifier);
    if (found == views_.end() || found->second->drawn.fault != Fault::stopped) return;
    found->second->drawn.fault = Fault::none;
    found->second->end();
    emit changed(identifier);
    ask();
}

ViewStore::View* ViewStore::seen() {
    const auto found = views_.find(seenName());
    return found == views_.end() ? nullptr : found->second.get();
}

void ViewStore::ask(bool anew) {
    View* view = seen();
    if (!view || !visible_ || shown_.back().place.points.isEmpty() || view->drawn.fault == Fault::stopped) return;
    const DrawingPlace& place = shown_.back().place;
    DrawingQuestion question{place.points.width(),
                             place.points.height(),
                             textScale_,
                             place.isDark(),
                             {},
                             ownSettings(settings_, view->info.identifier)};
    if (!anew && view->asked && view->asked->isLike(question) && view->place == place) return;
    if (time_) {
        question.time = *time_;
        ::timegm(&question.time); // finds the day of the week
    } else {
        const std::time_t now = std::time(nullptr);
        ::localtime_r(&now, &question.time);
    }
    again_.stop();
    if (!view->host) {
        view->easel = std::make_shared<Easel>();
        view->easel->place = place;
        view->hostNumber = ++hosts_;
        const auto paint = [this, identifier = seenName(), host = view->hostNumber, easel = view->easel,
                            bundle = view->info.bundle](const ViewAnswer& answer) -> std::function<void()> {
            Painted painted{host, answer.question, {}, answer.drawing.again};
            if (answer.outcome == Outcome::drawn) {
                Pictures pictures{bundle, easel->closed};
                painted.drawn.image = paintDrawing(
                    answer.drawing, easel->placeNow(),
                    [&](const std::string& name, int pixels) { return pictures.find(name, pixels); }, easel->closed);
                painted.late = std::move(pictures.late);
                painted.drawn.caption = captionOf(answer.drawing);
                painted.drawn.words = wordsOf(answer.drawing);
            }
            painted.drawn.fault = answer.outcome == Outcome::stopped ? Fault::stopped
                                  : painted.drawn.image.isNull()     ? Fault::tooMuch
                                                                     : Fault::none;
            return [this, identifier, painted = std::move(painted)] { // the store has the host
                QMetaObject::invokeMethod(
                    this, [this, identifier, painted] { take(identifier, painted); }, Qt::QueuedConnection);
            };
        };
        view->host = std::make_unique<ViewHost>(view->info.bundle, paint, limits_);
    } else {
        const std::lock_guard lock(view->easel->mutex);
        view->easel->place = place;
    }
    view->asked = question;
    view->place = place;
    view->awaited = view->host->draw(std::move(question));
}

void ViewStore::take(const QString& identifier, const Painted& painted) {
    const auto found = views_.find(identifier);
    // It may have been hidden since, and shown again.
    if (found == views_.end() || !found->second->host || found->second->hostNumber != painted.host) return;
    View& view = *found->second;
    view.answered = painted.question;
    const bool stays = painted.drawn.fault != Fault::none; // the last drawing
    Drawn drawn = stays ? view.drawn : painted.drawn;
    drawn.fault = painted.drawn.fault;
    view.drawn = std::move(drawn);
    if (view.drawn.fault == Fault::stopped) view.end();
    if (painted.again > 0 && !time_ && view.awaited == view.answered)
        again_.start(static_cast<int>(painted.again * 1000));
    if (!painted.late.empty() && view.answered != view.repeat) {
        const auto come = [store = QPointer(this), identifier, host = painted.host](const auto&) {
            QMetaObject::invokeMethod(
                qApp,
                [store, identifier, host] {
                    View* seen = store ? store->seen() : nullptr;
                    if (!seen || store->seenName() != identifier || seen->hostNumber != host || !seen->host) return;
                    store->ask(true);
                    seen->repeat = seen->awaited;
                },
                Qt::QueuedConnection);
        };
        auto& decoder = platform::PictureDecoder::shared();
        view.late = decoder.order(painted.late);
        platform::PicturePatience none(std::chrono::nanoseconds(0));
        if (const auto known = decoder.wait(view.late, none, come)) come(*known);
    }
    emit changed(identifier);
}

bool ViewStore::draws(const QString& identifier) const {
    return views_.contains(identifier);
}

ViewStore::Drawn ViewStore::drawn(const QString& identifier) const {
    const auto found = views_.find(identifier);
    return found == views_.end() ? Drawn() : found->second->drawn;
}

bool ViewStore::isComplete() const {
    return std::ranges::all_of(views_, [](const auto& view) { return view.second->awaited == view.second->answered; });
}

} // namespace lumora
