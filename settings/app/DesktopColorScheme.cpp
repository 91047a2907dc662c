#include "settings/app/DesktopColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace settings {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kArea = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

/// Without an address the connection would look for, or even start, a bus of its own accord, and wait for it.
bool hasSessionBus() {
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
}

/// The portal's number for "prefers dark". Older portals put the number into one variant too many.
bool isDark(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt() == 1;
}

} // namespace

DesktopColorScheme::DesktopColorScheme(QObject* parent) : QObject(parent) {
    if (!hasSessionBus()) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage read = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    read << kArea << kKey;
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, &DesktopColorScheme::answered);
}

void DesktopColorScheme::answered(QDBusPendingCallWatcher* call) {
    const QDBusPendingReply<QDBusVariant> reply = *call;
    if (reply.isValid()) emit darkChosen(isDark(reply.value().variant()));
    call->deleteLater();
}

void DesktopColorScheme::settingChanged(const QString& area, const QString& key, const QDBusVariant& value) {
    if (area == kArea && key == kKey) emit darkChosen(isDark(value.variant()));
}

} // namespace settings
