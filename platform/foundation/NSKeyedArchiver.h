#pragma once

#include "platform/foundation/PropertyList.h"

namespace platform {

/// Writes a value as a keyed archive, the form in which every message body travels.
///
///     std::optional<Data> body = NSKeyedArchiver::archivedDataWithRootObject(change);
///
/// Binary property list: `$version` 100000, `$archiver` "NSKeyedArchiver", `$top` {"root": UID}, `$objects` with
/// "$null" first. Equal texts are shared; a dictionary keeps its order; nil is written as a reference to "$null",
/// inside lists and dictionaries too. Any thread.
class PLATFORM_EXPORT NSKeyedArchiver {
  public:
    /// Nothing when the value is beyond PropertyListLimits: nested too deeply, or too large. A byte of a text that is
    /// not UTF-8 becomes U+FFFD.
    [[nodiscard]] static std::optional<Data> archivedDataWithRootObject(const Value& root);
};

/// Reads keyed archives from any writer, a hostile one too: any bytes give a value or nothing, in time and memory that
/// are a small multiple of their length. Any thread.
class PLATFORM_EXPORT NSKeyedUnarchiver {
  public:
    /// nil when the bytes are no readable archive, or when the root is nil.
    [[nodiscard]] static Value unarchiveObjectWithData(const Data& archive);
    /// The same with a reason for tools, which may show it. `visits`, if given, receives the number of references that
    /// were followed.
    [[nodiscard]] static Result<Value> unarchive(const Data& archive, std::size_t* visits = nullptr);
};

} // namespace platform
