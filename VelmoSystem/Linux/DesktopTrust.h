#pragma once

#include <QString>

namespace velmo {

/// What this desktop lets an application see of others.
struct DesktopTrust {
    bool accessibility = false; ///< the accessibility bus (AT-SPI) answers
    bool screen = false;        ///< the X server shows us its screen
    bool keyboard = false;      ///< XInput 2.2 reports keys pressed elsewhere

    static DesktopTrust ofThisDesktop();

    /// "acessibilidade=true tela=true teclado=true"
    QString text() const;
};

} // namespace velmo
