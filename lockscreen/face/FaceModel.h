#pragma once

#include "lockscreen/Behaviour.h"
#include "lockscreen/Hand.h"
#include "lockscreen/Turning.h"
#include "lockscreen/face/Backdrop.h"
#include "lockscreen/face/IconStore.h"
#include "lockscreen/face/PartsModel.h"
#include "lockscreen/face/ViewStore.h"

#include <QObject>
#include <QPointF>
#include <QQmlPropertyMap>
#include <QRectF>
#include <QTimer>

#include <functional>
#include <set>
#include <string>

namespace lumora {

/// The lock screen as QML sees it. QML decides nothing: it places what `look` says, and hands on what fingers and keys
/// do. `look` has a property for each field of Look, each with a signal of its own that tells when it differs; lists are
/// models. The three stages are laid out as if each were in view, so that a finger can drag the next one in. What is not
/// in view keeps its looks, so that it can fade away; what a stage shares with others is told as on the last one.
///
///     FaceModel face(backdrop, icons, texts);
///     face.setPhone(phone);
///     face.setSettings(settings, changedKeys);
///
/// Nothing happens while nothing changes: one timer wakes it for what is due next. GUI thread.
class FaceModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QVariant look READ looks CONSTANT)
    Q_PROPERTY(lumora::PartsModel* icons READ icons CONSTANT)
    Q_PROPERTY(lumora::PartsModel* notices READ notices CONSTANT)
    Q_PROPERTY(lumora::PartsModel* keys READ keys CONSTANT)
    Q_PROPERTY(lumora::PartsModel* dots READ dots CONSTANT)
    Q_PROPERTY(lumora::Backdrop* backdrop READ backdrop CONSTANT)
    Q_PROPERTY(double unit READ unit NOTIFY resized)
    Q_PROPERTY(bool landscape READ isLandscape NOTIFY resized)
    Q_PROPERTY(int stage READ stage NOTIFY moved)
    Q_PROPERTY(int page READ page NOTIFY moved)
    Q_PROPERTY(int focused READ focused NOTIFY moved)
    Q_PROPERTY(int leaving READ leaving NOTIFY moved)
    Q_PROPERTY(bool locked READ isLocked NOTIFY moved)
    Q_PROPERTY(int typed READ typed NOTIFY typedChanged)
    Q_PROPERTY(bool hidesNotices READ hidesNotices NOTIFY editionChanged)
    Q_PROPERTY(QString pressed READ pressed NOTIFY handMoved)
    Q_PROPERTY(QString pulled READ pulled NOTIFY handMoved)
    Q_PROPERTY(QPointF dragged READ dragged NOTIFY handMoved)
    Q_PROPERTY(double stageDrag READ stageDrag NOTIFY handMoved)
    Q_PROPERTY(bool follows READ follows WRITE setFollows NOTIFY followsChanged)
    Q_PROPERTY(int edition READ edition NOTIFY editionChanged)
    Q_PROPERTY(bool tweakAnswers READ tweakAnswers NOTIFY tweakAnswersChanged)

  public:
    using Clock = std::function<Seconds()>;

    /// The clock of the steady kind is taken if there is no other. What it is given is to outlive it.
    FaceModel(Backdrop& backdrop, IconStore& icons, const TextMeasure& texts, Behaviour::Log log = {}, Clock clock = {},
              QObject* parent = nullptr);

    /// A QQmlPropertyMap, whose properties no tool that reads QML could know.
    [[nodiscard]] QVariant looks() { return QVariant::fromValue<QObject*>(&look_); }
    [[nodiscard]] PartsModel* icons() { return &icons_; }
    [[nodiscard]] PartsModel* notices() { return &notices_; }
    [[nodiscard]] PartsModel* keys() { return &keys_; }
    [[nodiscard]] PartsModel* dots() { return &dots_; }
    [[nodiscard]] Backdrop* backdrop() const { return &backdrop_; }
    [[nodiscard]] IconStore* iconStore() const { return &iconStore_; }
    /// Null without drawings of App Views, which have their icons then.
    [[nodiscard]] ViewStore* viewStore() const { return viewStore_; }
    /// To be called before anything shows the face.
    void setViewStore(ViewStore* store) { viewStore_ = store; }
    [[nodiscard]] double unit() const { return behaviour_.device().unit(); }
    [[nodiscard]] bool isLandscape() const { return behaviour_.device().isLandscape(); }
    /// The place of the stage in view, or of the one that was, among those that there are.
    [[nodiscard]] int stage() const { return stage_; }
    [[nodiscard]] int page() const { return behaviour_.state().page; }
    [[nodiscard]] int focused() const { return behaviour_.state().focus; }
    /// The notice that has been let go and is leaving; -1 for none.
    [[nodiscard]] int leaving() const { return leaving_; }
    [[nodiscard]] bool isLocked() const { return behaviour_.state().locked; }
    /// How many digits of a passcode.
    [[nodiscard]] int typed() const { return static_cast<int>(behaviour_.state().typed.size()); }
    /// Whether a tap beside the notices hides them, or shows them again.
    [[nodiscard]] bool hidesNotices() const;
    /// The part under the finger, while it may still be tapped.
    [[nodiscard]] QString pressed() const;
    /// The part that the finger has been put on and drags; what it does to it, and how far.
    [[nodiscard]] QString pulled() const;
    [[nodiscard]] QPointF dragged() const;
    /// How far the stages follow the finger; less where there is none to come.
    [[nodiscard]] double stageDrag() const;
    [[nodiscard]] bool follows() const { return turning_.follows(); }
    void setFollows(bool does);
    /// Of the settings and the phone by which describe(), hasHold() and hidesNotices() go; counted from 1.
    [[nodiscard]] int edition() const { return edition_; }
    [[nodiscard]] bool tweakAnswers() const { return tweakAnswers_; }
    void setTweakAnswers(bool does);

    /// Settings of the tweak, and which of them differ from the former ones; the face turns to those if it follows.
    void setSettings(const platform::Dictionary& settings, const std::set<std::string>& changed);
    /// Everything of it counts but its size, its picture and its measure of texts, which are the face's own.
    void setPhone(const Device& phone);
    /// Lays a value over the settings, as long as a control is held; `release` when the settings have it.
    void hold(const std::string& key, const platform::Value& value);
    void letGo(const std::string& key);
    void setFallsAsleep(bool does) { behaviour_.setFallsAsleep(does); }
    void show(Surface surface);
    const State& apply(const Gesture& gesture);
    /// Lets someone else act, at times of his own.
    void drive(const std::function<void(Behaviour& behaviour)>& act);

    /// In points of the face.
    Q_INVOKABLE void resize(double width, double height);
    Q_INVOKABLE void press(QPointF point);
    Q_INVOKABLE void move(QPointF point);
    Q_INVOKABLE void release();
    Q_INVOKABLE void cancel();
    /// A line as Gesture reads it; for keys and assistive tools.
    Q_INVOKABLE void act(const QString& gesture);
    /// "opens", "opens; hold shows its App View": what an assistive tool says of an icon.
    Q_INVOKABLE [[nodiscard]] QString describe(const QString& identifier) const;
    Q_INVOKABLE [[nodiscard]] bool hasHold(const QString& identifier) const;

    [[nodiscard]] const Behaviour& behaviour() const { return behaviour_; }

  signals:
    void resized();
    void moved();
    void handMoved();
    void followsChanged();
    void tweakAnswersChanged();
    void editionChanged();
    /// What has just been edited shows there.
    void edited(const QRectF& frame);
    void typedChanged();
    void wronglyTyped();
    /// An App View is about to come out of an icon there.
    void revealed(const QRectF& icon);
    /// The time until sleep has been edited: show what falling asleep looks like.
    void sleepEdited();

  private:
    [[nodiscard]] Seconds now() const { return clock_(); }
    void touched();
    /// Whether that wakes the screen.
    bool touch();
    /// Publishes what has changed.
    void refresh();
    [[nodiscard]] Look withAllStages() const;
    void takeSettings();
    void turn();
    void wakeUp();
    void setTimer();

    Backdrop& backdrop_;
    IconStore& iconStore_;
    ViewStore* viewStore_ = nullptr;
    Clock clock_;
    platform::Dictionary settings_; ///< the tweak's
    platform::Dictionary held_;     ///< values under a hand
    Behaviour behaviour_;
    Hand hand_;
    Turning turning_;
    bool tweakAnswers_ = true;
    int edition_ = 1;
    int stage_ = 0;
    int leaving_ = -1;
    Look actual_; ///< as lookOf() says
    Look shown_;  ///< as QML has it
    State state_;
    QQmlPropertyMap look_;
    PartsOf<IconLook> icons_;
    PartsOf<NoticeLook> notices_;
    PartsOf<Text> keys_;
    PartsOf<DotLook> dots_;
    QTimer timer_{this};
};

} // namespace lumora
