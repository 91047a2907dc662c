#pragma once

#include <gio/gio.h>
#include <memory>

namespace applist {

/// Frees what GLib handed over.
struct GLibDeleter {
    void operator()(void* memory) const { g_free(memory); }
    void operator()(char** texts) const { g_strfreev(texts); }
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
};

struct GObjectDeleter {
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns what GLib handed over and is not an object.
template<class T>
using GLibPointer = std::unique_ptr<T, GLibDeleter>;

/// Owns one reference to an object.
template<class T>
using GObjectPointer = std::unique_ptr<T, GObjectDeleter>;

} // namespace applist
