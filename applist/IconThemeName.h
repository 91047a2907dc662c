#pragma once

#include <string>

namespace applist {

/// The icon theme that the user's desktop shows, by its settings service, else by the files in which users set it by
/// hand; "hicolor", to which every theme falls back, if neither names one. One thread at a time.
[[nodiscard]] std::string iconThemeName();

} // namespace applist
