#pragma once

#include <QDBusVariant>
#include <QObject>

namespace settings {

/// Follows what the user has chosen for the whole desktop, light or dark and the size of texts, through the desktop's
/// portal. Asks without waiting, and stays silent where there is no portal. GUI thread.
class DesktopLook : public QObject {
    Q_OBJECT

  public:
    explicit DesktopLook(QObject* parent = nullptr);

  signals:
    void darkChosen(bool dark);
    /// In percent of the usual size, within what `--text-size` takes.
    void textSizeChosen(int percent);

  private slots:
    void tell(const QString& area, const QString& key, const QDBusVariant& value);

  private:
    void ask(const QString& area, const QString& key);
};

} // namespace settings
