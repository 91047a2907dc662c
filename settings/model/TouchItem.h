#pragma once

#include "settings/model/PageModel.h"

#include <QPointer>
#include <QQuickItem>

#include <map>
#include <vector>

namespace settings {

/// Hands fingers, and the mouse with its left button down, to the view that a page hosts: every event as it comes, the
/// fingers of one event together. Lies over what draws the view, and draws nothing. GUI thread.
class TouchItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(settings::PageModel* page READ page WRITE setPage NOTIFY pageChanged REQUIRED)

  public:
    explicit TouchItem(QQuickItem* parent = nullptr);
    ~TouchItem() override;

    /// The toolkit makes one of the moves that it finds waiting, since most programs draw no more than that; here each
    /// of them means something. For all windows of the process, before the first one and after the application object.
    static void wantEveryMove();

    [[nodiscard]] PageModel* page() const { return page_; }
    void setPage(PageModel* page);

  signals:
    void pageChanged();
    /// A finger has come down there, or the mouse; the view is told after this.
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
    void cancelMouse();
    void cancelFingers();

    QPointer<PageModel> page_;
    std::map<std::int64_t, platform::CGPoint> down_; ///< where they were last
};

} // namespace settings
