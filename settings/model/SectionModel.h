#pragma once

#include "settings/host/Snapshot.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace settings {

/// A section of a table, as QML draws it: its header and footer, and a list model of its rows in view. A row that stays
/// in view keeps its item, whatever comes and goes around it. Lengths are in points, places in the table. GUI thread.
class SectionModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Sections come from snapshots")

    Q_PROPERTY(QString header READ header NOTIFY textChanged)
    Q_PROPERTY(QString footer READ footer NOTIFY textChanged)
    Q_PROPERTY(double top READ top NOTIFY placed)
    Q_PROPERTY(double footerTop READ footerTop NOTIFY placed)
    Q_PROPERTY(double rowHeight READ rowHeight NOTIFY placed)
    Q_PROPERTY(int total READ total NOTIFY placed)
    Q_PROPERTY(bool empty READ empty NOTIFY placed)
    Q_PROPERTY(double headerHeight MEMBER headerHeight_ NOTIFY measured)
    Q_PROPERTY(double footerHeight MEMBER footerHeight_ NOTIFY measured)

  public:
    struct Row {
        int row = 0;   ///< in the section
        int place = 0; ///< in the table
        double top = 0;
        bool first = false;
        bool last = false;
        CellSnapshot cell;
        friend bool operator==(const Row&, const Row&) = default;
    };
    struct Place {
        double top = 0;
        double footerTop = 0;
        double rowHeight = 0;
        int total = 0;
        bool empty = false; ///< no row stands in it, not even one that is in the hand
        friend bool operator==(const Place&, const Place&) = default;
    };

    SectionModel(const platform::TableSection& section, QObject* parent);

    [[nodiscard]] QString header() const { return header_; }
    [[nodiscard]] QString footer() const { return footer_; }
    [[nodiscard]] double top() const { return place_.top; }
    [[nodiscard]] double footerTop() const { return place_.footerTop; }
    [[nodiscard]] double rowHeight() const { return place_.rowHeight; }
    [[nodiscard]] int total() const { return place_.total; }
    [[nodiscard]] bool empty() const { return place_.empty; }
    /// As drawn; before that, what the snapshot supposes.
    [[nodiscard]] double headerHeight() const { return headerHeight_; }
    [[nodiscard]] double footerHeight() const { return footerHeight_; }

    void read(const platform::TableSection& section);
    void put(const Place& place);
    /// Takes the rows in view, in order.
    void show(std::vector<Row> rows);
    /// The row in view at that position in the section, null for none.
    [[nodiscard]] const Row* find(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  signals:
    void textChanged();
    void placed();
    void measured();

  private:
    QString header_;
    QString footer_;
    double headerHeight_;
    double footerHeight_;
    Place place_;
    std::vector<Row> rows_;
};

} // namespace settings
