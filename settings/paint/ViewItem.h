#pragma once

#include "settings/model/PageModel.h"
#include "settings/paint/ViewPainter.h"

#include <QPointer>
#include <QQuickPaintedItem>

namespace settings {

/// Draws the view that a page hosts, and all the views in it, from the page's snapshot; where a newer one looks alike,
/// nothing is drawn anew. GUI thread; painting may be on another, for which this one waits.
class ViewItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(settings::PageModel* page READ page WRITE setPage NOTIFY pageChanged REQUIRED)

  public:
    [[nodiscard]] PageModel* page() const { return page_; }
    void setPage(PageModel* page);
    void paint(QPainter* painter) override;

  signals:
    void pageChanged();

  protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

  private:
    void takeView();

    QPointer<PageModel> page_;
    std::shared_ptr<const ViewSnapshot> view_;
    ViewPainter painter_;
};

} // namespace settings
