#include "VelmoSystem/Linux/DBus/RemoteObjects.h"

#include "VelmoCore/Foundation/Log.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace velmo {

namespace {

constexpr QLatin1StringView propertiesInterface("org.freedesktop.DBus.Properties");

bool meansNobody(const QDBusError &error)
{
    return error.type() == QDBusError::ServiceUnknown ||
           error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

RemoteObjects::RemoteObjects(QDBusConnection bus, QString service, Activation activation)
    : m_bus(std::move(bus)), m_service(std::move(service)), m_activation(activation)
{
    qRegisterMetaType<QDBusObjectPath>(); // `listen` looks a slot's types up by name
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &RemoteObjects::start);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        clear();
        m_isMissing = true;
        emitIfComplete();
    });
}

void RemoteObjects::start()
{
    clear();
    m_isMissing = !m_bus.isConnected();
    if (m_isMissing)
        return;
    if (m_watcher.watchedServices().isEmpty()) {
        m_watcher.setConnection(m_bus);
        m_watcher.addWatchedService(m_service);
    }
    Q_EMIT shouldAsk();
}

void RemoteObjects::call(const QString &path, const QString &interface, const QString &method,
                         const QVariantList &arguments, std::function<void(const QVariant &)> take)
{
    auto message = QDBusMessage::createMethodCall(m_service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(m_activation == Activation::allowed);
    ++m_pendingCount;
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, path, take = std::move(take), start = m_start] {
                watcher->deleteLater();
                if (start != m_start)
                    return;
                if (watcher->isError() && meansNobody(watcher->error()))
                    m_isMissing = true;
                else if (watcher->isError())
                    qCInfo(Log::app, "%ls: %ls", qUtf16Printable(path),
                           qUtf16Printable(watcher->error().message()));
                take(watcher->isError() ? QVariant() : watcher->reply().arguments().value(0));
                --m_pendingCount;
                emitIfComplete();
            });
}

void RemoteObjects::listen(const QString &interface, const QString &signal, QObject *receiver,
                           const char *slot)
{
    m_bus.connect(m_service, QString(), interface, signal, receiver, slot);
}

void RemoteObjects::follow(const QString &path, const QString &interface)
{
    if (!m_objects.try_emplace(path, Object{interface, {}}).second)
        return;
    if (m_heardInterfaces.insert(interface).second) {
        m_bus.connect(m_service, QString(), propertiesInterface,
                      QStringLiteral("PropertiesChanged"), {interface}, QStringLiteral("sa{sv}as"),
                      this,
                      SLOT(propertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
    }
    askProperties(path, interface);
}

void RemoteObjects::followOnly(const QList<QDBusObjectPath> &paths, const QString &interface)
{
    QStringList wanted;
    for (const QDBusObjectPath &path : paths)
        wanted.append(path.path());
    std::erase_if(m_objects, [&](const auto &entry) {
        return entry.second.interface == interface && !wanted.contains(entry.first);
    });
    for (const QString &path : std::as_const(wanted))
        follow(path, interface);
}

void RemoteObjects::forget(const QString &path)
{
    if (m_objects.erase(path) > 0)
        emitIfComplete();
}

QStringList RemoteObjects::paths(const QString &interface) const
{
    QStringList found;
    for (const auto &[path, object] : m_objects) {
        if (object.interface == interface)
            found.append(path);
    }
    return found;
}

void RemoteObjects::propertiesChanged(const QString &interface, const QVariantMap &changed,
                                      const QStringList &invalidated, const QDBusMessage &message)
{
    const auto found = m_objects.find(message.path());
    if (found == m_objects.end() || found->second.interface != interface)
        return;
    found->second.properties.insert(changed);
    if (!invalidated.isEmpty())
        askProperties(found->first, interface);
    emitIfComplete();
}

void RemoteObjects::clear()
{
    ++m_start;
    m_pendingCount = 0;
    m_objects.clear();
}

void RemoteObjects::askProperties(const QString &path, const QString &interface)
{
    call(path, propertiesInterface, QStringLiteral("GetAll"), {interface},
         [this, path](const QVariant &answer) {
             const auto found = m_objects.find(path);
             if (found != m_objects.end())
                 found->second.properties =
                     DBusValue::as<QVariantMap>(answer).value_or(QVariantMap());
         });
}

void RemoteObjects::emitIfComplete()
{
    if (!isWaiting())
        Q_EMIT changed();
}

} // namespace velmo
