/// The window on the real bundle, with a person at it.
#pragma once

#include "settings/model/Panes.h"
#include "settings/model/SearchModel.h"
#include "settings/model/Shell.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tests {

inline constexpr QSize kNarrow{390, 844};
inline constexpr QSize kWide{1000, 844};

/// Whether that comes to be true before all patience ends; events are handled meanwhile.
bool happens(const std::function<bool()>& condition);

/// The first item that is shown and matches, from the outside to the inside; null for none.
QQuickItem* shownIn(QQuickItem& item, const std::function<bool(const QQuickItem&)>& matches);

/// A window, a person at it, and a tweak that counts the questions and changes that come.
class Visit {
  public:
    explicit Visit(QSize size);
    ~Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    /// Has everything arrive that is under way.
    void settle();

    /// The page of that class, where it is shown; null otherwise.
    QQuickItem* page(const std::string& className);
    /// Goes back until the page can be used, to which all that follows is done.
    void reach(const std::string& className);
    QQuickItem* row(const QString& name, bool link = false);
    void open(const QString& name) { click(name, true); }
    void click(const QString& name, bool link = false);
    void scroll(double y);
    /// A finger that goes so far from a place, in steps, and rests there before it is lifted.
    void drag(QPoint from, int across);
    void type(const QString& text);
    void press(int key, Qt::KeyboardModifiers modifiers = {});

    /// What the pages heard, in words.
    std::vector<std::string> heard();
    /// The classes of the pages that are open.
    std::vector<std::string> opened() const;

    settings::Shell& shell;
    settings::SearchModel search;
    QQuickWindow* window = nullptr;
    std::atomic<int> questions = 0;
    std::atomic<int> changes = 0;

  private:
    const PortsFolder ports_;
    const ServedPort asked_;
    const ServedPort told_;
    settings::Panes panes_;
    QQmlApplicationEngine engine_;
    std::string reached_;
    std::mutex mutex_;
    std::vector<std::string> heard_;
};

} // namespace tests
