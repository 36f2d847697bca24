#include "VelmoSystem/Linux/DesktopTrust.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Linux/X11/X11Connection.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <xcb/xinput.h>

namespace velmo {

namespace {

constexpr int busTimeout = 1000; // milliseconds

bool accessibilityBusAnswers()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    return bus.call(call, QDBus::Block, busTimeout).type() == QDBusMessage::ReplyMessage;
}

bool hasRawInput(const X11Connection &connection)
{
    const X11Reply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection.handle(), xcb_input_xi_query_version(connection.handle(), 2, 2), nullptr));
    return version && (version->major_version > 2 ||
                       (version->major_version == 2 && version->minor_version >= 2));
}

QString word(bool allowed)
{
    return allowed ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

DesktopTrust DesktopTrust::ofThisDesktop()
{
    DesktopTrust trust;
    trust.accessibility = accessibilityBusAnswers();
    try {
        const X11Connection connection;
        trust.screen = true;
        trust.keyboard = hasRawInput(connection);
    } catch (const LocalizedError &) {
        // Without an X server both stay false, which is the answer.
    }
    return trust;
}

QString DesktopTrust::text() const
{
    return QStringLiteral("acessibilidade=%1 tela=%2 teclado=%3")
        .arg(word(accessibility), word(screen), word(keyboard));
}

} // namespace velmo
