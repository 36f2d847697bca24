#include "VelmoSystem/Linux/Device/BlueZAdapter.h"

#include <QDBusMessage>

namespace velmo {

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, Interfaces>;

constexpr QLatin1StringView service("org.bluez");
constexpr QLatin1StringView objectManager("org.freedesktop.DBus.ObjectManager");
constexpr QLatin1StringView adapterInterface("org.bluez.Adapter1");

} // namespace

BlueZAdapter::BlueZAdapter(QDBusConnection systemBus)
    : m_objects(std::move(systemBus), service, RemoteObjects::Activation::never)
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<ManagedObjects>();
    connect(&m_objects, &RemoteObjects::shouldAsk, this, &BlueZAdapter::ask);
    connect(&m_objects, &RemoteObjects::changed, this, &BlueZAdapter::update);
}

void BlueZAdapter::start()
{
    if (!std::exchange(m_isStarted, true)) {
        m_objects.listen(objectManager, QStringLiteral("InterfacesAdded"), this,
                         SLOT(interfacesAdded(QDBusMessage)));
        m_objects.listen(objectManager, QStringLiteral("InterfacesRemoved"), this,
                         SLOT(interfacesRemoved(QDBusObjectPath, QStringList)));
    }
    m_objects.start();
    if (m_objects.isMissing())
        update();
}

void BlueZAdapter::interfacesAdded(const QDBusMessage &message)
{
    const auto path = DBusValue::as<QDBusObjectPath>(message.arguments().value(0));
    const auto interfaces = DBusValue::as<Interfaces>(message.arguments().value(1));
    if (path && interfaces && interfaces->contains(adapterInterface))
        m_objects.follow(path->path(), adapterInterface);
}

void BlueZAdapter::interfacesRemoved(const QDBusObjectPath &path, const QStringList &interfaces)
{
    if (interfaces.contains(adapterInterface))
        m_objects.forget(path.path());
}

void BlueZAdapter::ask()
{
    m_isListed = false;
    m_objects.call(QStringLiteral("/"), objectManager, QStringLiteral("GetManagedObjects"), {},
                   [this](const QVariant &answer) {
                       const auto objects = DBusValue::as<ManagedObjects>(answer);
                       m_isListed = objects.has_value();
                       for (const auto &[path, interfaces] :
                            objects.value_or(ManagedObjects()).asKeyValueRange()) {
                           if (interfaces.contains(adapterInterface))
                               m_objects.follow(path.path(), adapterInterface);
                       }
                   });
}

void BlueZAdapter::update()
{
    std::optional<bool> isPoweredOn;
    for (const QString &adapter : m_objects.paths(adapterInterface)) {
        if (const auto own = m_objects.value<bool>(adapter, QStringLiteral("Powered")))
            isPoweredOn = *own || isPoweredOn.value_or(false);
    }
    QString issue;
    if (m_objects.isMissing())
        issue = QStringLiteral("O BlueZ não está disponível.");
    else if (!m_isListed)
        issue = QStringLiteral("O BlueZ não respondeu.");
    else if (!isPoweredOn)
        issue = QStringLiteral("Nenhum adaptador Bluetooth.");
    if (isPoweredOn == m_isPoweredOn && issue == m_issue)
        return;
    m_isPoweredOn = isPoweredOn;
    m_issue = issue;
    Q_EMIT changed();
}

} // namespace velmo
