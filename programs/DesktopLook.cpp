#include "programs/DesktopLook.h"

#include "programs/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace programs {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kColors = QStringLiteral("org.freedesktop.appearance");
const QString kDark = QStringLiteral("color-scheme");
const QString kContrast = QStringLiteral("contrast");
const QString kReducedMotion = QStringLiteral("reduced-motion");
const QString kDesktop = QStringLiteral("org.gnome.desktop.interface");
const QString kSize = QStringLiteral("text-scaling-factor");
const QString kWidgets = QStringLiteral("gtk-theme");
const QString kAnimations = QStringLiteral("enable-animations");
const QString kAssistance = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString kHighContrast = QStringLiteral("high-contrast");

/// Older portals wrap their answer in one variant too many.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopLook::DesktopLook(QObject* parent) : QObject(parent) {
    if (!hasSessionBus()) return;
    qRegisterMetaType<QDBusVariant>(); // or the slot that takes one is not found
    QDBusConnection::sessionBus().connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                                          SLOT(tell(QString, QString, QDBusVariant)));
    for (const QString& key : {kDark, kContrast, kReducedMotion})
        ask(kColors, key);
    for (const QString& key : {kSize, kWidgets, kAnimations})
        ask(kDesktop, key);
    ask(kAssistance, kHighContrast);
}

void DesktopLook::ask(const QString& area, const QString& key) {
    QDBusMessage read = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    read << area << key;
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, area, key] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isValid()) tell(area, key, reply.value());
        call->deleteLater();
    });
}

void DesktopLook::tell(const QString& area, const QString& key, const QDBusVariant& value) {
    const QVariant told = unwrapped(value.variant());
    const auto is = [&](const QString& itsArea, const QString& itsKey) { return area == itsArea && key == itsKey; };
    const auto note = [&](std::set<QString>& wishes, bool wished) {
        wished ? void(wishes.insert(key)) : void(wishes.erase(key));
        return !wishes.empty();
    };
    // The portal's number for a preference is 1, be it for dark colours, more contrast or less motion.
    const bool preferred = told.toUInt() == 1;
    if (is(kColors, kDark)) emit darkChosen(preferred);
    if (is(kColors, kContrast)) emit moreContrastChosen(note(moreContrast_, preferred));
    if (is(kAssistance, kHighContrast)) emit moreContrastChosen(note(moreContrast_, told == true));
    if (is(kDesktop, kWidgets))
        emit moreContrastChosen(note(moreContrast_, told.toString().startsWith(QStringLiteral("HighContrast"))));
    if (is(kColors, kReducedMotion)) emit lessMotionChosen(note(lessMotion_, preferred));
    if (is(kDesktop, kAnimations)) emit lessMotionChosen(note(lessMotion_, told == false));
    // A text, or what is not a number, is no size and changes nothing.
    if (const double factor = told.toDouble(); is(kDesktop, kSize) && factor > 0) emit textSizeChosen(factor * 100);
}

} // namespace programs
