#pragma once

#include "lockscreen/Device.h"

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// What is installed on the device, in the order of its names.
struct Installed {
    std::vector<Application> applications;
    std::vector<AppViewInfo> views; ///< in the order of the bundles' names
};

/// What of a sample phone can be chosen.
struct PhoneOptions {
    platform::CGSize size{390, 844};
    std::string passcode = "1234"; ///< there is one, so that what is about unlocking has something to unlock
    double battery = 0.82;         ///< from 0 to 1
    std::optional<std::tm> time;   ///< in place of the present one; stands still
};

/// A sample phone: what is installed, with notices and badges of it. Immutable; any thread.
class Phone {
  public:
    Phone(PhoneOptions options, Installed installed);

    /// The phone at a time of the clock, such as std::time(). The picture and the measure of texts are not its own.
    [[nodiscard]] Device device(std::time_t now) const;
    /// When it will look different by itself: at the next full minute.
    [[nodiscard]] static std::time_t nextChange(std::time_t now) { return now - now % 60 + 60; }

  private:
    PhoneOptions options_;
    Installed installed_;
};

/// Reads "18:36", today, or "2026-11-20T18:36".
[[nodiscard]] std::optional<std::tm> timeFrom(std::string_view text);

} // namespace lumora
