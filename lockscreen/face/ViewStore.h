#pragma once

#include "appview/ViewHost.h"

#include "lockscreen/Device.h"
#include "lockscreen/face/DrawingPainter.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// The drawings of App Views. The plug-in of the view that is shown draws in a process of its own, anew whenever its
/// place, its settings or the size of texts have changed or the time that it asked for has passed; its drawing is painted
/// on the thread that has asked for it. So nothing here waits. Drawings stay when their views are shown no more. GUI
/// thread.
class ViewStore : public QObject {
    Q_OBJECT

  public:
    enum class Fault : unsigned char { none, tooMuch, stopped };
    struct Drawn {
        QImage image; ///< null while nothing has been drawn
        QString caption;
        QString words; ///< all texts
        Fault fault = Fault::none;
    };

    explicit ViewStore(QObject* parent = nullptr);
    ~ViewStore() override;

    void setViews(const std::vector<AppViewInfo>& views);
    void setSettings(const platform::Dictionary& settings);
    /// A time that stands still, in place of the present one.
    void setTime(const std::optional<std::tm>& time) { time_ = time; }
    /// Of plug-ins that are shown from now on.
    void setLimits(const ViewHost::Limits& limits) { limits_ = limits; }
    /// 1 for the usual size of texts.
    void setTextScale(double scale);
    /// Whether anybody sees the screen.
    void setVisible(bool visible);

    /// Who shows a view shows this one from now on, if there is such a view and it draws. Of several that are shown, the
    /// last one draws.
    void show(const void* shower, const QString& identifier, const DrawingPlace& place);
    /// It shows none any more.
    void hide(const void* shower);
    /// Has one that has stopped draw again.
    void restart(const QString& identifier);

    [[nodiscard]] bool draws(const QString& identifier) const;
    [[nodiscard]] Drawn drawn(const QString& identifier) const;
    /// Whether no drawing is awaited.
    [[nodiscard]] bool isComplete() const;

  signals:
    /// What is drawn of a view; of all for an empty name.
    void changed(const QString& identifier);

  private:
    struct View;
    struct Painted;

    struct Shown {
        const void* shower;
        QString identifier;
        DrawingPlace place;
    };

    [[nodiscard]] QString seenName() const { return shown_.empty() ? QString() : shown_.back().identifier; }
    [[nodiscard]] View* seen();
    /// Once another view may be seen than this one.
    void turnFrom(const QString& before);
    /// Asks the view that is seen to draw, if something has changed, or anew.
    void ask(bool anew = false);
    void rest(View& view);
    void take(const QString& identifier, const Painted& painted);

    std::map<QString, std::unique_ptr<View>> views_;
    platform::Dictionary settings_;
    std::optional<std::tm> time_;
    ViewHost::Limits limits_;
    double textScale_ = 1;
    bool visible_ = true;
    std::vector<Shown> shown_; ///< the last one is seen
    QTimer again_;
    int hosts_ = 0; ///< that there have been
};

} // namespace lumora
