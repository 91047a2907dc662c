#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QKeyEvent;
class QQmlEngine;

namespace settings {

/// What the events of a window tell of its keyboard. GUI thread.
class Keyboard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(bool inUse READ inUse NOTIFY changed)
    Q_PROPERTY(bool capsLock READ capsLock NOTIFY changed)

  public:
    static Keyboard* create(QQmlEngine* engine, QJSEngine* script);

    /// The last press was of a key, and not of the mouse or a finger.
    [[nodiscard]] bool inUse() const { return inUse_; }
    /// Caps Lock is on, as far as letters have told: no event says so itself.
    [[nodiscard]] bool capsLock() const { return capsLock_; }
    /// Whether the key whose press is being told of is held, and was pressed before. The event itself does not always say
    /// so: X11 tells of a held key as of one that is let go and pressed again at the same time, and the toolkit may look
    /// too early to see both.
    [[nodiscard]] Q_INVOKABLE bool repeats() const { return repeats_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  signals:
    void changed();

  private:
    explicit Keyboard(QObject* parent);
    void note(const QKeyEvent& key);
    void compare(const QKeyEvent& key);
    void set(bool& part, bool value);

    bool inUse_ = false;
    bool capsLock_ = false;
    bool repeats_ = false;
    int released_ = 0;             ///< the last key, and
    unsigned long releasedAt_ = 0; ///< when, in milliseconds; 0 where a program that sends keys does not say
};

} // namespace settings
