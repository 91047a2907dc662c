#pragma once

#include "platform/foundation/Result.h"
#include "platform/services/MailMessage.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

/// What only the desktop's own libraries know: which program takes an address, and how a message is written. Those
/// libraries cost every program that links them milliseconds at its start, so what calls them is a library of its own,
/// beside this one, which is loaded when it is first asked for.
///
///     if (DesktopServices* desktop = desktopServices()) desktop->openAddress("mailto", "mailto:a@b.example");
///
/// Any thread.
class DesktopServices {
  public:
    DesktopServices() = default;
    DesktopServices(const DesktopServices&) = delete;
    DesktopServices& operator=(const DesktopServices&) = delete;
    virtual ~DesktopServices() = default;

    /// The program registered for a scheme.
    struct Handler {
        std::string desktopId; ///< "org.gnome.Evolution.desktop"
        std::string program;   ///< as its desktop entry names it, with or without a folder
    };
    [[nodiscard]] virtual std::optional<Handler> handlerOf(const std::string& scheme) = 0;
    /// Hands the address to that program; false when there is none or it does not start.
    virtual bool openAddress(const std::string& scheme, const std::string& address) = 0;

    /// The bare addresses in a list such as "A <a@b.example>, c@d.example"; fails when any part of it is none.
    [[nodiscard]] virtual Result<std::vector<std::string>> addressesIn(const std::string& list) = 0;
    /// Writes a message to an open file in the form in which it travels, with "\n" at the ends of lines.
    [[nodiscard]] virtual Result<bool> writeMessage(const MailMessage& message, int file) = 0;
};

/// Null when that library is not there or cannot be loaded. The first call is on the main thread.
[[nodiscard]] DesktopServices* desktopServices();

} // namespace platform
