#pragma once

#include <string>

namespace applist {

/// The icon theme that the user's desktop shows, from its settings service, else from the files in which users set it
/// by hand; "hicolor", which every theme falls back to, when neither says.
[[nodiscard]] std::string iconThemeName();

} // namespace applist
