#pragma once

#include "platform/foundation/NSObject.h"

#include <string>
#include <string_view>

namespace platform {

/// A class as a value: its name and how to make one of it. Rows name the page that they open by one.
struct ClassRecord {
    std::string name;
    std::function<std::shared_ptr<NSObject>()> make; ///< allocates and calls init; null when init yields nothing
};

/// Null is "no such class". Records live as long as the process.
using Class = const ClassRecord*;

/// The class registered under a name, or null.
[[nodiscard]] PLATFORM_EXPORT Class NSClassFromString(std::string_view name);

/// Registers a class under its name for the life of the process; of two classes with one name the first stays.
PLATFORM_EXPORT Class registerClass(const ClassRecord& record);

} // namespace platform

/// Makes a class known by its name; stands once in the class's own .cpp, in the class's namespace.
#define PLATFORM_CLASS(T)                                                                                              \
    [[maybe_unused]] static const platform::Class T##Class =                                                           \
        platform::registerClass({#T, []() -> std::shared_ptr<platform::NSObject> { return platform::make<T>(); }});
