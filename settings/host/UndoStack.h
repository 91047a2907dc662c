#pragma once

#include "platform/ui/Undoable.h"
#include "settings/host/Landing.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace settings {

/// A setting that gets another value, whatever page shows it. Nil before where it was not set.
struct SettingChange {
    std::string key;
    platform::Value before;
    platform::Value after;
};

/// What has come of changes that were sent.
struct Sent {
    struct Refused {
        std::string key;
        std::string why;
    };
    std::vector<SettingChange> made{};
    std::vector<Refused> refused{};
    std::string fault{}; ///< why the others were not sent; empty if all were
};

/// One thing that the user has changed on a page, with all that it takes to change it back; or settings that were changed
/// together, of which no page is known.
struct Change {
    using State = platform::Undoable::State;

    std::vector<SettingChange> settings{}; ///< of these alone it is, unless there are none
    std::uint64_t page = 0;                ///< the page's id, by which it is found while it is open
    Landing place{};                       ///< and else by the way to it; the row is absent where a view changed
    bool hasWay = true;                    ///< false for a page that was opened by none
    std::string identifier;                ///< the preference key
    std::string title{};                   ///< what a person knows it by: the row's title, or the page's for a view
    State before{};                        ///< nil is stored where there never was a value: that cannot be put back
    State after{};
    std::uint64_t group = 0; ///< changes of one group are taken back together; 0 for none
    bool continues = false;  ///< one of many small steps, as of a slider that arrow keys move
    std::chrono::steady_clock::time_point made{};
};

/// What the user has changed, to be taken back and done again, the last change first. In memory alone, passcodes too;
/// the oldest changes go. Main thread.
class UndoStack {
  public:
    static constexpr std::size_t kMost = 500;
    /// Steps of one hand at most that far apart are one change.
    static constexpr std::chrono::milliseconds kPause{1000};

    /// What was undone can no longer be done again.
    void add(Change change);

    /// The change to take back next, null for none.
    [[nodiscard]] const Change* nextUndo() const { return done_.empty() ? nullptr : &done_.back(); }
    /// The change to do again next, null for none.
    [[nodiscard]] const Change* nextRedo() const { return undone_.empty() ? nullptr : &undone_.back(); }

    /// The next change has been taken back or, if not `back`, done again; it is forgotten if that can never be.
    void stepped(bool back, bool forget);
    /// Of the next change only what is made has been. What was not sent stays the next change. What is refused is
    /// forgotten: it would be refused each time, and keep the other changes out of reach.
    void steppedInPart(bool back, const Sent& sent);

  private:
    std::vector<Change> done_;
    std::vector<Change> undone_;
};

} // namespace settings
