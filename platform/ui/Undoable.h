#pragma once

#include "platform/Export.h"
#include "platform/foundation/Value.h"

#include <string>

namespace platform {

/// A view in which a change can be taken back: who shows it keeps the state before a change, and has it restored when
/// the user wants that. Main thread.
class PLATFORM_EXPORT Undoable {
  public:
    struct State {
        Value stored; ///< what is stored under the key; nil when nothing ever was
        Value shown;  ///< what else the view needs to look as it did
        friend bool operator==(const State&, const State&) = default;
    };

    virtual ~Undoable();

    /// The preference key under which the view stores.
    [[nodiscard]] virtual std::string undoKey() const = 0;
    [[nodiscard]] virtual State undoState() const = 0;
    /// Shows a former state, perhaps that of another view of its class, and stores what was stored then: one message,
    /// and none for nil.
    virtual void restore(const State& state) = 0;

  protected:
    Undoable() = default;
    Undoable(const Undoable&) = default;
    Undoable& operator=(const Undoable&) = default;
};

} // namespace platform
