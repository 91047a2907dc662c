#pragma once

#include <QDBusVariant>
#include <QObject>

class QDBusPendingCallWatcher;

namespace settings {

/// Follows the desktop's choice between light and dark, through its portal where there is one. Asks without waiting;
/// where nothing answers, nothing is ever told. GUI thread.
class DesktopColorScheme : public QObject {
    Q_OBJECT

  public:
    explicit DesktopColorScheme(QObject* parent = nullptr);

  signals:
    void darkChosen(bool dark);

  private slots:
    void settingChanged(const QString& area, const QString& key, const QDBusVariant& value);

  private:
    void answered(QDBusPendingCallWatcher* call);
};

} // namespace settings
