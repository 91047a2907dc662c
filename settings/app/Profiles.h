#pragma once

#include "settings/app/LockScreen.h"
#include "settings/model/DifferencesModel.h"
#include "settings/model/Shell.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <filesystem>
#include <functional>
#include <vector>

namespace settings {

/// Takes profiles from files and writes them. What a file would change is offered first, and shown by the lock screen,
/// while nothing is changed. Waits for neither file nor tweak. GUI thread.
class Profiles : public QObject {
    Q_OBJECT

  public:
    /// An empty root is the program's own; the lock screen may be null.
    Profiles(Shell& shell, LockScreen* lockScreen, std::filesystem::path root);

    /// Reads that file and offers what it would change, or says why not.
    Q_INVOKABLE void open(const QUrl& file);
    /// Writes what differs from the tweak's defaults, and says how that went.
    Q_INVOKABLE void save(const QUrl& file);
    /// Shows on the lock screen what is chosen of an offer, in place of what there is.
    Q_INVOKABLE void preview(settings::DifferencesModel* offer);
    Q_INVOKABLE void endPreview();
    /// Changes what is chosen of an offer, a message for each, as one change of that title.
    Q_INVOKABLE void apply(settings::DifferencesModel* offer, const QString& title);
    /// Whether files were read, and none is being read.
    [[nodiscard]] bool isComplete() const { return hasRead_ && reading_ == 0; }

  signals:
    /// QML owns the offer.
    void offered(settings::DifferencesModel* offer, const QString& title);

  private:
    Shell& shell_;
    LockScreen* lockScreen_;
    std::filesystem::path root_;
    platform::Dictionary present_; ///< the settings when a profile was offered last
    int reading_ = 0;
    bool hasRead_ = false;
};

/// Changes these settings as one change of that title, and says what has come of it: those words, if all are made. Then
/// calls `done`, unless it is null.
void applyAndTell(Shell& shell, const QString& title, std::vector<SettingChange> changes, const QString& words,
                  std::function<void()> done = {});

} // namespace settings
