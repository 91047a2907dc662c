#pragma once

#include "platform/foundation/Value.h"

#include <cstdint>
#include <functional>

namespace settings {

/// Where the drawn rows hand what the user's hand did. GUI thread; returns at once.
class Events {
  public:
    virtual void rowTapped(std::uint64_t page, std::size_t row) = 0;
    /// `taken` is called, on the GUI thread, when the page has the value and its snapshot has been shown.
    virtual void valueChanged(std::uint64_t page, std::size_t row, const platform::Value& value,
                              std::function<void()> taken) = 0;

  protected:
    ~Events() = default;
};

} // namespace settings
