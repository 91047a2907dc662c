#pragma once

#include "settings/app/PageModel.h"

#include <QQuickItem>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <vector>

/// Stands in for the main thread in tests of the drawn rows: makes pages, sends snapshots when told to, and keeps what
/// the rows hand on.
class Bench : public QObject, private settings::Events {
    Q_OBJECT
    Q_PROPERTY(QVariantList changes READ changes)
    Q_PROPERTY(QVariantList taps READ taps)

  public:
    using QObject::QObject;

    /// Rows as maps of "cell", "name", "identifier", "value", "footerText", "placeholder", "min", "max", "showValue",
    /// "valueTitle", "marked".
    Q_INVOKABLE settings::PageModel* page(const QVariantList& rows);
    /// A newer snapshot of the last page, with these rows.
    Q_INVOKABLE void show(const QVariantList& rows);
    /// Everything that was handed on has arrived.
    Q_INVOKABLE void takeAll();

    [[nodiscard]] QVariantList changes() const { return changes_; }
    [[nodiscard]] QVariantList taps() const { return taps_; }

    /// What assistive tools are told about everything in the item's window, every text of each.
    Q_INVOKABLE QVariantList spoken(QQuickItem* item);
    /// Every text that assistive tools have been told of by an event since the last call.
    Q_INVOKABLE QStringList spokenEvents();
    /// Does what an assistive tool would by that action on the control of that name in the item's window: "Toggle",
    /// "Press", "Increase", "Decrease".
    Q_INVOKABLE bool act(QQuickItem* item, const QString& name, const QString& action);

  private:
    void rowTapped(std::uint64_t page, std::size_t row) override;
    void valueChanged(std::uint64_t page, std::size_t row, const platform::Value& value,
                      std::function<void()> taken) override;
    void rowMoved(std::uint64_t page, platform::NSIndexPath from, platform::NSIndexPath to,
                  std::function<void()> taken) override;
    void tableScrolled(std::uint64_t page, const settings::TableViewport& viewport) override;
    std::shared_ptr<const settings::PageSnapshot> snapshot(const QVariantList& rows);

    settings::PageModel* page_ = nullptr;
    QVariantList changes_;
    QVariantList taps_;
    std::vector<std::function<void()>> underWay_;
};
