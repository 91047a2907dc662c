#include "programs/Display.h"

#include "programs/Program.h"
#include "programs/WaylandSeat.h"

#include <QByteArray>
#include <QQuickWindow>

#include <cstdlib>

namespace programs {
namespace {

/// Or the toolkit has been told where to draw.
bool hasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

} // namespace

bool savesPicturesOnly(const std::optional<std::filesystem::path>& grab, std::optional<std::filesystem::path>& tour,
                       const char* folder) {
    if (!grab && !tour && !hasDisplay()) {
        tour = folder;
        complain("there is no display to open a window on (neither DISPLAY nor WAYLAND_DISPLAY is set); saving "
                 "pictures in " +
                 std::filesystem::absolute(folder).string() + " instead");
    }
    return grab || tour;
}

void prepareDrawing(bool picturesOnly, const std::string& renderer) {
    constexpr int kUnlessSet = 0; // by the user, who goes first in everything
    // Drawing without a graphics driver takes less than half of the memory, and the page is on the screen sooner.
    setenv("QT_QUICK_BACKEND", renderer == "gpu" ? "rhi" : "software", renderer == "auto" ? kUnlessSet : 1);
    // The basic loop draws every change at once. The threaded loop keeps a pace of 60 frames a second, which no display
    // asks of software, and a drag would lag by a frame; the GUI thread is never busy for long.
    setenv("QSG_RENDER_LOOP", "basic", kUnlessSet);
    // The toolkit would keep what it compiles in the user's cache and trust what it finds there: a file that a full disk
    // has cut short would end every later start. Our pages are compiled by the build, so nothing is to be kept, and
    // nothing can be kept here. The variable that forbids keeping would have the pages compiled at each start as well.
    setenv("QML_DISK_CACHE_PATH", "/dev/null", kUnlessSet);
    if (!hasDisplay()) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && waylandLacksSeat())
        setenv("QT_IM_MODULE", "none", kUnlessSet);
    if (picturesOnly) setenv("QT_SCALE_FACTOR", "1", kUnlessSet);
}

void failWithoutRenderer(QQuickWindow& window) {
    QObject::connect(
        &window, &QQuickWindow::sceneGraphError, &window,
        [](QQuickWindow::SceneGraphError, const QString& why) {
            complain("the renderer cannot draw: " + why.simplified().toStdString());
            end(1);
        },
        Qt::DirectConnection);
}

} // namespace programs
