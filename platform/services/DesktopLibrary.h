#pragma once

#include "platform/foundation/Result.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

struct MailMessage;

/// What only the desktop's own libraries know: the programs that take addresses, and the form in which messages travel.
/// Those libraries cost each program that links them milliseconds at its start, so what calls them stands in
/// liblumora-desktop, which the first call of desktopLibrary() loads.
///
///     if (DesktopLibrary* desktop = desktopLibrary()) desktop->openAddress("mailto", "mailto:a@b.example");
///
/// Any thread.
class DesktopLibrary {
  public:
    DesktopLibrary() = default;
    DesktopLibrary(const DesktopLibrary&) = delete;
    DesktopLibrary& operator=(const DesktopLibrary&) = delete;
    virtual ~DesktopLibrary() = default;

    /// The program registered for a scheme.
    struct Handler {
        std::string desktopId; ///< "org.gnome.Evolution.desktop"
        std::string program;   ///< as its desktop entry names it, with or without a folder
    };
    [[nodiscard]] virtual std::optional<Handler> handlerOf(const std::string& scheme) = 0;
    /// Hands the address to that program; false when there is none or it does not start.
    virtual bool openAddress(const std::string& scheme, const std::string& address) = 0;

    /// The bare addresses in a list such as "A <a@b.example>, c@d.example"; fails when a part of it is no address.
    [[nodiscard]] virtual Result<std::vector<std::string>> addressesIn(const std::string& list) = 0;
    /// Writes a message to an open file, with "\n" at the ends of lines.
    [[nodiscard]] virtual Result<void> write(const MailMessage& message, int file) = 0;
};

/// Null where the library is missing or cannot be loaded: such a device sends no mail and opens no address. The first
/// call is on the main thread.
[[nodiscard]] DesktopLibrary* desktopLibrary();

} // namespace platform
