#pragma once

namespace velmo::X11Session {

/// Makes Qt use X11, also in a Wayland session, where the panel then shows through XWayland. Before
/// the application object. Throws `LocalizedError` where there is no X server: Qt itself would
/// abort.
void prepare();

} // namespace velmo::X11Session
