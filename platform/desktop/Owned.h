#pragma once

#include <glib-object.h>
#include <memory>

namespace platform {

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};

/// Owns a reference to an object of GLib's. One thread at a time.
template<class T>
using Owned = std::unique_ptr<T, Unreference>;

} // namespace platform
