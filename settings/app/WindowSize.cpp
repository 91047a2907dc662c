#include "settings/app/WindowSize.h"

#include "platform/foundation/UserFolder.h"
#include "programs/Size.h"

#include <QFile>
#include <QSaveFile>

#include <filesystem>
#include <string>
#include <system_error>

namespace settings {
namespace {

constexpr qint64 kMoreThanASize = 64; ///< bytes

std::filesystem::path file() {
    return platform::userFolder("XDG_STATE_HOME", ".local/state") / "lumora/window-size";
}

} // namespace

std::optional<platform::CGSize> keptWindowSize() {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(file(), unknown)) return std::nullopt; // a pipe would keep the start waiting
    QFile kept(QString::fromStdString(file().string()));
    if (!kept.open(QIODevice::ReadOnly)) return std::nullopt;
    const auto size = programs::sizeFrom(kept.read(kMoreThanASize).trimmed().toStdString());
    return size && size->width >= kSmallestWindow.width && size->height >= kSmallestWindow.height ? size : std::nullopt;
}

void keepWindowSize(platform::CGSize size) {
    std::error_code failed;
    std::filesystem::create_directories(file().parent_path(), failed);
    QSaveFile kept(QString::fromStdString(file().string()));
    if (failed || !kept.open(QIODevice::WriteOnly)) return;
    kept.write(QByteArray::number(int(size.width)) + "x" + QByteArray::number(int(size.height)) + "\n");
    kept.commit();
}

} // namespace settings
