#pragma once

#include <QObject>
#include <QPointF>

namespace settings {

/// Keeps the second half of a double click, or of a double tap, from the page that the first half has opened. GUI thread.
///
///     auto& doubleClicks = *new DoubleClicks(&shell);
///     connect(&shell, &Shell::pagePushed, &doubleClicks, &DoubleClicks::noteOpened);
///     window.installEventFilter(&doubleClicks);
class DoubleClicks : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;
    /// A page has opened.
    void noteOpened() { opened_ = true; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] bool takesPress(quint64 time, QPointF place, int distance);

    quint64 time_ = 0; ///< of the last press as the display tells it, in milliseconds
    QPointF place_;
    bool opened_ = false; ///< a page, since the first of the presses
    bool takes_ = false;  ///< the press that is under way
};

} // namespace settings
