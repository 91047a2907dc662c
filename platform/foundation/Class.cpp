#include "platform/foundation/Class.h"

#include <map>
#include <mutex>

namespace platform {
namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, ClassRecord, std::less<>> classes; // nodes stay where they are, so records can be pointed at
};

Registry& registry() {
    // Never destroyed: classes register from the initialisers of libraries that are never unmapped.
    static auto& registry = *new Registry;
    return registry;
}

} // namespace

Class NSClassFromString(std::string_view name) {
    Registry& known = registry();
    const std::lock_guard hold(known.mutex);
    const auto found = known.classes.find(name);
    return found == known.classes.end() ? nullptr : &found->second;
}

Class registerClass(const ClassRecord& record) {
    Registry& known = registry();
    const std::lock_guard hold(known.mutex);
    return &known.classes.try_emplace(record.name, record).first->second;
}

} // namespace platform
