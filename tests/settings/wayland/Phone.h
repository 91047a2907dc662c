#pragma once

#include "tests/support/Waiting.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QWaylandCompositor>
#include <QWaylandOutput>
#include <QWaylandQuickItem>
#include <QWaylandSeat>
#include <QWaylandTextInputManager>
#include <QWaylandXdgShell>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

namespace tests {

/// A phone with a Wayland display and the Settings application on it, full-screen. Nobody sees the display: what the
/// window shows is taken from its buffers. The first thread, which runs the events of the display while it waits.
class Phone {
  public:
    /// Starts the application with these words; each point of its window has scale × scale pixels.
    explicit Phone(const QStringList& words, int scale = 1);
    ~Phone();
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    /// Runs events until the condition holds; throws, and says what did not come, when it never does.
    static void await(const std::function<bool()>& holds, const std::string& what);

    /// What the window shows now; null before it shows anything.
    [[nodiscard]] QImage picture();
    /// Waits until what the window shows has stood still for a moment.
    void awaitRest();

    /// Fingers, in points of the window. Each call is one frame of the touch screen.
    void press(QPointF at, int finger = 0) { touch(finger, at, Qt::TouchPointPressed); }
    void move(QPointF to, int finger = 0) { touch(finger, to, Qt::TouchPointMoved); }
    void lift(QPointF at, int finger = 0) { touch(finger, at, Qt::TouchPointReleased); }
    void tap(QPointF at, int finger = 0) {
        press(at, finger);
        lift(at, finger);
    }
    void drag(QPointF from, QPointF to, int moves);
    /// Keys of the keyboard on the screen.
    void write(const QString& text);
    /// Whether the keyboard on the screen is wanted.
    [[nodiscard]] bool wantsKeyboard();
    /// Has the keyboard on the screen cover that part of the window, which keeps its size; an empty one hides it.
    void cover(QRect keyboard);
    /// Turns the phone on its side, or back.
    void turn(QSize size);

    /// Closes the window as the display does; the exit code of the application.
    int close();

  private:
    void touch(int finger, QPointF at, Qt::TouchPointState state);

    int scale_;
    QTemporaryDir folder_;
    QWaylandCompositor compositor_;
    QWaylandXdgShell shell_{&compositor_};
    QWaylandTextInputManager texts_{&compositor_};
    QWaylandOutput output_{&compositor_, nullptr};
    QWaylandQuickItem item_; ///< in no scene: it gives the window the focus of all kinds
    QWaylandXdgToplevel* toplevel_ = nullptr;
    QProcess application_;
};

} // namespace tests
