#pragma once

#include "lockscreen/KeyTable.h"

#include <algorithm>
#include <string>

namespace tests {

/// Whether a path of diff() is one that the key may change.
inline bool isAllowed(const lumora::KeyEntry& entry, const std::string& path) {
    return std::ranges::any_of(entry.paths, [&](std::string_view allowed) {
        if (!path.starts_with(allowed)) return false;
        return allowed.empty() || path.size() == allowed.size() || path[allowed.size()] == '.' ||
               path[allowed.size()] == '[';
    });
}

} // namespace tests
