#pragma once

#include "platform/foundation/Class.h"
#include "platform/ui/CGGeometry.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace settings {

/// What a walk over all pages is asked for.
struct IndexWanted {
    platform::Class firstPage;
    std::string firstTitle;
    platform::CGSize contentSize{390, 792}; ///< in points, of each page
    /// Goes on behind that page, as a line "begin" has named it; empty to begin with the first one.
    std::string behind;
    /// Of the lines that a page of a plug-in and those behind it may have.
    std::size_t mostBytesOfPlugin = std::size_t{1} << 20U;
};

/// Makes every page that links lead to from the first one, and tells what is on it, line by line:
///
///     begin 4.1 TITLE    the page is being made; "s" before the way if it is the page of a plug-in
///     page {…}           what is on it, as search::writePageLine() has it
///     missing TITLE: …   it is left out, and why
///     end                these were all
///
/// A page that is open already on the way to a link is not made again. The pages of plug-ins come last, each with
/// the pages behind it, which have no "begin" of their own: whatever they do, the bundle's pages have been told of by
/// then. Main thread.
void walkForIndex(const IndexWanted& wanted, const std::function<void(std::string_view line)>& tell);

} // namespace settings
