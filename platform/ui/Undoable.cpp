#include "platform/ui/Undoable.h"

namespace platform {

Undoable::~Undoable() = default; // here, so that it has one type in every library

} // namespace platform
