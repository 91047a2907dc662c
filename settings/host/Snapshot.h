#pragma once

#include "platform/foundation/Value.h"
#include "platform/mail/MailMessage.h"
#include "platform/ui/CALayer.h"
#include "platform/ui/CGContext.h"
#include "platform/ui/CGGeometry.h"
#include "platform/ui/TableLayout.h"
#include "platform/ui/UIAccessibilityElement.h"
#include "platform/ui/UIFont.h"
#include "platform/ui/UIImage.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace settings {

/// Immutable pictures of what the main thread holds, made there and handed to the GUI thread. Lengths are in points.

/// One row as it is to be drawn. Fields that a row's kind does not have stay empty.
struct RowSnapshot {
    int cell = 0; ///< platform::PSCellType
    std::string name;
    std::string identifier;
    platform::Value value;  ///< what the row's get operation gave for this snapshot
    std::string valueTitle; ///< of an option list: the short title of the stored value, empty for none
    std::string footerText;
    std::string placeholder;
    std::optional<double> min;
    std::optional<double> max;
    std::optional<bool> showValue;
    std::vector<std::string> titles;
    std::vector<std::string> shortTitles; ///< for the row itself; may be fewer
    std::vector<platform::Value> values;
    std::string detail; ///< name of the page class that the row opens
    platform::UIImageRef icon;
    bool marked = false;                        ///< of an option: whether it is the stored one
    std::optional<platform::Value> byDefault{}; ///< the value until it is changed, as far as the tweak tells
};

/// What an option list shows of its value: the short title of the stored one, or its title; empty for none.
[[nodiscard]] std::string valueTitleOf(const RowSnapshot& row);

/// One view and what is in it, without hidden views; frames are relative to the parent. Drawn from back to front: the
/// layer's shadow and background, the image or the drawing, both stretched over the view, the subviews, the border.
struct ViewSnapshot {
    std::string className;
    platform::CGRect frame;
    platform::CALayer layer;
    platform::UIImageRef image{};     ///< null for none
    platform::CGDrawingRef drawing{}; ///< null for none
    std::vector<ViewSnapshot> subviews{};
    friend bool operator==(const ViewSnapshot&, const ViewSnapshot&) = default;
};

/// A text that scrolls by itself and cannot be edited.
struct TextSnapshot {
    std::uint64_t id = 0;   ///< tells texts apart: a page that appears again has a new one, which begins at its top
    platform::CGRect frame; ///< on the page
    std::shared_ptr<const std::string> text; ///< never null; a new text has a new pointer
    platform::UIFontRef font;
    bool selectable = false;
    friend bool operator==(const TextSnapshot&, const TextSnapshot&) = default;
};

/// One row of a table that is in view.
struct CellSnapshot {
    std::string title;      ///< may be empty
    std::string identifier; ///< the hidden detail text
    platform::UIImageRef image;
    bool movable = false;       ///< has a handle to drag it by
    int editingStyle = 0;       ///< platform::UITableViewCellEditingStyle
    bool indented = false;      ///< leaves room for the sign of that style
    bool marked = false;        ///< bears a checkmark
    platform::UIFontRef font{}; ///< of the title; null for the table's usual one
    friend bool operator==(const CellSnapshot&, const CellSnapshot&) = default;
};

/// The table on a page.
struct TableSnapshot {
    std::uint64_t id = 0;   ///< tells tables apart: a page that appears again has a new one, which begins at its top
    platform::CGRect frame; ///< on the page
    platform::TableLayout layout;
    std::map<platform::NSIndexPath, CellSnapshot> cells; ///< of the rows in view
    bool grouped = true;                           ///< its rows stand in boxes with round corners, away from the sides
    bool selectable = false;                       ///< a tap on a row means something
    std::optional<platform::NSIndexPath> selected; ///< the row that was tapped, until it is deselected
    bool deselectsAnimated = false;                ///< whether the row selected last fades
    platform::TableScrollRequest scroll;
};

/// What the window tells of a table that it draws: the part to make cells for, in the table's own coordinates, and the
/// heights of the headers and footers as they are drawn, one entry for each section.
struct TableViewport {
    struct Heights {
        double header = 0;
        double footer = 0;
        friend bool operator==(const Heights&, const Heights&) = default;
    };
    double top = 0;
    double bottom = 0;
    std::vector<Heights> sections;
    friend bool operator==(const TableViewport&, const TableViewport&) = default;
};

/// Something on a page that the keyboard and assistive tools reach; they do what a touch would do.
using ElementSnapshot = platform::UIAccessibilityElement;

/// A file attached to a message.
struct AttachmentSnapshot {
    std::string name;
    std::uint64_t size = 0; ///< in bytes
};

/// A message that is being composed over a page. Its text is the one that the composer began with: the window alone
/// knows the edited text, until that is sent or saved.
struct ComposerSnapshot {
    std::uint64_t id = 0; ///< tells composers apart
    platform::MailText text;
    std::vector<AttachmentSnapshot> attachments;
    bool working = false; ///< being sent or kept
    std::string problem;  ///< why the last try to send or keep it failed, empty for none
    std::string draft{};  ///< the file of the draft that it is kept as after that, empty for none
};

/// What a view that a page hosts has stored under its key.
struct StoredChange {
    std::string key;
    platform::Value before; ///< when the page was opened
    platform::Value now;
};

struct PageSnapshot {
    std::uint64_t id = 0; ///< tells pages apart, never used twice in a process
    std::string className;
    std::string title;
    std::vector<RowSnapshot> rows;
    std::shared_ptr<const ViewSnapshot> view;   ///< of a page that hosts a view, when it has one
    std::shared_ptr<const TableSnapshot> table; ///< the table in that view, when it has one
    std::shared_ptr<const TextSnapshot> text;   ///< the text view in that view, when it has one
    std::vector<ElementSnapshot> elements;      ///< of that view, back to front; frames are on the page
    bool hostsView = false;
    bool keepsPlaces = false; ///< what is in that view stays where it is when the page gets another size
    std::shared_ptr<const ComposerSnapshot> composer; ///< what the page presents over itself, null for nothing
    bool presentsAnimated = true;                     ///< whether that slides in and, once it is null, out
    std::shared_ptr<const std::vector<RowSnapshot>> openedRows{}; ///< as they were when the page was opened
    std::optional<StoredChange> viewChange{};                     ///< of a view that is no longer as it was then
};

/// A page that is being made or is about to appear: what the main thread may be waiting for.
struct Opening {
    std::string className;
    std::string title;
};

/// What can be taken back and done again, by its title; nothing where there is none.
struct UndoSnapshot {
    std::optional<std::string> undo;
    std::optional<std::string> redo;
    std::uint64_t changes = 0; ///< how many the user has made so far
};

/// All open pages, the first one first; only the last is seen.
struct StackSnapshot {
    std::vector<std::shared_ptr<const PageSnapshot>> pages;
    std::optional<Opening> opening;
    UndoSnapshot undo{};
};

} // namespace settings
