#pragma once

#include "settings/app/DrawingLimit.h"
#include "settings/model/Shell.h"

#include <QEvent>
#include <QObject>
#include <QQuickWindow>
#include <QSize>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace settings {

/// Saves pictures of the window: of one page, or of every page that links lead to. Meanwhile the window is deaf to
/// mouse and keyboard, which would open other pages or restart the program. GUI thread, with the event loop running
/// inside.
///
///     Pictures pictures(shell, window, std::chrono::seconds(10), [](const std::string& why) { … std::_Exit(1); });
///     if (auto saved = pictures.tour("pictures"); !saved) complain(saved.error());
class Pictures : private QObject {
  public:
    /// `overdue` is told, on another thread, that the window takes longer than that to be drawn. It has to end the
    /// process: nothing else can end the drawing.
    Pictures(Shell& shell, QQuickWindow& window, std::chrono::milliseconds atMost,
             const std::function<void(const std::string& why)>& overdue);

    [[nodiscard]] platform::Result<void> grab(const std::filesystem::path& file);
    /// Every page, opened anew at each size, light and dark: "LumoraPreferences-390-light.png", and when it is longer
    /// than the window its end: "LumoraPreferences-end-390-light.png". A class that several rows open has one picture,
    /// but for option lists, "PSListItemsController-SleepAfter-390-light.png", and for pages with other titles. Presses
    /// no button and changes no value. A message being composed, and the waiting screen in both of its states, come
    /// last. When no size is named, they are 320, 390 and 1024 points and the height that the window has.
    [[nodiscard]] platform::Result<void> tour(const std::filesystem::path& folder, std::vector<QSize> sizes = {});

  protected:
    /// Saves the window as it is under that name, light and dark; called for each page at each width.
    virtual void takePictures(const std::string& name);
    /// A row of the page of that name leads to a page that does not exist.
    virtual void missPage(const std::string& /*name*/, const RowSnapshot& /*link*/) {}
    void takePicture(const std::string& name, bool dark);
    /// The first page, on top, comes to have presented that message, or none.
    void present(std::shared_ptr<const ComposerSnapshot> composer);
    [[nodiscard]] QQuickWindow& window() const { return window_; }

  private:
    /// Ends the tour from within; its text says why.
    struct Stopped {
        std::string why;
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void visitPages();
    void visitTopPage();
    void visitWaitingScreen();
    void visitComposer();
    void save(const std::filesystem::path& file);
    [[nodiscard]] bool showsPage() const;
    void resize(QSize size);
    bool scroll(bool toEnd);
    void settle();
    void draw();
    void openAnew();
    std::string pictureName(const PageSnapshot& page);
    void perform(std::function<void(Navigation&)> work);
    void waitUntil(const std::function<bool()>& condition, const std::function<std::string()>& awaited);
    [[nodiscard]] std::string awaitedPage() const;

    Shell& shell_;
    QQuickWindow& window_;
    std::chrono::milliseconds atMost_; ///< for each thing that is waited for
    DrawingLimit drawing_;             ///< for each thing that is drawn
    std::filesystem::path folder_;
    std::set<std::string> visited_;              ///< names of pictures at the present width
    std::map<std::string, std::string> openers_; ///< of option lists, by the picture's name: the page that leads there
    std::map<std::string, std::string> titles_;  ///< by class: of the page that bears its name alone
};

} // namespace settings
