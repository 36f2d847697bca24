#pragma once

#include <QtGlobal>

namespace velmo {

/// While it lives, an application object that is made uses X11, also in a Wayland session, where
/// the panel then shows through XWayland. Its end leaves the environment as it was: programs that
/// Orvane starts choose for themselves.
class X11Session {
public:
    /// Throws `LocalizedError` where there is no X server: Qt itself would abort.
    X11Session();
    ~X11Session();
    Q_DISABLE_COPY_MOVE(X11Session)

private:
    const bool m_isUsersChoice;
};

} // namespace velmo
