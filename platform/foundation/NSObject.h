#pragma once

#include "platform/Export.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace platform {

/// The base of everything that can be the target of a row, such as pages and row builders. Main thread.
class PLATFORM_EXPORT NSObject {
  public:
    NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject();
};

/// Makes an object in two phases: allocates it, then calls the init operation that takes the arguments; null when that
/// returns false. So the object exists, and can be held strongly, while it builds itself.
///
///     auto page = make<LumoraPreferences>();      // init()
///     auto view = make<PluginsListView>(frame);   // initWithFrame(frame)
///     auto helper = make<PreferenceHelper>(page, set, get);   // initWithTarget(page, set, get)
template<class T, class... Arguments>
std::shared_ptr<T> make(Arguments&&... arguments) {
    auto object = std::make_shared<T>();
    bool alive = false;
    if constexpr (requires { object->init(std::forward<Arguments>(arguments)...); })
        alive = object->init(std::forward<Arguments>(arguments)...);
    else if constexpr (requires { object->initWithFrame(std::forward<Arguments>(arguments)...); })
        alive = object->initWithFrame(std::forward<Arguments>(arguments)...);
    else if constexpr (requires { object->initWithStyle(std::forward<Arguments>(arguments)...); })
        alive = object->initWithStyle(std::forward<Arguments>(arguments)...);
    else if constexpr (requires { object->initWithImage(std::forward<Arguments>(arguments)...); })
        alive = object->initWithImage(std::forward<Arguments>(arguments)...);
    else
        alive = object->initWithTarget(std::forward<Arguments>(arguments)...);
    return alive ? object : nullptr;
}

} // namespace platform
