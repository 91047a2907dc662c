#include "settings/app/DesktopLook.h"

#include "settings/app/Options.h"
#include "settings/app/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <cmath>

namespace settings {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kColors = QStringLiteral("org.freedesktop.appearance");
const QString kDark = QStringLiteral("color-scheme");
const QString kTexts = QStringLiteral("org.gnome.desktop.interface");
const QString kSize = QStringLiteral("text-scaling-factor");

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
    ask(kColors, kDark);
    ask(kTexts, kSize);
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
    if (area == kColors && key == kDark) emit darkChosen(told.toUInt() == 1); // the portal's number for "prefers dark"
    if (area != kTexts || key != kSize) return;
    // A text, or what is not a number, is no size and changes nothing.
    if (const double factor = told.toDouble(); factor > 0)
        emit textSizeChosen(int(std::lround(std::clamp<double>(factor * 100, kSmallestTexts, kLargestTexts))));
}

} // namespace settings
