#include "platform/ui/UITextView.h"

namespace platform {

std::uint64_t UITextView::nextId() {
    static std::uint64_t last = 0;
    return ++last;
}

} // namespace platform
