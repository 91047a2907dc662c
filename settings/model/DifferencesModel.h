#pragma once

#include "settings/host/UndoStack.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <utility>

namespace settings {

/// Settings that have one value and may get another, each of which the user can leave out. GUI thread.
class DifferencesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("What offers changes makes it")

    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(QStringList notes READ notes CONSTANT)
    Q_PROPERTY(int chosenCount READ chosenCount NOTIFY chosen)

  public:
    struct Difference {
        QString title;
        QString path{}; ///< of the pages that lead to its row; empty where they are the page that is shown
        QString now;    ///< the value, as its row shows it
        QString then;   ///< and the one that it gets
        int row = -1;   ///< of the page; -1 for its view
        bool possible = true;
        bool chosen = true;
        SettingChange change{}; ///< what comes of it, where no page does
    };
    enum Role : int { TitleRole = Qt::UserRole, PathRole, NowRole, ThenRole, PossibleRole, ChosenRole };

    /// `page` is the id of the page that differs; 0 for none.
    DifferencesModel(std::uint64_t page, QList<Difference> differences, QObject* parent);

    [[nodiscard]] std::uint64_t page() const { return page_; }

    /// What there is to say beside the differences, such as what is left out.
    [[nodiscard]] const QStringList& notes() const { return notes_; }
    void setNotes(QStringList notes) { notes_ = std::move(notes); }

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
    QStringList notes_;
};

} // namespace settings
