#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/ui/UITableView.h"
#include "settings/host/Event.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace settings {

/// The open pages and what a person does to them: makes pages, hands them events, and tells of every change by a
/// snapshot. Knows nothing of how they are drawn.
///
///     Navigation navigation([](StackSnapshot snapshot) { … });
///     navigation.open(NSClassFromString("LumoraPreferences"), "Lumora");
///
/// Main thread only, and so is the call of `show`. Events name a page by its id; one that comes too late, for a page that
/// is gone or covered, does nothing.
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

    /// Does what the event means to the page, and shows what has come of it.
    void handle(std::uint64_t page, const Event& event);
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
    void take(OpenPage& page, const RowTapped& tap);
    void take(OpenPage& page, const ValueChanged& change);
    void take(OpenPage& page, const RowMoved& move);
    void take(OpenPage& page, const TableRowTapped& tap);
    void take(OpenPage& page, const TableScrolled& scroll);
    void take(OpenPage& page, const Touched& touch);
    void take(OpenPage& page, const Composed& composed);
    void changeTable(OpenPage& page, const std::function<void(platform::UITableView&)>& change);
    void appear(bool animated);
    void watchView(const OpenPage& page);
    void watchComposer(OpenPage& page);
    void showComposer(OpenPage& page);
    [[nodiscard]] std::function<void()> whileOnTop(std::uint64_t id, void (Navigation::*show)(OpenPage&));
    void refresh(OpenPage& page);
    void amend(OpenPage& page, const std::function<void(PageSnapshot&)>& change);
    void publish(std::optional<Opening> opening = {});
    OpenPage* pageOnTop(std::uint64_t id);

    Show show_;
    std::vector<OpenPage> pages_;
    platform::CGSize contentSize_{390, 760};
    platform::UITouchRouter touches_;                                         ///< on the page on top
    std::shared_ptr<Navigation*> self_ = std::make_shared<Navigation*>(this); ///< watched by what may outlive this
};

} // namespace settings
