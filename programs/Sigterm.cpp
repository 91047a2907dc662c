#include "programs/Sigterm.h"

#include <QSocketNotifier>

#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>

namespace programs {
namespace {

int arrived = -1; ///< readable once the signal has come; open until the process ends

void note(int /*signal*/) {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written =
        ::write(arrived, &one, sizeof one); // of all that helps, a handler may do this
}

} // namespace

void closeAtSigterm(QWindow& window) {
    arrived = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (arrived < 0) return; // the signal then ends the process, as any other does
    auto* notifier = new QSocketNotifier(arrived, QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [&window, notifier] {
        notifier->setEnabled(false);
        window.close();
    });
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    ::sigaction(SIGTERM, &action, nullptr);
}

} // namespace programs
