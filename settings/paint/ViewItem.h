#pragma once

#include "settings/model/PageModel.h"
#include "settings/paint/ViewPainter.h"

#include <QPointer>
#include <QQuickPaintedItem>

namespace settings {

/// Draws the view that a page hosts, and all views in it, from the page's snapshot. What looks the same in a newer
/// snapshot is not drawn again. GUI thread; another thread may paint while the GUI thread waits for it.
class ViewItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(settings::PageModel* page READ page WRITE setPage REQUIRED)

  public:
    [[nodiscard]] PageModel* page() const { return page_; }
    void setPage(PageModel* page);
    void paint(QPainter* painter) override;

  protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

  private:
    void takeView();

    QPointer<PageModel> page_;
    std::shared_ptr<const ViewSnapshot> view_;
    ViewPainter painter_;
};

} // namespace settings
