#pragma once

#include "settings/app/DrawingLimit.h"
#include "settings/model/Shell.h"

#include <QEvent>
#include <QImage>
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

/// Saves pictures of the window: of one page, or of every page that links lead to. Meanwhile the window ignores mouse
/// and keyboard, which would open other pages or restart the program. GUI thread; the operations run the event loop.
///
///     Pictures pictures(shell, window, std::chrono::seconds(10), [](const std::string& why) { … std::_Exit(1); });
///     if (auto saved = pictures.tour("pictures"); !saved) complain(saved.error());
class Pictures : private QObject {
  public:
    /// `overdue` is told, on another thread, that drawing the window takes longer than `atMost`. It has to end the
    /// process, as nothing else can end the drawing.
    Pictures(Shell& shell, QQuickWindow& window, std::chrono::milliseconds atMost,
             const std::function<void(const std::string& why)>& overdue);

    /// What else stands in the window: grab() waits for it.
    void awaitAlso(std::function<bool()> isThere, std::string name);
    /// Saves the page on top, once it stands. Fails when that takes too long or the file cannot be written.
    [[nodiscard]] platform::Result<void> grab(const std::filesystem::path& file);
    /// Saves every page, opened anew at each size, light and dark: "LumoraPreferences-390-light.png"; of a page that is
    /// longer than the window, its end too: "LumoraPreferences-end-390-light.png". A class that several rows open has
    /// one picture, except option lists, "PSListItemsController-SleepAfter-390-light.png", and pages with other titles.
    /// Three pages have pictures with more contrast and mirrored ones too, "LumoraPreferences-mirrored-390-light.png",
    /// and the first list whose rows can be moved has one with the menu of a row, "AppsListController-menu-390-light.png".
    /// A message being composed and one that could not be sent, the waiting screen in both of its states, the notice of a
    /// missing tweak and what stands in place of a missing first page come last. Presses no button and changes no value.
    /// Without sizes, the widths are 320, 390 and 1024 points at the window's own height.
    [[nodiscard]] platform::Result<void> tour(const std::filesystem::path& folder, std::vector<QSize> sizes = {});

  protected:
    /// Saves the window as it is under that name, light and dark; called for each page at each width.
    virtual void takePictures(const std::string& name);
    /// Called for a row of the page of that name that leads to a page that does not exist.
    virtual void missPage(const std::string& /*name*/, const RowSnapshot& /*link*/) {}
    void takePicture(const std::string& name, bool dark);
    /// Gives the window another size, of which the page hears.
    void resize(QSize size);
    void perform(std::function<void(Navigation&)> work);
    void waitUntil(const std::function<bool()>& condition, const std::function<std::string()>& awaited);
    /// The window as it is, once it shows the top page; null if that cannot be had.
    [[nodiscard]] QImage drawn();
    void drawAnew();
    /// Shows the top page, as if it were the only one, with that message presented over it; null for none.
    void present(std::shared_ptr<const ComposerSnapshot> composer);
    [[nodiscard]] QQuickWindow& window() const { return window_; }

  private:
    /// Thrown to end a tour or a grab.
    struct Stopped {
        std::string why;
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void visitTopPage();
    void visitMenu(const PageSnapshot& page, const std::string& name);
    void takeOtherPictures(const std::string& name);
    void visitWaitingScreen();
    void visitComposer();
    void visitFaults();
    void save(const std::filesystem::path& file);
    [[nodiscard]] bool showsPage() const;
    bool scroll(bool toEnd);
    void settle();
    void draw();
    void openAnew();
    std::string pictureName(const PageSnapshot& page);
    [[nodiscard]] std::string awaitedPage() const;

    Shell& shell_;
    QQuickWindow& window_;
    std::chrono::milliseconds atMost_; ///< for each wait
    DrawingLimit drawing_;             ///< for each drawing
    std::function<bool()> isElseThere_ = [] { return true; };
    std::string else_; ///< its name
    std::filesystem::path folder_;
    std::set<std::string> visited_;              ///< names of pictures at the present width
    std::map<std::string, std::string> openers_; ///< of option lists, by the picture's name: the page that leads there
    std::map<std::string, std::string> titles_;  ///< by class: of the page that bears its name alone
};

} // namespace settings
