#include "VelmoSystem/Linux/Device/NetworkManagerMonitor.h"

namespace velmo {

namespace {

constexpr QLatin1StringView service("org.freedesktop.NetworkManager");
constexpr QLatin1StringView managerPath("/org/freedesktop/NetworkManager");
constexpr QLatin1StringView managerInterface("org.freedesktop.NetworkManager");
constexpr QLatin1StringView connectionInterface("org.freedesktop.NetworkManager.Connection.Active");

constexpr uint connectedSite = 60; ///< NMState: there is a default route, maybe not the Internet
constexpr uint activated = 2;      ///< NMActiveConnectionState
constexpr uint hasWiFi = 1;        ///< NMRadioFlags

} // namespace

NetworkManagerMonitor::NetworkManagerMonitor(QDBusConnection systemBus)
    : m_objects(std::move(systemBus), service, RemoteObjects::Activation::never)
{
    connect(&m_objects, &RemoteObjects::shouldAsk, this,
            [this] { m_objects.follow(managerPath, managerInterface); });
    connect(&m_objects, &RemoteObjects::changed, this, &NetworkManagerMonitor::update);
}

void NetworkManagerMonitor::start()
{
    m_objects.start();
    if (m_objects.isMissing())
        update();
}

void NetworkManagerMonitor::update()
{
    const auto connections =
        m_objects.value<QList<QDBusObjectPath>>(managerPath, QStringLiteral("ActiveConnections"));
    m_objects.followOnly(connections.value_or(QList<QDBusObjectPath>()), connectionInterface);
    if (m_objects.isWaiting())
        return;
    Reading reading = read();
    if (reading == m_reading)
        return;
    m_reading = std::move(reading);
    Q_EMIT changed();
}

NetworkManagerMonitor::Reading NetworkManagerMonitor::read() const
{
    if (m_objects.isMissing())
        return {.issue = QStringLiteral("O NetworkManager não está disponível.")};
    const auto state = m_objects.value<uint>(managerPath, QStringLiteral("State"));
    if (!state)
        return {.issue = QStringLiteral("O NetworkManager não respondeu.")};
    Reading reading{.path = readPath(*state)};
    // Versions before 1.38 don't say whether there is any Wi-Fi to switch on.
    const auto radios = m_objects.value<uint>(managerPath, QStringLiteral("RadioFlags"));
    if ((radios.value_or(hasWiFi) & hasWiFi) != 0)
        reading.isWiFiPoweredOn =
            m_objects.value<bool>(managerPath, QStringLiteral("WirelessEnabled"));
    return reading;
}

NetworkMonitor::Path NetworkManagerMonitor::readPath(uint state) const
{
    Path path{.isSatisfied = state >= connectedSite};
    for (const QString &connection : m_objects.paths(connectionInterface)) {
        if (m_objects.value<uint>(connection, QStringLiteral("State")) != activated)
            continue;
        const auto type = m_objects.value<QString>(connection, QStringLiteral("Type"));
        path.usesWiFi = path.usesWiFi || type == u"802-11-wireless";
        path.usesWiredEthernet = path.usesWiredEthernet || type == u"802-3-ethernet";
    }
    const auto primary =
        m_objects.value<QDBusObjectPath>(managerPath, QStringLiteral("PrimaryConnection"));
    if (primary)
        path.name =
            m_objects.value<QString>(primary->path(), QStringLiteral("Id")).value_or(QString());
    return path;
}

} // namespace velmo
