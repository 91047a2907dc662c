#include "settings/app/LockScreen.h"

#include "programs/Program.h"

#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

Q_IMPORT_QML_PLUGIN(LumoraFacePlugin)

namespace settings {

using namespace std::chrono_literals;

namespace {

constexpr double kWideWindow = 1200;
constexpr double kNarrowest = 320;
constexpr double kLargestShare = 0.4; ///< of the window's width
/// Beside the phone, and above and below it, in FacePane.qml.
constexpr double kAside = 100;
constexpr double kAbove = 108;
constexpr auto kAnswersWithin = 2s;

} // namespace

LockScreen::LockScreen(bool standsStill, QObject* parent) : QObject(parent), standsStill_(standsStill) {
}

LockScreen::~LockScreen() = default;

double LockScreen::widthIn(platform::CGSize window) {
    if (window.width < kWideWindow) return 0;
    const platform::CGSize phone = lumora::PhoneOptions().size;
    const double ofPhone = std::floor((window.height - kAbove) * phone.width / phone.height);
    return std::clamp(ofPhone + kAside, kNarrowest, std::floor(window.width * kLargestShare));
}

QObject* LockScreen::face() {
    if (live_) return live_->model();
    lumora::LiveFace::Options options;
    options.ratio = ratio_;
    options.textScale = textScale_;
    if (standsStill_) options.phone.time = lumora::timeFrom("2026-11-20T18:36");
    live_ = std::make_unique<lumora::LiveFace>(std::move(options));
    connect(live_.get(), &lumora::LiveFace::failed, this,
            [](const QString& why) { programs::complain(why.toStdString()); });
    connect(live_.get(), &lumora::LiveFace::installed, this, [this] { isInstalled_ = true; });
    connect(live_.get(), &lumora::LiveFace::heard, this, &LockScreen::hear);
    live_->model()->setFallsAsleep(false);
    live_->follow();
    live_->setVisible(shown_);
    live_->preview(previewed_, false);
    live_->readInstallation();
    return live_->model();
}

void LockScreen::preview(std::optional<platform::Dictionary> settings) {
    previewed_ = std::move(settings);
    if (live_) live_->preview(previewed_, !standsStill_);
}

void LockScreen::setShown(bool shown) {
    if (shown == std::exchange(shown_, shown)) return;
    if (live_) live_->setVisible(shown);
    emit shownChanged();
}

void LockScreen::setRatio(double ratio) {
    if (ratio == std::exchange(ratio_, ratio)) return;
    if (live_) live_->setRatio(ratio);
    emit ratioChanged();
}

void LockScreen::setTextSize(int percent) {
    textScale_ = percent / 100.0;
    if (live_) live_->setTextScale(textScale_);
}

bool LockScreen::isComplete() const {
    return live_ && hasHeard_ && isInstalled_ && live_->hasPicture() && live_->icons().isComplete() &&
           live_->views().isComplete();
}

void LockScreen::hold(const QString& key, double number) {
    if (!live_ || key.isEmpty()) return;
    const std::string held = key.toStdString();
    released_.erase(held);
    live_->model()->hold(held, number);
}

void LockScreen::letGo(const QString& key) {
    if (!live_ || key.isEmpty()) return;
    const std::string released = key.toStdString();
    QTimer& timer = released_[released];
    timer.setSingleShot(true);
    timer.callOnTimeout(this, [this, released] { forget(released); });
    timer.start(kAnswersWithin);
}

void LockScreen::hear(const std::vector<std::string>& changed) {
    hasHeard_ = true;
    for (const std::string& key : changed)
        if (released_.contains(key)) forget(key);
}

void LockScreen::forget(const std::string& key) {
    live_->model()->letGo(key);
    released_.erase(key);
}

} // namespace settings
