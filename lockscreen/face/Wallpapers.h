#pragma once

#include <QString>
#include <QStringList>

namespace lumora {

/// The pictures that come with the program. Any thread.
[[nodiscard]] QStringList wallpapers();

/// The file of a wallpaper for an upright or a wide screen; what is no wallpaper's name is a file itself.
[[nodiscard]] QString wallpaperFile(const QString& nameOrFile, bool landscape);

} // namespace lumora
