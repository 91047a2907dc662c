#pragma once

#include "platform/foundation/NSObject.h"

#include <string>
#include <string_view>

namespace platform {

/// A class as a value: its name, and how to make an object of it. A row names the page that it opens by its class.
struct ClassRecord {
    std::string name;
    std::function<std::shared_ptr<NSObject>()> make; ///< allocates and calls init; gives null when init says false
};

/// Null for "no such class". Records live as long as the process.
using Class = const ClassRecord*;

/// The class registered under a name, or null. Any thread, as the next one.
[[nodiscard]] PLATFORM_EXPORT Class NSClassFromString(std::string_view name);

/// Registers a class under its name for the life of the process; of two classes with one name the first stays.
PLATFORM_EXPORT Class registerClass(const ClassRecord& record);

} // namespace platform

/// Registers a class under its name. Write it once, in the class's own .cpp and namespace.
#define PLATFORM_CLASS(T)                                                                                              \
    [[maybe_unused]] static const platform::Class T##Class =                                                           \
        platform::registerClass({#T, []() -> std::shared_ptr<platform::NSObject> { return platform::make<T>(); }});
