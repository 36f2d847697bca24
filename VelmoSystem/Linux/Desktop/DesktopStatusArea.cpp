#include "VelmoSystem/Linux/Desktop/DesktopStatusArea.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <xcb/xfixes.h>

namespace velmo {

namespace {

constexpr QLatin1StringView notifierWatcher("org.kde.StatusNotifierWatcher");
constexpr QLatin1StringView notifierPath("/StatusNotifierWatcher");

} // namespace

DesktopStatusArea::DesktopStatusArea(QDBusConnection sessionBus, X11Connection &connection)
    : m_bus(std::move(sessionBus)),
      m_watcher(notifierWatcher, m_bus, QDBusServiceWatcher::WatchForRegistration),
      m_connection(connection),
      m_tray(connection.atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(connection.screenNumber())))
{
}

void DesktopStatusArea::start()
{
    watchTray();
    if (!m_bus.isConnected()) {
        lookForTray();
        return;
    }
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this,
            &DesktopStatusArea::askForHost);
    m_bus.connect(notifierWatcher, notifierPath, notifierWatcher,
                  QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(askForHost()));
    askForHost();
}

void DesktopStatusArea::askForHost()
{
    if (m_isAvailable)
        return;
    auto question = QDBusMessage::createMethodCall(
        notifierWatcher, notifierPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question.setAutoStartService(false);
    question << QString(notifierWatcher) << QStringLiteral("IsStatusNotifierHostRegistered");
    auto *const call = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *call;
        if (answer.isValid() && answer.value().variant().toBool())
            setAvailable();
        else
            lookForTray();
    });
}

void DesktopStatusArea::watchTray()
{
    auto *server = m_connection.handle();
    const auto *fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (!fixes || !fixes->present)
        return;
    m_trayChanges = m_connection.subscribe(
        fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY, [this](const xcb_generic_event_t &event) {
            const auto &change =
                reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
            if (change.selection == m_tray)
                lookForTray();
        });
    xcb_xfixes_select_selection_input(server, m_connection.root(), m_tray,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
}

void DesktopStatusArea::lookForTray()
{
    auto *server = m_connection.handle();
    const X11Reply<xcb_get_selection_owner_reply_t> answer(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, m_tray), nullptr));
    if (answer && answer->owner != XCB_NONE)
        setAvailable();
}

void DesktopStatusArea::setAvailable()
{
    if (std::exchange(m_isAvailable, true))
        return;
    Q_EMIT becameAvailable();
}

} // namespace velmo
