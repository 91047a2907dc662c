#pragma once

#include "settings/model/ComposerModel.h"
#include "settings/model/ElementModel.h"
#include "settings/model/RowModel.h"
#include "settings/model/TableModel.h"
#include "settings/model/TextModel.h"

#include <QList>
#include <QObject>
#include <QSizeF>
#include <QString>
#include <QtQml/qqmllist.h>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>
#include <vector>

namespace settings {

/// A group of rows with its header and footer, as QML draws it. GUI thread.
class GroupModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Groups come from snapshots")

    Q_PROPERTY(QString header MEMBER header CONSTANT)
    Q_PROPERTY(QString footer MEMBER footer CONSTANT)
    Q_PROPERTY(QQmlListProperty<settings::RowModel> rows READ drawnRows CONSTANT)

  public:
    using QObject::QObject;
    QString header;
    QString footer;
    QList<RowModel*> rows;

  private:
    QQmlListProperty<RowModel> drawnRows() { return {this, &rows}; }
};

/// A page, as QML draws it: groups of rows, or one view that fills it, with the table or text in that view and what the
/// keyboard reaches there. GUI thread.
///
/// While the rows stay the same rows, a newer snapshot changes only their values, so that what draws them lives on, and
/// the keyboard focus in it. The same goes for the elements of a view.
class PageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Pages come from snapshots")

    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(bool hostsView READ hostsView NOTIFY viewChanged)
    Q_PROPERTY(QSizeF viewSize READ viewSize NOTIFY viewChanged)
    Q_PROPERTY(settings::TableModel* table READ table NOTIFY partsChanged)
    Q_PROPERTY(settings::TextModel* text READ text NOTIFY partsChanged)
    Q_PROPERTY(QQmlListProperty<settings::ElementModel> elements READ drawnElements NOTIFY elementsChanged)
    Q_PROPERTY(settings::ComposerModel* composer READ composer NOTIFY partsChanged)
    Q_PROPERTY(bool presentsAnimated READ presentsAnimated NOTIFY partsChanged)
    Q_PROPERTY(QQmlListProperty<settings::GroupModel> groups READ drawnGroups NOTIFY groupsChanged)

  public:
    PageModel(SendEvent send, std::shared_ptr<const PageSnapshot> page, QObject* parent);

    [[nodiscard]] QString title() const { return QString::fromStdString(page_->title); }
    [[nodiscard]] bool hostsView() const { return page_->hostsView; }
    /// Of the view that it hosts, which is larger than the page while that was turned; empty for none.
    [[nodiscard]] QSizeF viewSize() const;
    /// Null when the page has no table.
    [[nodiscard]] TableModel* table() const { return table_; }
    /// Null when the page has no text.
    [[nodiscard]] TextModel* text() const { return text_; }
    /// In reading order.
    [[nodiscard]] const QList<ElementModel*>& elements() const { return elements_; }
    /// Null when no message is being composed.
    [[nodiscard]] ComposerModel* composer() const { return composer_; }
    /// Whether the composer slides in or, when it is null, out.
    [[nodiscard]] bool presentsAnimated() const { return page_->presentsAnimated; }
    [[nodiscard]] const PageSnapshot& snapshot() const { return *page_; }

    /// Takes up a newer snapshot of the same page.
    void read(std::shared_ptr<const PageSnapshot> page);

    /// The row that was tapped last.
    [[nodiscard]] std::optional<std::size_t> tappedRow() const { return tapped_; }
    void noteTapped(std::size_t row) { tapped_ = row; }
    /// The row that leads to the page that is shown beside this one; nothing for none.
    [[nodiscard]] std::optional<std::size_t> openRow() const { return open_; }
    void setOpenRow(std::optional<std::size_t> row);

    /// Hands on the fingers of one event on the page's view; places are in points of the page.
    void touch(const std::vector<platform::UITouchRouter::Point>& points);

  signals:
    void titleChanged();
    void groupsChanged();
    void viewChanged();
    void elementsChanged();
    void partsChanged();
    /// The user has begun to change a row.
    void begun();
    /// A hand is on the slider of a row that has that identifier, and has let go.
    void held(const QString& identifier, double number);
    void released(const QString& identifier);

  private:
    QQmlListProperty<GroupModel> drawnGroups() { return {this, &groups_}; }
    QQmlListProperty<ElementModel> drawnElements() { return {this, &elements_}; }
    void makeGroups();
    void readParts();
    template<class Model, class Part, class... Context>
    void readPart(Model*& model, const std::shared_ptr<const Part>& part, const Context&... context);
    void readElements();

    SendEvent send_;
    std::shared_ptr<const PageSnapshot> page_;
    TableModel* table_ = nullptr;
    TextModel* text_ = nullptr;
    QList<ElementModel*> elements_;
    ComposerModel* composer_ = nullptr;
    QList<GroupModel*> groups_;
    std::optional<std::size_t> tapped_;
    std::optional<std::size_t> open_;
    std::vector<RowModel*> rows_; ///< one for each row of the snapshot, group rows included
};

} // namespace settings
