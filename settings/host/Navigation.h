#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/ui/NSIndexPath.h"
#include "platform/ui/UITouch.h"
#include "settings/host/Snapshot.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace settings {

/// The open pages and what a person does to them: makes pages, hands them events, and tells of every change by a
/// snapshot. Knows nothing of how they are drawn.
///
///     Navigation navigation([](StackSnapshot snapshot) { … });
///     navigation.open(NSClassFromString("LumoraPreferences"), "Lumora");
///
/// Main thread only, and so is the call of `show`. Events name a page by its id and a row by its position; one that
/// comes too late, for a page that is gone or covered, does nothing.
class Navigation {
  public:
    using Show = std::function<void(StackSnapshot)>;
    explicit Navigation(Show show);

    /// Makes a page, gives it a title unless that is empty, and puts it on top. `show` is told first that it is being
    /// made, because making it may block for good. False when the class is null, makes no page, or its init yields
    /// nothing; and, with a line on standard error, when the page throws or has a null row.
    bool open(platform::Class pageClass, const std::string& title);

    /// Does work in which pages may throw: that costs the page on top, unless it is the first, and a line on standard
    /// error.
    void run(const std::function<void(Navigation&)>& work);

    /// A tap: opens what a link names (nothing where that class is not there), chooses an option, calls a button.
    void rowTapped(std::uint64_t page, std::size_t row);
    /// A switch, slider or field has a new value from the user's hand: stores it, then reads the row anew.
    void valueChanged(std::uint64_t page, std::size_t row, const platform::Value& value);
    /// A row of the page's table was dropped, in its own place or in another.
    void rowMoved(std::uint64_t page, platform::NSIndexPath from, platform::NSIndexPath to);
    /// A row of the page's table was tapped.
    void tableRowTapped(std::uint64_t page, platform::NSIndexPath path);
    /// Fingers, or the mouse, on the view that the page hosts; all that comes at one time together.
    void touched(std::uint64_t page, const std::vector<platform::UITouchRouter::Point>& points);
    /// The page's table shows another part of itself: makes the cells for it.
    void tableScrolled(std::uint64_t page, const TableViewport& viewport);
    /// The user did something with the message that is composed over the page, with the text as it has been edited.
    void composed(std::uint64_t page, std::uint64_t composer, ComposerAction action, const platform::MailText& text);
    /// Back from a page to the one before; does nothing on the first page.
    void back(std::uint64_t page);
    /// The content area has a new size. The page's view fills it always; what is in that view follows by its resizing
    /// mask, and without one keeps its frame until the next appearance.
    void setContentSize(platform::CGSize size);

    /// The page on top, null when none is open.
    [[nodiscard]] std::shared_ptr<platform::PSListController> topPage() const;

  private:
    struct OpenPage {
        std::uint64_t id;
        std::shared_ptr<platform::PSListController> controller;
        std::string className;
        std::shared_ptr<const PageSnapshot> snapshot;
    };

    bool open(platform::Class pageClass, const std::string& title, const platform::PSSpecifierRef& row);
    void appear(bool animated);
    void publish();
    void publishOpening(const std::string& className, const std::string& title);
    void readAnew(OpenPage& page);
    void watchView(const OpenPage& page);
    void viewChanged(std::uint64_t page);
    void watchComposer(OpenPage& page);
    void composerChanged(std::uint64_t page);
    /// The page on top, unless it has presented something over itself: what is behind that hears nothing, whoever asks.
    OpenPage* openToEvents(std::uint64_t id);
    OpenPage* pageOnTop(std::uint64_t id);

    Show show_;
    std::vector<OpenPage> pages_;
    platform::CGSize contentSize_{390, 760};
    platform::UITouchRouter touches_;                                         ///< on the page on top
    std::shared_ptr<Navigation*> self_ = std::make_shared<Navigation*>(this); ///< watched by what may outlive this
};

} // namespace settings
