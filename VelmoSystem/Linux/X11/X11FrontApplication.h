#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/Applications.h"
#include "VelmoSystem/Ports/FrontApplication.h"

#include <QStringList>

namespace velmo {

/// The application of `_NET_ACTIVE_WINDOW`, through what the window says of itself and the desktop
/// entry that this leads to.
class X11FrontApplication : public FrontApplication {
public:
    X11FrontApplication(X11Connection &connection, const Applications &applications);

    std::optional<Info> current() const override;

private:
    std::optional<Applications::Application> entryOf(const QStringList &names) const;

    X11Connection &m_connection;
    const Applications &m_applications;
};

} // namespace velmo
