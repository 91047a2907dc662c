#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/NSIndexPath.h"
#include "platform/ui/UITouch.h"
#include "settings/host/Snapshot.h"

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace settings {

/// What the user did on a page. Rows are named by their positions.

/// A row was tapped: a link, an option, a button.
struct RowTapped {
    std::size_t row = 0;
    friend bool operator==(const RowTapped&, const RowTapped&) = default;
};

/// A switch, slider or field has a new value.
struct ValueChanged {
    std::size_t row = 0;
    platform::Value value;
    bool resets = false; ///< it is the default, and was asked for as such
    friend bool operator==(const ValueChanged&, const ValueChanged&) = default;
};

/// A row of the page's table was dropped, at its own place or at another.
struct RowMoved {
    platform::NSIndexPath from;
    platform::NSIndexPath to;
    friend bool operator==(const RowMoved&, const RowMoved&) = default;
};

/// A row of the page's table was tapped.
struct TableRowTapped {
    platform::NSIndexPath path;
    friend bool operator==(const TableRowTapped&, const TableRowTapped&) = default;
};

/// The user typed the beginning of a row's name in the page's table, and means the first such row after that one.
struct TableRowSought {
    std::string beginning;
    platform::NSIndexPath after;
    friend bool operator==(const TableRowSought&, const TableRowSought&) = default;
};

/// The page's table shows another part of itself, or its headers and footers have other heights.
struct TableScrolled {
    TableViewport viewport;
    friend bool operator==(const TableScrolled&, const TableScrolled&) = default;
};

/// Fingers or the mouse touched the view that the page hosts: all that came in one event, at places on the page.
struct Touched {
    std::vector<platform::UITouchRouter::Point> points;
    friend bool operator==(const Touched&, const Touched&) = default;
};

/// What the user does with a message; `leave` is for closing the window over it.
enum class ComposerAction : unsigned char { send, save, cancel, leave };

/// The user acted on the message that is composed over the page; the text is as edited.
struct Composed {
    std::uint64_t composer = 0; ///< the id in its snapshot
    ComposerAction action = ComposerAction::send;
    platform::MailText text;
    friend bool operator==(const Composed&, const Composed&) = default;
};

/// One thing that the user did. Holds all there is to know about it, so it can be kept when the page is gone.
using Event =
    std::variant<RowTapped, ValueChanged, RowMoved, TableRowTapped, TableRowSought, TableScrolled, Touched, Composed>;

/// Hands on what was done on one page. Returns at once; `taken`, which may be null, is called once the page has taken
/// the event and its snapshot has been shown. GUI thread.
using SendEvent = std::function<void(Event event, std::function<void()> taken)>;

} // namespace settings
