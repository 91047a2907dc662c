#pragma once

#include "profiles/ReadProfile.h"

#include <functional>
#include <string>
#include <vector>

namespace profiles {

/// What is installed here, of what a profile may name. A kind without a function is not asked for.
struct Inventory {
    using Has = std::function<bool(const std::string& name)>;
    Has font;        ///< by its name
    Has application; ///< by its display identifier
    Has appView;     ///< by its plug-in's identifier
};

/// A remark for each setting that names what is not installed. Calls the inventory. Any thread, as the next one.
[[nodiscard]] std::vector<Remark> absentFrom(const Inventory& inventory, const ReadProfile& read);

/// Whether a profile names applications or App Views at all, which take a while to look for.
[[nodiscard]] bool namesApplications(const Profile& profile);

} // namespace profiles
