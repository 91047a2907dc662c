#pragma once

#include "lockscreen/SettingsFeed.h"
#include "lockscreen/face/Backdrop.h"
#include "lockscreen/face/FaceModel.h"
#include "lockscreen/face/FontWidths.h"
#include "lockscreen/face/IconStore.h"
#include "lockscreen/face/ViewStore.h"
#include "lockscreen/phone/Installation.h"
#include "lockscreen/phone/Phone.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// A lock screen that lives: the sample phone with what is installed on this device, the picture behind it, and the
/// tweak's settings as they change. GUI thread.
class LiveFace : public QObject {
    Q_OBJECT

  public:
    struct Options {
        PhoneOptions phone;
        std::string wallpaper = "dusk";
        double ratio = 1; ///< pixels to a point
        Behaviour::Log log = {};
        FaceModel::Clock clock = {}; ///< in place of the steady one
        double textScale = 1;        ///< of texts in App Views
        ViewHost::Limits drawing = {};
    };

    /// Has neither icons nor App Views until what is installed has been read.
    explicit LiveFace(Options options, QObject* parent = nullptr);
    ~LiveFace() override;

    [[nodiscard]] FaceModel* model() { return &model_; }
    /// Whether the picture for the screen as it is now has been made.
    [[nodiscard]] bool hasPicture() const;
    [[nodiscard]] const IconStore& icons() const { return icons_; }
    [[nodiscard]] const ViewStore& views() const { return views_; }
    [[nodiscard]] const Options& options() const { return options_; }
    /// Reads what is installed, on a thread of its own.
    void readInstallation();
    /// Follows the tweak, while the face is visible.
    void follow();
    void setVisible(bool visible);
    /// Shows these settings in place of the tweak's, which are not changed, until there are none. Turns to what differs
    /// from what it has shown, if wanted.
    void preview(std::optional<platform::Dictionary> settings, bool turns);
    /// Pixels to a point of the screen that the window is on.
    void setRatio(double ratio);
    /// How large texts in App Views are; 1 is usual.
    void setTextScale(double scale) { views_.setTextScale(scale); }
    /// What the installation is, at once; for pictures.
    void take(const std::shared_ptr<const Installation>& installation);
    /// Makes the picture for the present size at once.
    platform::Result<void> makeBackdrop();

  signals:
    /// What is installed is known.
    void installed();
    /// The face shows what the tweak has, of which these keys differ from before.
    void heard(const std::vector<std::string>& changed);
    /// The picture cannot be read.
    void failed(const QString& why);

  private:
    class Mailbox;

    [[nodiscard]] BackdropOrder backdropOrder() const;
    void chooseIcons();
    void orderBackdrop();
    void tick();
    void hear(const Heard& heard);

    Options options_;
    FontWidths texts_;
    Backdrop backdrop_;
    IconStore icons_;
    ViewStore views_;
    FaceModel model_;
    std::optional<Phone> phone_;
    bool hasHeard_ = false; ///< what the tweak has
    platform::Dictionary heard_{};
    std::optional<platform::Dictionary> previewed_;
    QTimer minute_;
    QTimer resting_; ///< from a change of the size until there is none at once
    std::optional<BackdropOrder> ordered_;
    std::shared_ptr<Mailbox> mailbox_;
    std::unique_ptr<SettingsFeed> feed_; ///< ends before what it tells
};

} // namespace lumora
