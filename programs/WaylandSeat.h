#pragma once

namespace programs {

/// Whether the Wayland display that the environment names has no seat: nothing to type or point with. Where there is no
/// such display, false. Waits for the display's answer.
///
/// The toolkit's own input method takes it for granted that there is a seat, and ends the process at the first empty text
/// that is drawn; it must not be used then.
[[nodiscard]] bool waylandLacksSeat();

} // namespace programs
