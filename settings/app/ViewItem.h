#pragma once

#include "settings/app/PageModel.h"

#include <QPointer>
#include <QQuickPaintedItem>

namespace settings {

/// Draws the view that a page hosts, and all the views in it, from the page's snapshot. GUI thread.
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

  private:
    void takeView();

    QPointer<PageModel> page_;
    std::shared_ptr<const ViewSnapshot> view_; ///< kept here, because painting may be on the render thread
};

} // namespace settings
