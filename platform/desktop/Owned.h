#pragma once

#include <glib-object.h>
#include <memory>

namespace platform {

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};

/// A reference to an object of GLib's that goes with its holder.
template<class T>
using Owned = std::unique_ptr<T, Unreference>;

} // namespace platform
