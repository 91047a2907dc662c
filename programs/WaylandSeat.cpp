#include "programs/WaylandSeat.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <wayland-client.h>

namespace programs {

bool waylandLacksSeat() {
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(wl_display_connect(nullptr),
                                                                                &wl_display_disconnect);
    if (!display) return false;
    const std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)> registry(wl_display_get_registry(display.get()),
                                                                                &wl_registry_destroy);
    bool seat = false;
    static constexpr wl_registry_listener kListener{
        [](void* found, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
            if (std::strcmp(interface, wl_seat_interface.name) == 0) *static_cast<bool*>(found) = true;
        },
        [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(registry.get(), &kListener, &seat);
    return wl_display_roundtrip(display.get()) >= 0 && !seat;
}

} // namespace programs
