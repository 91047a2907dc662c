#pragma once

#include <QDBusVariant>
#include <QObject>

namespace settings {

/// Follows what the user has chosen for the whole desktop, light or dark and how large texts are, through the desktop's
/// portal where there is one. Asks without waiting; where nothing answers, nothing is ever told. GUI thread.
class DesktopLook : public QObject {
    Q_OBJECT

  public:
    explicit DesktopLook(QObject* parent = nullptr);

  signals:
    void darkChosen(bool dark);
    /// In percent of the usual size, within what `--text-size` takes.
    void textSizeChosen(int percent);

  private slots:
    void settingChanged(const QString& area, const QString& key, const QDBusVariant& value);

  private:
    void ask(const QString& area, const QString& key);
    void tell(const QString& area, const QString& key, const QVariant& value);
};

} // namespace settings
