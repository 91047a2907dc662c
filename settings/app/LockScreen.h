#pragma once

#ifndef Q_MOC_RUN // which cannot read concepts
#include "lockscreen/face/LiveFace.h"
#endif
#include "platform/ui/CGGeometry.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace settings {

/// The lock screen that the window shows beside its pages, or in a window of its own. There is none before it is shown
/// first. It turns to what is edited, and shows the value under a hand before the tweak has it. GUI thread.
class LockScreen : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY shownChanged)
    Q_PROPERTY(double ratio READ ratio WRITE setRatio NOTIFY ratioChanged)

  public:
    /// One that stands still shows the same time in all pictures.
    explicit LockScreen(bool standsStill, QObject* parent = nullptr);
    ~LockScreen() override;

    /// How much of a window's width is the lock screen's, in points; 0 where it has no place beside the pages.
    [[nodiscard]] static double widthIn(platform::CGSize window);
    Q_INVOKABLE [[nodiscard]] double widthIn(double width, double height) const { return widthIn({width, height}); }

    /// A lumora::FaceModel, which is made when it is first asked for.
    Q_INVOKABLE [[nodiscard]] QObject* face();

    /// Whether anybody can see it; it follows the tweak only then.
    [[nodiscard]] bool isShown() const { return shown_; }
    void setShown(bool shown);
    /// Pixels to a point of the screen that it is on.
    [[nodiscard]] double ratio() const { return ratio_; }
    void setRatio(double ratio);
    /// Shows these settings in place of the tweak's until there are none.
    void preview(std::optional<platform::Dictionary> settings);
    /// How large texts in App Views are, in percent of the usual size.
    void setTextSize(int percent);
    /// Whether it shows everything that there is to show.
    [[nodiscard]] bool isComplete() const;

    /// A hand has a control at that number, which the tweak does not know yet.
    void hold(const QString& key, double number);
    /// The hand has let go. The number stays until the tweak tells of that key, or has had the time to.
    void letGo(const QString& key);

  signals:
    void shownChanged();
    void ratioChanged();

  private:
    void hear(const std::vector<std::string>& changed);
    void forget(const std::string& key);

    bool standsStill_;
    std::optional<platform::Dictionary> previewed_;
    bool shown_ = false;
    double ratio_ = 1;
    double textScale_ = 1;
    bool hasHeard_ = false;
    bool isInstalled_ = false; ///< what is installed is known
    std::unique_ptr<lumora::LiveFace> live_;
    std::map<std::string, QTimer> released_; ///< keys of which the tweak is yet to tell
};

} // namespace settings
