#include "lists/Move.h"

#include <utility>

namespace lumora {

Selection moved(Selection selection, platform::NSIndexPath from, platform::NSIndexPath to) {
    auto& source = from.section == 0 ? selection.enabled : selection.disabled;
    auto& destination = to.section == 0 ? selection.enabled : selection.disabled;
    const std::size_t placesThere = destination.size() + (&source == &destination ? 0 : 1);
    if (from.row < 0 || std::cmp_greater_equal(from.row, source.size())) return selection;
    if (to.row < 0 || std::cmp_greater_equal(to.row, placesThere)) return selection;

    std::string identifier = std::move(source[static_cast<std::size_t>(from.row)]);
    source.erase(source.begin() + from.row);
    destination.insert(destination.begin() + to.row, std::move(identifier));
    return selection;
}

} // namespace lumora
