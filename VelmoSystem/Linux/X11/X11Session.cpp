#include "VelmoSystem/Linux/X11/X11Session.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <xcb/xcb.h>

namespace velmo {

namespace {

constexpr const char *platform = "QT_QPA_PLATFORM";

} // namespace

X11Session::X11Session() : m_isUsersChoice(qEnvironmentVariableIsSet(platform))
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool hasServer = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!hasServer)
        throw LocalizedError(QStringLiteral(
            "O Orvane precisa de uma tela X11 e não encontrou nenhuma (DISPLAY). Inicie-o dentro "
            "da sua sessão gráfica."));
    if (!m_isUsersChoice)
        qputenv(platform, "xcb");
}

X11Session::~X11Session()
{
    if (!m_isUsersChoice)
        qunsetenv(platform);
}

} // namespace velmo
