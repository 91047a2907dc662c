#pragma once

#include "lockscreen/Luminance.h"

#include "platform/foundation/Result.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace lumora {

/// What a backdrop is made of, and for which screen.
struct BackdropOrder {
    QString picture;  ///< the name of a wallpaper (Wallpapers.h), or any file
    QSize points;     ///< the screen
    double ratio = 1; ///< pixels to a point
    friend bool operator==(const BackdropOrder&, const BackdropOrder&) = default;
};

/// Images of pixels, without a ratio of their own.
struct BackdropPictures {
    QImage sharp; ///< opaque, as large as the screen
    QImage soft;  ///< the blur, a quarter as large (Blur.h)
    Luminance luminance;
    Luminance blurred; ///< of the blur
    double ratio = 1;  ///< pixels to a point
};

/// Reads the picture, cuts its middle to the screen's shape and blurs it. Takes a tenth of a second for a large screen.
/// Any thread.
[[nodiscard]] platform::Result<BackdropPictures> makeBackdrop(const BackdropOrder& order);

/// The picture behind everything, made for a screen: sharp, blurred and measured. Large pictures are shared, not copied,
/// as long as nobody writes to them. GUI thread.
class Backdrop : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

  public:
    explicit Backdrop(QObject* parent = nullptr);
    /// Waits for the picture that is being made.
    ~Backdrop() override;

    /// Makes the pictures on a thread of its own and then tells that they have changed(), or that it has failed(). Until
    /// then, and after a failure, the former ones stand. Of several orders only the last one counts.
    void order(const BackdropOrder& order);
    /// The same at once, for whoever cannot go on without the pictures.
    platform::Result<void> make(const BackdropOrder& order);

    /// Null until the first one is made.
    [[nodiscard]] const QImage& sharp() const { return pictures_.sharp; }
    [[nodiscard]] const QImage& soft() const { return pictures_.soft; }
    [[nodiscard]] const Luminance& luminance() const { return pictures_.luminance; }
    [[nodiscard]] const Luminance& blurred() const { return pictures_.blurred; }
    [[nodiscard]] double ratio() const { return pictures_.ratio; }

  signals:
    void changed();
    void failed(const QString& why);

  private:
    struct Numbered {
        BackdropOrder order;
        std::uint64_t number = 0;
    };

    void work(const std::stop_token& stop);
    void take(std::uint64_t number, platform::Result<BackdropPictures> made);

    BackdropPictures pictures_;
    std::uint64_t last_ = 0; ///< the number of the order that counts
    std::mutex mutex_;       ///< guards what waits
    std::condition_variable_any ordered_;
    std::optional<Numbered> waiting_;
    std::jthread worker_; ///< ends before the rest does
};

} // namespace lumora
