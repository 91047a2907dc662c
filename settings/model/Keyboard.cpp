#include "settings/model/Keyboard.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQmlEngine>

#include <optional>
#include <utility>

namespace settings {
namespace {

/// A key that does nothing by itself.
bool isModifier(int key) {
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
           key == Qt::Key_Super_R;
}

/// What a letter tells: with Shift, Caps Lock makes it a small one.
std::optional<bool> capsLockBy(const QKeyEvent& key) {
    const QString text = key.text();
    if (text.size() != 1 || key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) return std::nullopt;
    const QChar letter = text.front();
    if (letter.isUpper() == letter.isLower()) return std::nullopt;
    return letter.isUpper() != key.modifiers().testFlag(Qt::ShiftModifier);
}

} // namespace

Keyboard::Keyboard(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

Keyboard* Keyboard::create(QQmlEngine* engine, QJSEngine* /*script*/) {
    return new Keyboard(engine);
}

bool Keyboard::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWindowType()) return false;
    switch (event->type()) {
    case QEvent::ShortcutOverride: // comes before a shortcut
        compare(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::KeyPress:
        compare(*static_cast<QKeyEvent*>(event));
        note(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::KeyRelease:
        released_ = static_cast<QKeyEvent*>(event)->key();
        releasedAt_ = static_cast<QKeyEvent*>(event)->timestamp();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        set(inUse_, false);
        break;
    default:
        break;
    }
    return false;
}

void Keyboard::note(const QKeyEvent& key) {
    if (!isModifier(key.key())) set(inUse_, true);
    // Pressed while it is on, it goes off. Whether it goes on is left to the next letter.
    if (key.key() == Qt::Key_CapsLock) set(capsLock_, false);
    if (const std::optional<bool> told = capsLockBy(key)) set(capsLock_, *told);
}

void Keyboard::compare(const QKeyEvent& key) {
    static const bool onX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    const bool isAtOnce = releasedAt_ != 0 && key.key() == released_ && key.timestamp() == releasedAt_;
    repeats_ = key.isAutoRepeat() || (onX11 && isAtOnce);
}

void Keyboard::set(bool& part, bool value) {
    if (std::exchange(part, value) != value) emit changed();
}

} // namespace settings
