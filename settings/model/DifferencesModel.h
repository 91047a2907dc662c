#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <cstdint>

namespace settings {

/// Settings that have one value and may get another, each of which the user can leave out. GUI thread.
class DifferencesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("What offers changes makes it")

    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(int chosenCount READ chosenCount NOTIFY chosen)

  public:
    struct Difference {
        QString title;
        QString now;  ///< the value, as its row shows it
        QString then; ///< and the one that it gets
        int row = -1; ///< of the page; -1 for its view
        bool possible = true;
        bool chosen = true;
    };
    enum Role : int { TitleRole = Qt::UserRole, NowRole, ThenRole, PossibleRole, ChosenRole };

    /// `page` is the id of the page that differs.
    DifferencesModel(std::uint64_t page, QList<Difference> differences, QObject* parent);

    [[nodiscard]] std::uint64_t page() const { return page_; }

    [[nodiscard]] int count() const { return int(differences_.size()); }
    [[nodiscard]] int chosenCount() const;
    [[nodiscard]] const QList<Difference>& differences() const { return differences_; }
    Q_INVOKABLE void choose(int difference, bool chosen);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  signals:
    void chosen();

  private:
    std::uint64_t page_;
    QList<Difference> differences_;
};

} // namespace settings
