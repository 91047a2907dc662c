#include "lockscreen/face/Wallpapers.h"

#include <QCoreApplication>
#include <QDir>

namespace lumora {

QStringList wallpapers() {
    return {QStringLiteral("dusk"), QStringLiteral("day"), QStringLiteral("night")};
}

QString wallpaperFile(const QString& nameOrFile, bool landscape) {
    if (!wallpapers().contains(nameOrFile)) return nameOrFile;
    const QString shape = landscape ? QStringLiteral("landscape") : QStringLiteral("portrait");
    return QDir::cleanPath(
        QStringLiteral("%1/%2/%3-%4.jpg")
            .arg(QCoreApplication::applicationDirPath(), QStringLiteral(LUMORA_WALLPAPERS), nameOrFile, shape));
}

} // namespace lumora
