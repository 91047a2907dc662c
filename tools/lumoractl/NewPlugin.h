#pragma once

#include "platform/foundation/Result.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// A plug-in to be made from the kit's template.
struct NewPlugin {
    std::string name;             ///< of the bundle, the principal class and the source file
    std::string identifier;       ///< in reverse-domain form
    std::filesystem::path folder; ///< missing or empty
};

/// Why a text cannot name a plug-in that is made; empty when it can.
[[nodiscard]] std::string isPluginName(const std::string& text);
/// Whether a text is in reverse-domain form, as "org.example.name".
[[nodiscard]] bool isReverseDomain(std::string_view text);

/// Makes the folder, ready to be built, and gives the names of its files. Overwrites nothing. Fails where the kit is not
/// installed with this program, where something is in the folder, and where it cannot be written.
[[nodiscard]] platform::Result<std::vector<std::string>> makePlugin(const NewPlugin& wanted);

} // namespace lumora
