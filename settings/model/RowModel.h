#pragma once

#ifndef Q_MOC_RUN // which cannot read concepts
#include "platform/preferences/PSSpecifier.h"
#endif
#include "settings/host/Event.h"
#include "settings/host/Snapshot.h"
#include "settings/model/RowValue.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace settings {

/// One row, as QML draws it. Its kind and its texts never change; its value does, with each snapshot. GUI thread.
///
/// Values come from another process and may be of any kind. One that does not fit reads as nil does: a switch is off, a
/// slider at its minimum, a field empty, an option list without a choice.
class RowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Rows come from snapshots")

    Q_PROPERTY(Cell cell READ cell CONSTANT)
    Q_PROPERTY(int position READ position CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString identifier READ identifier CONSTANT)
    Q_PROPERTY(QString placeholder READ placeholder CONSTANT)
    Q_PROPERTY(bool secure READ secure CONSTANT)
    Q_PROPERTY(double minimum READ minimum CONSTANT)
    Q_PROPERTY(double maximum READ maximum CONSTANT)
    Q_PROPERTY(double step READ step CONSTANT)
    Q_PROPERTY(bool showsValue READ showsValue CONSTANT)
    Q_PROPERTY(QVariant icon READ icon CONSTANT)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString accessibleDescription READ accessibleDescription NOTIFY remarkChanged)
    Q_PROPERTY(QString remark READ remark WRITE setRemark NOTIFY remarkChanged)
    Q_PROPERTY(QString mark READ mark WRITE setMark NOTIFY remarkChanged)

    Q_PROPERTY(bool on READ on NOTIFY valueRead)
    Q_PROPERTY(double number READ number NOTIFY valueRead)
    Q_PROPERTY(QString text READ text NOTIFY valueRead)
    Q_PROPERTY(QString valueTitle READ valueTitle NOTIFY valueRead)
    Q_PROPERTY(QString valueText READ valueText NOTIFY valueRead)
    Q_PROPERTY(bool marked READ marked NOTIFY valueRead)
    Q_PROPERTY(bool canReset READ canReset NOTIFY valueRead)
    Q_PROPERTY(bool changed READ isChanged NOTIFY valueRead)
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)

  public:
    /// The platform's kinds of rows. A row may also be of another kind.
    enum Cell : int {
        GroupCell = platform::PSGroupCell,
        LinkCell = platform::PSLinkCell,
        LinkListCell = platform::PSLinkListCell,
        ListItemCell = platform::PSListItemCell,
        SliderCell = platform::PSSliderCell,
        SwitchCell = platform::PSSwitchCell,
        StaticTextCell = platform::PSStaticTextCell,
        EditTextCell = platform::PSEditTextCell,
        SecureEditTextCell = platform::PSSecureEditTextCell,
        ButtonCell = platform::PSButtonCell,
    };
    Q_ENUM(Cell)

    /// What is around a row, for its accessible texts.
    struct Surroundings {
        QString header;
        QString footer;
        QString textAbove; ///< of the nearest static text before it in its group
    };

    RowModel(SendEvent send, std::size_t position, const RowSnapshot& row, const Surroundings& around, QObject* parent);

    [[nodiscard]] Cell cell() const { return static_cast<Cell>(row_.cell); }
    /// On the page, groups counted.
    [[nodiscard]] int position() const { return int(position_); }
    [[nodiscard]] QString title() const { return QString::fromStdString(row_.name); }
    [[nodiscard]] QString identifier() const { return QString::fromStdString(row_.identifier); }
    [[nodiscard]] QString placeholder() const { return QString::fromStdString(row_.placeholder); }
    [[nodiscard]] bool secure() const { return row_.cell == SecureEditTextCell; }
    [[nodiscard]] double minimum() const { return minimumOf(row_); }
    [[nodiscard]] double maximum() const { return maximumOf(row_); }
    /// Of a slider, by key.
    [[nodiscard]] double step() const;
    [[nodiscard]] bool showsValue() const { return row_.showValue.value_or(false); }
    [[nodiscard]] QString accessibleName() const { return accessibleName_; }
    [[nodiscard]] QString accessibleDescription() const;

    [[nodiscard]] bool on() const { return row_.value.boolValue(); }
    /// As it is stored, maybe beyond the bounds.
    [[nodiscard]] double number() const { return numberOf(row_); }
    [[nodiscard]] QString text() const { return fieldTextOf(row_); }
    [[nodiscard]] QString valueTitle() const { return QString::fromStdString(row_.valueTitle); }
    /// The value as the row shows it; empty for none, and for one that nobody is to see.
    [[nodiscard]] QString valueText() const;
    [[nodiscard]] bool marked() const { return row_.marked; }
    /// Its default is known, and another value than it has.
    [[nodiscard]] bool canReset() const;
    /// It has another value than when the page was opened.
    [[nodiscard]] bool isChanged() const { return changed_; }
    /// The page that it leads to is shown beside it.
    [[nodiscard]] bool isOpen() const { return open_; }
    void setOpen(bool open);
    /// What assistive tools are told of it first, for a while; empty for nothing.
    [[nodiscard]] const QString& remark() const { return remark_; }
    void setRemark(const QString& remark);
    /// What they are told next, as long as a sign at the row says so.
    [[nodiscard]] const QString& mark() const { return mark_; }
    void setMark(const QString& mark);
    /// Holds a platform::UIImageRef, for an IconItem; undefined for none.
    [[nodiscard]] QVariant icon() const { return row_.icon ? QVariant::fromValue(row_.icon) : QVariant(); }

    /// Whether the snapshot is of this row still: of the same kind and with the same texts.
    [[nodiscard]] bool isSameRow(const RowSnapshot& row) const;
    /// Takes up a newer snapshot of the same row.
    void read(const RowSnapshot& row, bool changed);

    Q_INVOKABLE void tap() { send_(RowTapped{position_}, {}); }
    Q_INVOKABLE void toggle(bool on) { change(on); }
    Q_INVOKABLE void slide(double number) { change(nearest(number)); }
    /// A hand is on a slider, which is not changed before slide(); and it has let go.
    Q_INVOKABLE void hold(double number) {
        emit begun();
        emit held(nearest(number));
    }
    Q_INVOKABLE void letGo() { emit released(); }
    /// A text is being typed, which is not changed before write().
    Q_INVOKABLE void begin() { emit begun(); }
    Q_INVOKABLE void write(const QString& text) { change(text.toStdString()); }
    /// Gives it its default.
    Q_INVOKABLE void reset();
    /// A slider's number as text beside it.
    Q_INVOKABLE [[nodiscard]] QString shown(double number) const { return shownNumber(row_, number); }
    /// What a hand can give a slider: a number within the bounds, as exact as the text beside it.
    Q_INVOKABLE [[nodiscard]] double nearest(double number) const;
    /// The multiple of the step, or of a finer one, so many steps away.
    Q_INVOKABLE [[nodiscard]] double stepped(double number, int steps, bool fine) const;

  signals:
    /// A snapshot has come, and all that the user has done is in it: controls settle on the value, even when it is the
    /// same as before.
    void valueRead();
    void openChanged();
    void remarkChanged();
    void begun();
    void held(double number);
    void released();

  private:
    void change(const platform::Value& value, bool resets = false);
    /// By how much the numbers that a hand can give a slider differ at least.
    [[nodiscard]] double unit() const;

    SendEvent send_;
    std::size_t position_;
    RowSnapshot row_;
    QString accessibleName_;
    QString accessibleDescription_;
    bool open_ = false;
    bool changed_ = false;
    QString remark_;
    QString mark_;
    int changesUnderWay_ = 0;
};

} // namespace settings
