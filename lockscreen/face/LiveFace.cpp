#include "lockscreen/face/LiveFace.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>

#include <algorithm>
#include <ctime>
#include <mutex>
#include <set>
#include <utility>

namespace lumora {

/// What the feed has heard and the face has not yet taken: the last settings, and all keys that differ.
class LiveFace::Mailbox {
  public:
    /// Whether it was empty.
    bool put(const Heard& heard) {
        const std::lock_guard lock(mutex_);
        const auto before = std::exchange(waiting_, heard);
        if (before) waiting_->changed.insert(waiting_->changed.end(), before->changed.begin(), before->changed.end());
        return !before;
    }
    Heard take() {
        const std::lock_guard lock(mutex_);
        return *std::exchange(waiting_, std::nullopt);
    }

  private:
    std::mutex mutex_;
    std::optional<Heard> waiting_;
};

LiveFace::LiveFace(Options options, QObject* parent)
    : QObject(parent), options_(std::move(options)), model_(backdrop_, icons_, texts_, options_.log, options_.clock),
      mailbox_(std::make_shared<Mailbox>()) {
    views_.setTime(options_.phone.time);
    views_.setTextScale(options_.textScale);
    views_.setLimits(options_.drawing);
    model_.setViewStore(&views_);
    const platform::CGSize size = options_.phone.size;
    model_.resize(size.width, size.height);
    // A window takes some sizes on the way to its own.
    resting_.setSingleShot(true);
    connect(&resting_, &QTimer::timeout, this, &LiveFace::orderBackdrop);
    connect(&model_, &FaceModel::resized, &resting_, qOverload<>(&QTimer::start));
    connect(&model_, &FaceModel::resized, this, &LiveFace::chooseIcons);
    connect(&backdrop_, &Backdrop::failed, this, &LiveFace::failed);
    minute_.setSingleShot(true);
    connect(&minute_, &QTimer::timeout, this, &LiveFace::tick);
    chooseIcons();
    orderBackdrop();
    phone_.emplace(options_.phone, Installed());
    tick();
}

LiveFace::~LiveFace() = default;

void LiveFace::take(const std::shared_ptr<const Installation>& installation) {
    phone_.emplace(options_.phone, installation->installed());
    tick();
    icons_.setInstallation(installation);
    views_.setViews(installation->installed().views);
    if (installation->isWhole()) emit installed();
}

void LiveFace::readInstallation() {
    Installation::read([guard = QPointer<LiveFace>(this)](std::shared_ptr<const Installation> read) {
        QMetaObject::invokeMethod(
            qApp,
            [guard, read = std::move(read)] {
                if (guard) guard->take(read);
            },
            Qt::QueuedConnection);
    });
}

void LiveFace::follow() {
    feed_ = std::make_unique<SettingsFeed>([this](const Heard& heard) {
        if (mailbox_->put(heard))
            QMetaObject::invokeMethod(
                this, [this] { hear(mailbox_->take()); }, Qt::QueuedConnection);
    });
}

void LiveFace::hear(const Heard& heard) {
    model_.setTweakAnswers(heard.tweakAnswers);
    // What it finds at first has not been edited.
    const bool edited = std::exchange(hasHeard_, heard.tweakAnswers) && heard.tweakAnswers;
    heard_ = heard.settings;
    if (!previewed_)
        model_.setSettings(heard_,
                           edited ? std::set(heard.changed.begin(), heard.changed.end()) : std::set<std::string>());
    emit this->heard(heard.changed);
}

void LiveFace::preview(std::optional<platform::Dictionary> settings, bool turns) {
    if (!settings && !previewed_) return;
    const platform::Dictionary before = previewed_ ? *previewed_ : heard_;
    previewed_ = std::move(settings);
    const platform::Dictionary& now = previewed_ ? *previewed_ : heard_;
    const auto changed = turns && previewed_ ? changedKeys(before, now) : std::vector<std::string>();
    model_.setSettings(now, {changed.begin(), changed.end()});
}

void LiveFace::setVisible(bool visible) {
    if (feed_) feed_->setVisible(visible);
    views_.setVisible(visible);
    if (visible)
        tick();
    else
        minute_.stop();
}

void LiveFace::setRatio(double ratio) {
    if (ratio == std::exchange(options_.ratio, ratio)) return;
    chooseIcons();
    orderBackdrop();
}

bool LiveFace::hasPicture() const {
    const BackdropOrder order = backdropOrder();
    return backdrop_.sharp().size() == (QSizeF(order.points) * order.ratio).toSize();
}

BackdropOrder LiveFace::backdropOrder() const {
    const platform::CGSize& size = model_.behaviour().device().size;
    return {QString::fromStdString(options_.wallpaper),
            QSize(static_cast<int>(size.width), static_cast<int>(size.height)), options_.ratio};
}

void LiveFace::chooseIcons() {
    icons_.setLargest(120 * model_.unit() * options_.ratio);
}

void LiveFace::orderBackdrop() {
    const BackdropOrder order = backdropOrder();
    if (ordered_ != order) backdrop_.order(order);
    ordered_ = order;
}

platform::Result<void> LiveFace::makeBackdrop() {
    ordered_ = backdropOrder();
    return backdrop_.make(*ordered_);
}

void LiveFace::tick() {
    const std::time_t now = std::time(nullptr);
    if (phone_) model_.setPhone(phone_->device(now));
    minute_.start(static_cast<int>((Phone::nextChange(now) - now) * 1000));
}

} // namespace lumora
