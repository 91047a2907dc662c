#pragma once

#include <QtGlobal>

namespace programs {

/// Without an address, the toolkit would look for a bus by itself, or even start one, and wait for it.
inline bool hasSessionBus() {
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace programs
