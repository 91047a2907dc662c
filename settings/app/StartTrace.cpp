#include "settings/app/StartTrace.h"

#include "settings/app/Shell.h"

#include <QQuickWindow>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>

namespace settings {
namespace {

double residentMegabytes() {
    std::ifstream in("/proc/self/statm");
    long total = 0;
    long resident = 0;
    in >> total >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

void tell(const char* what, qint64 start) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const double milliseconds = double(std::chrono::nanoseconds(now).count() - start) / 1e6;
    std::fprintf(stderr, "%s %.1f ms, resident %.1f MB\n", what, milliseconds, residentMegabytes());
}

} // namespace

void traceStart(QQuickWindow& window, Shell& shell) {
    const qint64 start = qEnvironmentVariable("LUMORA_TRACE_START").toLongLong();
    if (start <= 0) return;
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &window, [start] { tell("first frame", start); },
        Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection));
    QObject::connect(
        &shell, &Shell::pagePushed, &window,
        [&window, start] {
            QObject::connect(
                &window, &QQuickWindow::frameSwapped, &window, [start] { tell("first page", start); },
                Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection));
        },
        Qt::SingleShotConnection);
}

} // namespace settings
