#pragma once

#include "settings/model/PageModel.h"
#include "settings/paint/ViewPainter.h"

#include <QPointer>
#include <QQuickItem>

namespace settings {

/// Draws the view that a page hosts, and all views in it, from the page's snapshot. What looks the same in a newer
/// snapshot is not drawn again. GUI thread; another thread may draw while the GUI thread waits for it.
class ViewItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(settings::PageModel* page READ page WRITE setPage REQUIRED)

  public:
    explicit ViewItem(QQuickItem* parent = nullptr);
    [[nodiscard]] PageModel* page() const { return page_; }
    void setPage(PageModel* page);

  protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    void takeView();
    void redraw(const QRectF& area);
    void draw(double ratio);

    QPointer<PageModel> page_;
    std::shared_ptr<const ViewSnapshot> view_;
    ViewPainter painter_;
    QImage picture_;
    QRectF stale_; ///< what of it is to be drawn again, in points
};

} // namespace settings
