#include "VelmoSystem/Linux/X11/X11Session.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QtGlobal>

#include <xcb/xcb.h>

namespace velmo {

void X11Session::prepare()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool hasServer = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!hasServer)
        throw LocalizedError(QStringLiteral(
            "O Orvane precisa de uma tela X11 e não encontrou nenhuma (DISPLAY). Inicie-o dentro "
            "da sua sessão gráfica."));
}

} // namespace velmo
