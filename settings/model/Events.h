#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/NSIndexPath.h"
#include "platform/ui/UITouch.h"
#include "settings/host/Snapshot.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace settings {

/// Where the drawn rows hand what the user's hand did. GUI thread; returns at once.
class Events {
  public:
    virtual void rowTapped(std::uint64_t page, std::size_t row) = 0;
    /// `taken` is called, on the GUI thread, when the page has the value and its snapshot has been shown.
    virtual void valueChanged(std::uint64_t page, std::size_t row, const platform::Value& value,
                              std::function<void()> taken) = 0;
    /// A row of the page's table was dropped, its own place included. `taken` as above.
    virtual void rowMoved(std::uint64_t page, platform::NSIndexPath from, platform::NSIndexPath to,
                          std::function<void()> taken) = 0;
    /// `taken` as above.
    virtual void tableRowTapped(std::uint64_t page, platform::NSIndexPath path, std::function<void()> taken) = 0;
    /// Fingers, or the mouse, on the view that the page hosts, all that come at one time together; places are on the
    /// page. `taken` as above, and may be null.
    virtual void touched(std::uint64_t page, const std::vector<platform::UITouchRouter::Point>& points,
                         std::function<void()> taken) = 0;
    /// The page's table shows another part of itself, or its headers and footers have other heights.
    virtual void tableScrolled(std::uint64_t page, const TableViewport& viewport) = 0;
    /// The user did something with the message that is composed over the page.
    virtual void composed(std::uint64_t page, std::uint64_t composer, ComposerAction action,
                          const platform::MailText& text) = 0;

  protected:
    ~Events() = default;
};

} // namespace settings
