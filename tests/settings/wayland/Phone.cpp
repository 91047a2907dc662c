#include "tests/settings/wayland/Phone.h"

#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>
#include <QWaylandBufferRef>
#include <QWaylandClient>
#include <QWaylandInputMethodControl>
#include <QWaylandOutputMode>
#include <QWaylandSurface>
#include <QWaylandView>
#include <QWaylandXdgSurface>

#include <gtest/gtest.h>

#include <wayland-server-core.h>

#include <cstdint>
#include <string_view>

namespace tests {

namespace {

constexpr QSize kUpright(390, 844);

/// Takes what the application asks for, and sends what it is told, which happens when a loop of events pauses.
void serve() {
    QEventLoop loop;
    QTimer::singleShot(5, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

Phone::Phone(const QStringList& words, int scale) : scale_(scale) {
    qputenv("XDG_RUNTIME_DIR", folder_.path().toUtf8());
    compositor_.setSocketName("phone");
    compositor_.create();
    const QWaylandOutputMode mode(kUpright * scale, 60'000);
    output_.addMode(mode, true);
    output_.setCurrentMode(mode);
    output_.setScaleFactor(scale);
    item_.setOutput(&output_);
    QObject::connect(&shell_, &QWaylandXdgShell::toplevelCreated, &shell_,
                     [this](QWaylandXdgToplevel* toplevel, QWaylandXdgSurface* window) {
                         toplevel_ = toplevel;
                         item_.setSurface(window->surface());
                         toplevel->sendFullscreen(kUpright);
                         item_.takeFocus();
                         QObject::connect(window->surface(), &QWaylandSurface::redraw, &output_, [this] {
                             output_.frameStarted();
                             output_.sendFrameCallbacks();
                         });
                     });

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "QT_QPA_PLATFORM", "QT_IM_MODULE"})
        environment.remove(name);
    environment.insert("WAYLAND_DISPLAY", "phone");
    application_.setProcessEnvironment(environment);
    application_.setProcessChannelMode(QProcess::ForwardedChannels);
    application_.start(LUMORA_BINARIES "/lumora-settings", QStringList{"--root", LUMORA_TEST_ROOT, "--light"} + words);
    await([this] { return !picture().isNull(); }, "the window");
    awaitRest();
}

Phone::~Phone() {
    application_.kill();
    application_.waitForFinished();
}

void Phone::await(const std::function<bool()>& holds, const std::string& what) {
    const auto end = std::chrono::steady_clock::now() + kLongEnough;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error(what + " did not come");
        serve();
    }
}

QImage Phone::picture() {
    item_.view()->advance();
    return item_.view()->currentBuffer().image();
}

void Phone::awaitRest() {
    QImage before;
    auto since = std::chrono::steady_clock::now();
    await(
        [&] {
            const auto now = std::chrono::steady_clock::now();
            QImage shown = picture().copy();
            if (shown != before) since = now;
            before = std::move(shown);
            return now - since > std::chrono::milliseconds(600);
        },
        "rest");
}

void Phone::drag(QPointF from, QPointF to, int moves) {
    press(from);
    for (int i = 1; i <= moves; ++i)
        move(from + (to - from) * i / moves);
    lift(to);
}

void Phone::touch(int finger, QPointF at, Qt::TouchPointState state) {
    QWaylandSurface* surface = item_.surface();
    compositor_.defaultSeat()->sendTouchPointEvent(surface, finger, at, state);
    compositor_.defaultSeat()->sendTouchFrameEvent(surface->client());
    serve();
}

void Phone::write(const QString& text) {
    for (const QChar character : text) {
        const int key = character == '\r' ? int(Qt::Key_Return) : character.toUpper().unicode();
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, character);
        compositor_.defaultSeat()->sendFullKeyEvent(&press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, character);
        compositor_.defaultSeat()->sendFullKeyEvent(&release);
    }
}

bool Phone::wantsKeyboard() {
    return item_.surface()->inputMethodControl()->property("enabled").toBool(); // its own function is not exported
}

void Phone::cover(QRect keyboard) {
    // The display's library tells only of a keyboard that it shows itself.
    wl_client_for_each_resource(
        item_.surface()->client()->client(),
        [](wl_resource* resource, void* place) {
            constexpr std::uint32_t kPanelState = 2; // the number of the event input_panel_state
            const auto& at = *static_cast<const QRect*>(place);
            if (std::string_view(wl_resource_get_class(resource)) == "zwp_text_input_v2")
                wl_resource_post_event(resource, kPanelState, at.isEmpty() ? 0 : 1, at.x(), at.y(), at.width(),
                                       at.height());
            return WL_ITERATOR_CONTINUE;
        },
        &keyboard);
    wl_display_flush_clients(compositor_.display());
}

void Phone::turn(QSize size) {
    toplevel_->sendFullscreen(size);
    await([&] { return picture().size() == size * scale_; }, "the other size");
}

int Phone::close() {
    toplevel_->sendClose();
    await([this] { return application_.state() == QProcess::NotRunning; }, "its end");
    return application_.exitStatus() == QProcess::NormalExit ? application_.exitCode() : -1;
}

} // namespace tests
