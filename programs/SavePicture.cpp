#include "programs/SavePicture.h"

#include <QSaveFile>
#include <QString>

namespace programs {

bool savePicture(const QImage& picture, const std::filesystem::path& file) {
    const QString name = QString::fromStdString(file.string());
    std::error_code unknown;
    const auto type = std::filesystem::symlink_status(file, unknown).type();
    if (type != std::filesystem::file_type::regular && type != std::filesystem::file_type::not_found)
        return picture.save(name, "PNG");
    QSaveFile whole(name);
    whole.setDirectWriteFallback(true); // for a file in a folder that takes no second one
    return whole.open(QIODevice::WriteOnly) && picture.save(&whole, "PNG") && whole.commit();
}

} // namespace programs
