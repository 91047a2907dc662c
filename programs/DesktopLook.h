#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <set>

namespace programs {

/// Follows what the user has chosen for the whole desktop through its portal: light or dark, more contrast, less motion
/// and the size of texts. More contrast and less motion have several settings, each of which is enough. Asks without
/// waiting, and stays silent where there is no portal. GUI thread.
class DesktopLook : public QObject {
    Q_OBJECT

  public:
    explicit DesktopLook(QObject* parent = nullptr);

  signals:
    void darkChosen(bool dark);
    void moreContrastChosen(bool more);
    void lessMotionChosen(bool less);
    /// In percent of the usual size; any number above 0.
    void textSizeChosen(double percent);

  private slots:
    void tell(const QString& area, const QString& key, const QDBusVariant& value);

  private:
    void ask(const QString& area, const QString& key);

    std::set<QString> moreContrast_; ///< the settings that ask for it
    std::set<QString> lessMotion_;
};

} // namespace programs
