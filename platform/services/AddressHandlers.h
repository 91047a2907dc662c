#pragma once

#include <optional>
#include <string>

namespace platform {

/// Which program takes an address, as the desktop knows it.
///
///     if (AddressHandlers* handlers = addressHandlers()) handlers->openAddress("mailto", "mailto:a@b.example");
///
/// Any thread.
class AddressHandlers {
  public:
    AddressHandlers() = default;
    AddressHandlers(const AddressHandlers&) = delete;
    AddressHandlers& operator=(const AddressHandlers&) = delete;
    virtual ~AddressHandlers() = default;

    /// The program registered for a scheme.
    struct Handler {
        std::string desktopId; ///< "org.gnome.Evolution.desktop"
        std::string program;   ///< as its desktop entry names it, with or without a folder
    };
    [[nodiscard]] virtual std::optional<Handler> handlerOf(const std::string& scheme) = 0;
    /// Hands the address to that program; false when there is none or it does not start.
    virtual bool openAddress(const std::string& scheme, const std::string& address) = 0;
};

/// Null without the desktop's library. The first call is on the main thread.
[[nodiscard]] AddressHandlers* addressHandlers();

} // namespace platform
