#pragma once

#include "settings/model/PageModel.h"

#include <QPointer>
#include <QQuickItem>

#include <map>
#include <vector>

namespace settings {

/// Hands fingers, and the mouse while its left button is down, to the view that a page hosts: every event as it comes,
/// the fingers of one event together, places in points of the page. Lies over what draws the view and draws nothing
/// itself. GUI thread.
class TouchItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(settings::PageModel* page READ page WRITE setPage REQUIRED)
    /// What has come down last is on something that has a use for it.
    Q_PROPERTY(bool inUse MEMBER inUse_)

  public:
    explicit TouchItem(QQuickItem* parent = nullptr);
    ~TouchItem() override;

    /// Has every move delivered. The toolkit merges the moves that it finds waiting, since most programs draw no more
    /// than the last one; here each of them means something. Goes for all windows of the process; called after the
    /// application object is made and before the first window.
    static void wantEveryMove();

    [[nodiscard]] PageModel* page() const { return page_; }
    void setPage(PageModel* page);
    [[nodiscard]] bool isInUse() const { return inUse_; }

  signals:
    /// A finger or the mouse has come down there; the view is told after this.
    void began(QPointF place);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void touchEvent(QTouchEvent* event) override;
    void touchUngrabEvent() override;

  private:
    using Point = platform::UITouchRouter::Point;

    void add(std::vector<Point>& points, std::int64_t finger, platform::UITouchPhase phase, QPointF place);
    void send(const std::vector<Point>& points);
    void sendMouse(platform::UITouchPhase phase, QPointF place);
    void cancelMouse() { cancel(true); }
    void cancelFingers() { cancel(false); }
    void cancel(bool mouse);

    QPointer<PageModel> page_;
    bool inUse_ = false;
    std::map<std::int64_t, platform::CGPoint> down_; ///< where each finger was last
};

} // namespace settings
