#include "settings/app/WindowSize.h"

#include "platform/foundation/UserFolder.h"
#include "programs/Size.h"
#include "settings/app/Options.h"
#include "settings/model/Panes.h"

#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <system_error>

namespace settings {
namespace {

constexpr qint64 kMoreThanALine = 64; ///< bytes
constexpr const char* kSizeFile = "window-size";
constexpr const char* kColumnsFile = "window-columns";
constexpr const char* kMarksFile = "window-marks";
/// With room for list, page and lock screen, and for list and page; and how wide the screen is from which on.
constexpr platform::CGSize kThreePanes{1240, 900};
constexpr double kScreenForThree = 1280;
constexpr platform::CGSize kTwoPanes{1000, 844};
constexpr double kScreenForTwo = 1024;
constexpr double kPhoneSide = 600; ///< the shorter side of a phone's screen is less

std::filesystem::path fileOf(const char* name) {
    return platform::userFolder("XDG_STATE_HOME", ".local/state") / "lumora" / name;
}

/// Empty if nothing was kept.
std::string keptLine(const char* name) {
    const std::filesystem::path file = fileOf(name);
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(file, unknown)) return {}; // a pipe would keep the start waiting
    QFile kept(QString::fromStdString(file.string()));
    return kept.open(QIODevice::ReadOnly) ? kept.read(kMoreThanALine).trimmed().toStdString() : std::string();
}

void keepLine(const char* name, const QByteArray& line) {
    const std::filesystem::path file = fileOf(name);
    std::error_code failed;
    std::filesystem::create_directories(file.parent_path(), failed);
    QSaveFile kept(QString::fromStdString(file.string()));
    if (failed || !kept.open(QIODevice::WriteOnly)) return;
    kept.write(line + '\n');
    kept.commit();
}

} // namespace

std::optional<platform::CGSize> keptWindowSize() {
    const auto size = programs::sizeFrom(keptLine(kSizeFile));
    return size && size->width >= kSmallestWindow.width && size->height >= kSmallestWindow.height ? size : std::nullopt;
}

void keepWindowSize(platform::CGSize size) {
    keepLine(kSizeFile, QByteArray::number(int(size.width)) + "x" + QByteArray::number(int(size.height)));
}

platform::CGSize firstWindowSize(platform::CGSize screen) {
    const auto within = [&](platform::CGSize size) {
        return platform::CGSize{std::min(size.width, std::max(screen.width, kSmallestWindow.width)),
                                std::min(size.height, std::max(screen.height, kSmallestWindow.height))};
    };
    if (screen.width >= kScreenForThree) return within(kThreePanes);
    if (std::min(screen.width, screen.height) < kPhoneSide) return within(screen);
    return within(screen.width >= kScreenForTwo ? kTwoPanes : kUsualSize);
}

KeptColumns keptColumns() {
    std::istringstream line(keptLine(kColumnsFile));
    KeptColumns kept;
    line >> kept.columns >> kept.divider;
    const bool isOne = line && line.eof() && (kept.columns == 1 || kept.columns == 2) &&
                       (kept.divider == 0 || (kept.divider >= Panes::kNarrowest && kept.divider <= Panes::kWidest));
    return isOne ? kept : KeptColumns();
}

void keepColumns(const KeptColumns& columns) {
    keepLine(kColumnsFile, QByteArray::number(columns.columns) + ' ' + QByteArray::number(columns.divider));
}

bool keptMarks() {
    return keptLine(kMarksFile) == "1";
}

void keepMarks(bool marks) {
    keepLine(kMarksFile, marks ? "1" : "0");
}

} // namespace settings
