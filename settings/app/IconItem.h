#pragma once

#include "settings/app/RowModel.h"

#include <QImage>
#include <QPointer>
#include <QQuickPaintedItem>

namespace settings {

/// Draws a row's icon, in the resolution that the screen has. GUI thread.
class IconItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(settings::RowModel* row READ row WRITE setRow NOTIFY rowChanged REQUIRED)

  public:
    [[nodiscard]] RowModel* row() const { return row_; }
    void setRow(RowModel* row);
    void paint(QPainter* painter) override;

  signals:
    void rowChanged();

  private:
    QPointer<RowModel> row_;
    platform::UIImageRef icon_;
    QImage decoded_;
    double decodedScale_ = 0;
};

} // namespace settings
