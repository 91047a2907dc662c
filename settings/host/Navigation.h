#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/ui/UITableView.h"
#include "settings/host/Event.h"
#include "settings/host/Landing.h"
#include "settings/host/UndoStack.h"
#include "settings/host/WayTo.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace settings {

/// Holds the open pages: makes them, hands them what a person does, and shows every change as a snapshot. Does not know
/// how they are drawn.
///
///     Navigation navigation([](StackSnapshot snapshot) { … });
///     navigation.open(NSClassFromString("LumoraPreferences"), "Lumora");
///
/// Main thread only; `show` is called there too. An event names its page by its id, and does nothing when it comes too
/// late, for a page that is gone or covered.
class Navigation {
  public:
    using Show = std::function<void(StackSnapshot)>;
    explicit Navigation(Show show);

    /// What the window tells of a page: something that was done there, or nothing for going back from it.
    using Listen = std::function<void(const std::string& className, const std::optional<Event>& event)>;
    /// Is told of each event and each way back of the page on top, before anything comes of it.
    void setListener(Listen listen) { listen_ = std::move(listen); }

    /// Makes a page, gives it the title unless that is empty, and puts it on top; `row` is the link that opens it, null
    /// for none. `show` is told first that the page is being made, as that may block for good. False when the class is
    /// null or makes no page; and, with a line on standard error, when the page throws or has a null row.
    bool open(platform::Class pageClass, const std::string& title, const platform::PSSpecifierRef& row = {});

    /// Opens the page that a row of the page on top leads to. False when no row names that class, or the page does not open.
    bool openFromRow(const std::string& className);

    /// Opens a page with all pages that lead there from a first page of that class, which nobody sees before it. False,
    /// with nothing open, when no link leads there.
    bool openByWay(platform::Class first, const std::string& title, platform::Class target);
    /// Goes to a page by the way from the first page, or opens it on top when no link leads there. Does nothing for null,
    /// when that page is on top, or when the page on top presents something.
    void goTo(platform::Class target);

    /// Goes to a row from wherever the user is, by the events of somebody who goes back as far as needed and then taps the
    /// links of the way. Stops at the page from which it does not go on. A table is asked to show its row in the middle.
    Landed land(const Landing& landing);

    /// What has come of taking a change back, or of doing it again.
    struct Undone {
        enum class Fate : unsigned char {
            nothing,  ///< there is no change
            done,     ///< the row or view has the value, and was saved with it
            neverSet, ///< there was no value before, no message takes one away, and no default is known
            gone,     ///< its page or row is no longer there
            refused,  ///< the tweak does not take it, which it forgets, or is not there, and it can be tried again
        };
        Fate fate = Fate::nothing;
        std::string title{}; ///< what was changed
        Landed where{};
        std::string why{}; ///< it was refused
        Sent sent{};       ///< what has come of its parts then
        [[nodiscard]] bool isOver() const { return fate == Fate::neverSet || fate == Fate::gone; }
    };
    /// Takes back the last change, or does again what was taken back last, where it was made and in the way in which the
    /// page saves any change. Goes to that page first, by the events of somebody who does so. A change that cannot be
    /// put back is forgotten.
    Undone undo();
    Undone redo();
    /// Gives these rows of a page the values that they had when it was opened and, if wanted, its view the state that it
    /// had; all of that is one change. What had no value then gets the default or, without one, keeps what it has.
    void revert(std::uint64_t page, const std::vector<std::size_t>& rows, bool view);

    /// Sends changes to the tweak, one message for each, and waits for the answers. Called on the main thread.
    using Send = std::function<Sent(const std::vector<SettingChange>& changes)>;
    void setSender(Send send) { send_ = std::move(send); }
    /// Changes settings by no page of theirs. What is made of it is one change, and every page shows it that is open, or
    /// is opened again.
    Sent apply(const std::string& title, const std::vector<SettingChange>& changes);

    /// Whether there is no tweak. What is changed or taken back meanwhile is lost, so once there is one, it is as if that
    /// had never been done.
    void setTweakGone(bool gone);

    /// What the tweak tells of its defaults: rows are shown with theirs from now on, and one takes the place of a value
    /// that was never set when a change is taken back.
    void setDefaults(platform::Dictionary defaults);

    /// Does work in which pages may throw. If one does, the page on top is closed unless it is the first, and a line on
    /// standard error says why. False then.
    bool run(const std::function<void(Navigation&)>& work);

    /// Does what the event means to the page, and shows the outcome.
    void handle(std::uint64_t page, const Event& event);
    /// Goes back from a page to the one before; does nothing on the first page.
    void back(std::uint64_t page);
    /// Opens the page's class again, in place of the page, with what the tweak answers now; the page stays if that fails.
    void reload(std::uint64_t page);
    /// Takes the new size of the content area, in points. The page's view always fills it. What is in that view follows
    /// by its resizing mask, or without one keeps its frame until the page appears again; the view is as large as that
    /// takes, if the page was so large.
    void setContentSize(platform::CGSize size);
    /// Lets a page appear again, for its present size, if what is in its view was made for another and has kept its place.
    /// To the window, the new table or text is the former one.
    void appearAnew(std::uint64_t page);

    /// The page on top, null when none is open.
    [[nodiscard]] std::shared_ptr<platform::PSListController> topPage() const;

  private:
    struct OpenPage {
        std::uint64_t id;
        std::shared_ptr<platform::PSListController> controller;
        platform::Class pageClass;
        std::shared_ptr<const PageSnapshot> snapshot{};
        platform::CGSize madeFor{}; ///< the content area when its view was made
        std::shared_ptr<const std::vector<RowSnapshot>> openedRows{};
        std::optional<Change::State> openedState{}; ///< of its view
        std::optional<StoredChange> viewChange{};
    };

    std::shared_ptr<platform::PSListController> make(platform::Class pageClass, const std::string& title,
                                                     const platform::PSSpecifierRef& row);
    void push(std::shared_ptr<platform::PSListController> page, platform::Class pageClass);
    bool change(platform::Class pageClass, const std::function<bool()>& work);
    std::vector<Step> wayFromFirst(platform::Class target);
    bool take(std::vector<Step> way);
    bool follow(const KnownLink& link);
    Landed landOn(const Landing& landing);
    void expectChange(const OpenPage& page, const Event& event);
    void expectChange(const OpenPage& page, std::size_t position, const platform::Value& after, bool resets = false);
    void expectViewChange(const OpenPage& page, const platform::Undoable& view);
    void noteChange();
    [[nodiscard]] Change changeOn(const OpenPage& page) const;
    Undone restore(const Change& change, const Change::State& state);
    Undone sendAgain(const Change& change, bool back);
    void readAnew();
    Landed returnTo(const Change& change);
    [[nodiscard]] bool showsOptions(const Change& change) const;
    void take(OpenPage& page, const RowTapped& tap);
    void take(OpenPage& page, const ValueChanged& change);
    void take(OpenPage& page, const RowMoved& move);
    void take(OpenPage& page, const TableRowTapped& tap);
    void take(OpenPage& page, const TableRowSought& sought);
    void take(OpenPage& page, const TableScrolled& scroll);
    void take(OpenPage& page, const Touched& touch);
    void take(OpenPage& page, const Composed& composed);
    void changeTable(OpenPage& page, const std::function<void(platform::UITableView&)>& change);
    void appear(bool animated);
    void announceAppearance(const OpenPage& page);
    void makeView(OpenPage& page, bool animated);
    void fit(OpenPage& page) const;
    void showAppeared(OpenPage& page);
    void watchComposer(OpenPage& page);
    void showComposer(OpenPage& page);
    [[nodiscard]] std::function<void()> whileOnTop(std::uint64_t id, void (Navigation::*show)(OpenPage&));
    void refresh(OpenPage& page);
    void look(OpenPage& page) const;
    void addDefaults(PageSnapshot& shown) const;
    [[nodiscard]] Change::State orDefault(const Change::State& state, const std::string& key) const;
    static void compareWithOpening(OpenPage& page, PageSnapshot& shown);
    void noteViewState(std::uint64_t id, const std::string& key, const Change::State& state);
    Undone step(bool back);
    void refreshOpener();
    bool goBack();
    void amend(OpenPage& page, const std::function<void(PageSnapshot&)>& change);
    void publish(std::optional<Opening> opening = {});
    OpenPage* pageOnTop(std::uint64_t id);

    Show show_;
    Listen listen_ = [](const auto&, const auto&) {};
    std::vector<OpenPage> pages_;
    platform::CGSize contentSize_{390, 760};
    platform::UITouchRouter touches_; ///< on the page on top
    /// What the user's hand is changing, and on which page.
    struct Pending {
        Change change;
        std::shared_ptr<platform::PSListController> controller;
    };
    std::optional<Pending> pending_;
    UndoStack undoStack_;
    /// As they were when the tweak went, while it is gone.
    struct BeforeGone {
        UndoStack stack;
        std::uint64_t changes;
    };
    std::optional<BeforeGone> beforeGone_;
    platform::Dictionary defaults_;
    Send send_ = [](const auto&) { return Sent{.fault = "nobody sends them"}; };
    std::set<platform::Class> opened_;  ///< classes of which a page was opened
    std::set<platform::Class> hosting_; ///< of them, those whose pages host a view: a page that has appeared tells
    std::uint64_t changes_ = 0;
    std::uint64_t groups_ = 0;
    std::shared_ptr<Navigation*> self_ =
        std::make_shared<Navigation*>(this); ///< watched by callbacks that may outlive this
};

/// Waits until all that pages have sent has been answered, or has failed. False when that takes longer than it can.
bool waitForMessages();

} // namespace settings
