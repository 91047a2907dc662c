#pragma once

#include "platform/foundation/Value.h"
#include "search/Search.h"
#include "settings/host/Landing.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string>
#include <vector>

namespace settings {

/// Search as QML draws it: what is looked for, and a list model of what has been found, grouped by page, the page of the
/// best result first. Keeps query and results when nobody looks, so that whoever comes back finds them. GUI thread.
class SearchModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one search")

    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY found)
    Q_PROPERTY(int count READ count NOTIFY found)
    Q_PROPERTY(bool more READ more NOTIFY found)
    Q_PROPERTY(bool similar READ similar NOTIFY found)
    Q_PROPERTY(int total READ total NOTIFY found)
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)
    Q_PROPERTY(QString announcement READ announcement NOTIFY currentChanged)

  public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] const QString& query() const { return query_; }
    void setQuery(const QString& query);
    [[nodiscard]] int count() const { return int(results_.size()); }
    /// There are more results than are shown.
    [[nodiscard]] bool more() const { return more_; }
    /// Nothing fits as it was typed: a mistake is forgiven in each result.
    [[nodiscard]] bool similar() const { return similar_; }
    /// How much can be found; 0 while there is no index.
    [[nodiscard]] int total() const { return int(index_.entries().size()); }
    /// The result that Enter opens, -1 for none.
    [[nodiscard]] int current() const { return current_; }
    void setCurrent(int result);
    /// What a screen reader says of the results: how many there are, and the current one.
    [[nodiscard]] QString announcement() const;

    /// Looks through that index from now on, and for the same words at once.
    void setIndex(const search::Index& index);
    /// Shows values of these settings beside the results; nil shows none.
    void setSettings(platform::Value settings);

    /// Somebody comes to look: whoever brings index and settings may bring newer ones.
    Q_INVOKABLE void open() { emit opened(); }
    /// Goes to the row of a result.
    Q_INVOKABLE void choose(int result);
    /// Of a result, where to go; nothing for none.
    [[nodiscard]] std::optional<Landing> landingOf(int result) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  signals:
    void found();
    void currentChanged();
    void opened();
    void chosen(const settings::Landing& landing);

  private:
    struct Result {
        search::Hit hit;
        bool first = false; ///< of its page
        bool last = false;
    };
    void look();
    void show(std::vector<Result> results);
    [[nodiscard]] QString pathOf(const Result& result) const;
    [[nodiscard]] QString plainPathOf(const Result& result) const;
    [[nodiscard]] bool isThere(const search::Entry& entry) const;
    [[nodiscard]] QString valueOf(const search::Entry& entry) const;
    [[nodiscard]] const search::Entry& entryOf(const Result& result) const {
        return index_.entries()[result.hit.entry];
    }

    QString query_;
    search::Index index_;
    platform::Value settings_;
    std::vector<Result> results_;
    bool more_ = false;
    bool similar_ = false;
    int current_ = -1;
};

} // namespace settings
