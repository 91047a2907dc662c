#pragma once

#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

namespace settings {

/// Has the program open one window for a device and its tweak: the first start takes a name on the session bus, and
/// later ones hand over to it. Where there is no session bus, each start has a window of its own. GUI thread.
///
///     auto& oneWindow = *new OneWindow(OneWindow::nameFor(bundle, ports), [&](const auto& asked) { … return true; });
///     if (const auto exitCode = oneWindow.handOver({.page = "AppsController"})) return *exitCode;
class OneWindow : public QDBusVirtualObject {
    Q_OBJECT

  public:
    /// What a start asks of the window.
    struct Asked {
        QString page{};    ///< its class, empty for none
        QString profile{}; ///< the URL of one to offer, empty for none
    };

    /// The name for a settings bundle and a folder of ports.
    [[nodiscard]] static QString nameFor(const std::filesystem::path& bundle, const std::filesystem::path& ports);

    /// Asks for the name, and does not wait for the answer. `activate` is called for each later start, with what it asks
    /// for; it says whether there is such a page.
    OneWindow(QString name, std::function<bool(const Asked& asked)> activate);

    /// Waits for that answer. If another process has the name, has its window come to the front and do what is asked for,
    /// and returns the exit code of this process; nothing if this process is to open a window.
    [[nodiscard]] std::optional<int> handOver(const Asked& asked);
    /// Lets a later start open a window, as this process is about to end.
    void release();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  private:
    void ask();
    [[nodiscard]] bool isTaken();

    QString name_;
    std::function<bool(const Asked& asked)> activate_;
    std::optional<QDBusPendingCall> asked_;
};

} // namespace settings
