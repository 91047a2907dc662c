#pragma once

#ifndef Q_MOC_RUN // which cannot read concepts
#include "history/Timeline.h"
#include "settings/app/SettingNames.h"
#endif
#include "settings/app/LockScreen.h"
#include "settings/model/Shell.h"

#include <QAbstractListModel>
#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace settings {

/// The changes that the tweak keeps, the last one first, and a place among them that is moved about: the lock screen shows
/// the settings as they were there, while nothing is changed. GUI thread.
///
/// A place is the number of changes that have been made by then, from 0 up to `count`, which is the present.
class History : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY told)
    Q_PROPERTY(int place READ place WRITE setPlace NOTIFY moved)
    Q_PROPERTY(QString moment READ moment NOTIFY moved)
    Q_PROPERTY(int differing READ differing NOTIFY moved)

  public:
    enum Role : int { TitleRole = Qt::UserRole, PathRole, ChangeRole, TimeRole, DayRole, PossibleRole, LaterRole };

    /// An empty root is the program's own; the lock screen may be null.
    History(Shell& shell, LockScreen* lockScreen, std::filesystem::path root);
    ~History() override;

    /// Whether the tweak offers its history.
    Q_INVOKABLE [[nodiscard]] bool isOffered() const;
    /// Asks the tweak for all of it, and says that it is there, or why not.
    Q_INVOKABLE void open() { ask(true); }
    /// The lock screen shows the present again.
    Q_INVOKABLE void close();

    [[nodiscard]] int count() const;
    [[nodiscard]] int place() const;
    void setPlace(int place);
    /// When the last change was made before the place; empty in the present.
    [[nodiscard]] QString moment() const;
    /// How many settings restore() would change.
    [[nodiscard]] int differing() const { return int(restored_.size()); }
    /// Changes what differs from the settings at the place, as far as it is known and no passcode, as one change.
    Q_INVOKABLE void restore();
    /// Takes that change back, and no other one.
    Q_INVOKABLE void undo(int row);
    /// Whether it was asked for, and is there.
    [[nodiscard]] bool isComplete() const { return told_ && asking_ == 0; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  signals:
    /// All of it is there.
    void told();
    /// So it is, after open().
    void opened();
    void moved();

  private:
    struct Told;
    void ask(bool opens);
    void withPresent(std::function<void(const platform::Dictionary&)> work);
    void preview(const std::optional<platform::Dictionary>& settings);
    [[nodiscard]] const lumora::ChangeRecord& recordAt(int row) const;
    [[nodiscard]] platform::Value valueBefore(const lumora::ChangeRecord& record) const;
    [[nodiscard]] std::optional<SettingChange> undoing(int row) const;
    [[nodiscard]] std::vector<SettingChange> restoration() const;

    Shell& shell_;
    LockScreen* lockScreen_;
    std::filesystem::path root_;
    std::shared_ptr<Told> told_; ///< null before it is asked for
    std::vector<SettingChange> restored_;
    int asking_ = 0;
    bool previews_ = false; ///< the lock screen shows the past
};

} // namespace settings
