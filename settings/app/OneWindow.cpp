#include "settings/app/OneWindow.h"

#include "programs/Program.h"
#include "programs/SessionBus.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <utility>

namespace settings {
namespace {

const QString kWindowPath = QStringLiteral("/org/lumora/settings");
const QString kWindowInterface = QStringLiteral("org.lumora.Settings");
const QString kNoSuchPage = QStringLiteral("org.lumora.Settings.Error.NoSuchPage");
constexpr int kAtMost = 1000;   ///< milliseconds for the bus
constexpr int kHandOver = 5000; ///< and for the other window, which may be drawing
constexpr uint kDoNotQueue = 4; ///< the bus's numbers
constexpr uint kExists = 3;

/// What lets the other window come to the front where the desktop keeps windows from doing so by themselves.
constexpr const char* kTokenInEnvironment = "XDG_ACTIVATION_TOKEN";
const QString kToken = QStringLiteral("activation-token");

QDBusMessage toBus(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

QString methodFor(const OneWindow::Asked& asked) {
    if (!asked.profile.isEmpty()) return QStringLiteral("OpenProfile");
    return asked.page.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open");
}

} // namespace

QString OneWindow::nameFor(const std::filesystem::path& bundle, const std::filesystem::path& ports) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const auto& path : {bundle, ports}) {
        const std::string text = std::filesystem::absolute(path).lexically_normal().string();
        hash.addData(QByteArrayView(text.data(), qsizetype(text.size() + 1))); // with the zero, which ends it
    }
    return QStringLiteral("org.lumora.settings.at") + QString::fromLatin1(hash.result().toHex().left(32));
}

OneWindow::OneWindow(QString name, std::function<bool(const Asked&)> activate)
    : name_(std::move(name)), activate_(std::move(activate)) {
    if (!programs::hasSessionBus()) return;
    QDBusConnection::sessionBus().registerVirtualObject(kWindowPath, this); // first, so that nobody calls in vain
    ask();
}

void OneWindow::ask() {
    QDBusMessage request = toBus(QStringLiteral("RequestName"));
    request << name_ << kDoNotQueue;
    asked_ = QDBusConnection::sessionBus().asyncCall(request, kAtMost);
}

/// A bus that does not answer has no other window either.
bool OneWindow::isTaken() {
    if (!asked_) return false;
    asked_->waitForFinished();
    const QDBusPendingReply<uint> reply = *asked_;
    return reply.isValid() && reply.value() == kExists;
}

std::optional<int> OneWindow::handOver(const Asked& asked) {
    for (int attempt = 0; attempt < 2 && isTaken(); ++attempt) {
        QDBusMessage call = QDBusMessage::createMethodCall(name_, kWindowPath, kWindowInterface, methodFor(asked));
        if (!asked.profile.isEmpty()) call << asked.profile;
        if (!asked.profile.isEmpty() || !asked.page.isEmpty()) call << asked.page;
        QVariantMap about;
        if (const QString token = qEnvironmentVariable(kTokenInEnvironment); !token.isEmpty()) about[kToken] = token;
        call << about;
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, kHandOver);
        if (reply.type() == QDBusMessage::ReplyMessage) return 0;
        if (reply.errorName() == kNoSuchPage)
            return programs::complain("there is no page class " + asked.page.toStdString());
        ask(); // the other process has just ended
    }
    return std::nullopt;
}

void OneWindow::release() {
    if (!asked_) return;
    QDBusMessage request = toBus(QStringLiteral("ReleaseName"));
    request << name_;
    QDBusConnection::sessionBus().call(request, QDBus::Block, kAtMost);
}

QString OneWindow::introspect(const QString& /*path*/) const {
    return QStringLiteral(R"(<interface name="org.lumora.Settings">
    <method name="Activate"><arg name="platform-data" type="a{sv}" direction="in"/></method>
    <method name="Open">
        <arg name="page" type="s" direction="in"/><arg name="platform-data" type="a{sv}" direction="in"/>
    </method>
    <method name="OpenProfile">
        <arg name="url" type="s" direction="in"/><arg name="page" type="s" direction="in"/>
        <arg name="platform-data" type="a{sv}" direction="in"/>
    </method>
</interface>)");
}

bool OneWindow::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const auto calls = [&](const char* method, const char* signature) {
        return message.member() == QLatin1String(method) && message.signature() == QLatin1String(signature);
    };
    const QVariantList arguments = message.arguments();
    Asked asked;
    if (message.interface() != kWindowInterface) return false;
    if (calls("OpenProfile", "ssa{sv}"))
        asked = {arguments[1].toString(), arguments[0].toString()};
    else if (calls("Open", "sa{sv}"))
        asked.page = arguments[0].toString();
    else if (!calls("Activate", "a{sv}"))
        return false;
    const QString token = qdbus_cast<QVariantMap>(arguments.last())[kToken].toString();
    if (!token.isEmpty()) qputenv(kTokenInEnvironment, token.toUtf8()); // where the toolkit looks for it
    const bool found = activate_(asked);
    connection.send(found ? message.createReply()
                          : message.createErrorReply(kNoSuchPage, QStringLiteral("no such page")));
    return true;
}

} // namespace settings
