#pragma once

#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <deque>
#include <utility>

class QTouchEvent;

namespace settings {

/// A finger that comes down on this item, at the edge of what it may take along, and goes inwards. Nothing else hears of
/// its way; what is beneath has heard that it came down, and hears that this is called off. Left alone are fingers that something
/// else holds on to, such as a slider or a row in the hand. Draws nothing. Places are in points. GUI thread.
class EdgeSwipe : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The edge is at the right, and inwards is leftwards.
    Q_PROPERTY(bool mirrored MEMBER mirrored_)
    /// The finger is taken along.
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)
    /// How far inwards the finger has gone since then, at least 0.
    Q_PROPERTY(double distance READ distance NOTIFY distanceChanged)

  public:
    using QQuickItem::QQuickItem;
    ~EdgeSwipe() override { watch(nullptr); }
    [[nodiscard]] bool isActive() const { return state_ == State::following; }
    [[nodiscard]] double distance() const { return distance_; }

  signals:
    void activeChanged();
    void distanceChanged();
    /// The finger has left the screen, going inwards with that speed, in points a second.
    void released(double speed);
    /// Another finger has come, or the item takes none any more.
    void canceled();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    enum class State : unsigned char {
        idle,      ///< no finger that matters
        waiting,   ///< for where the finger goes
        following, ///< the finger
        ignoring,  ///< fingers that nobody is to hear of, until all are up
    };

    void watch(QQuickWindow* window);
    bool take(const QTouchEvent& event);
    void begin(const QTouchEvent& event);
    void note(const QTouchEvent& event);
    void cancel();
    void setState(State state);
    [[nodiscard]] double inwards(QPointF place) const;
    [[nodiscard]] double speed() const;

    QPointer<QQuickWindow> window_;
    bool mirrored_ = false;
    State state_ = State::idle;
    bool takesAway_ = false; ///< the finger from whatever has it
    QPointF start_;          ///< in the window
    double distance_ = 0;
    std::deque<std::pair<quint64, double>> lately_; ///< times in milliseconds, and how far inwards
};

} // namespace settings
