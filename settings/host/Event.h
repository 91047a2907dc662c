#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/NSIndexPath.h"
#include "platform/ui/UITouch.h"
#include "settings/host/Snapshot.h"

#include <functional>
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
    friend bool operator==(const ValueChanged&, const ValueChanged&) = default;
};

/// A row of the page's table was dropped, in its own place or in another.
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

/// The page's table shows another part of itself, or its headers and footers have other heights.
struct TableScrolled {
    TableViewport viewport;
    friend bool operator==(const TableScrolled&, const TableScrolled&) = default;
};

/// Fingers, or the mouse, on the view that the page hosts; all that come at one time together.
struct Touched {
    std::vector<platform::UITouchRouter::Point> points;
    friend bool operator==(const Touched&, const Touched&) = default;
};

/// What the user does with a message.
enum class ComposerAction : unsigned char { send, save, cancel, leave };

/// Something was done with the message that is composed over the page, with the text as it has been edited.
struct Composed {
    std::uint64_t composer = 0; ///< its id
    ComposerAction action = ComposerAction::send;
    platform::MailText text;
    friend bool operator==(const Composed&, const Composed&) = default;
};

/// Holds all that there is to know of what was done, so that it can be kept for as long as one likes.
using Event = std::variant<RowTapped, ValueChanged, RowMoved, TableRowTapped, TableScrolled, Touched, Composed>;

/// Takes what was done on one page. Returns at once; `taken`, which may be null, is called when the page has the event
/// and its snapshot has been shown. GUI thread.
using SendEvent = std::function<void(Event event, std::function<void()> taken)>;

} // namespace settings
