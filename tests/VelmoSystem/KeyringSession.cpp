#include "tests/VelmoSystem/KeyringSession.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QEventLoop>

#include <stdexcept>

namespace velmo {
namespace {

constexpr auto secrets = "org.freedesktop.secrets";
constexpr auto loginCollection = "/org/freedesktop/secrets/collection/login";

const QByteArray busConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>)";

} // namespace

KeyringSession::KeyringSession()
    : m_connectionName(m_home.path()), m_addressBefore(qgetenv("DBUS_SESSION_BUS_ADDRESS"))
{
    m_home.write("bus.conf", busConfiguration);
    m_busProcess.start("dbus-daemon", {"--config-file=" + m_home.path("bus.conf"), "--nofork",
                                       "--nopidfile", "--print-address"});
    if (!m_busProcess.waitForReadyRead())
        throw std::runtime_error("no dbus-daemon");
    const QByteArray address = m_busProcess.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    QDBusConnection::connectToBus(QString::fromUtf8(address), m_connectionName);
}

KeyringSession::~KeyringSession()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
    for (QProcess *process : {&m_keyring, &m_busProcess}) {
        process->kill();
        process->waitForFinished();
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_addressBefore);
}

void KeyringSession::start(const QStringList &options)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(variable, m_home.path());
    environment.remove("DISPLAY");
    m_keyring.setProcessEnvironment(environment);

    QDBusConnection bus(m_connectionName);
    QDBusServiceWatcher watcher(secrets, bus, QDBusServiceWatcher::WatchForRegistration);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QObject::connect(&m_keyring, &QProcess::finished, &loop, &QEventLoop::quit);
    m_keyring.start("gnome-keyring-daemon",
                    options + QStringList{"--foreground", "--components=secrets"});
    m_keyring.write("senha");
    m_keyring.closeWriteChannel();
    loop.exec();
    if (!bus.interface()->isServiceRegistered(secrets))
        throw std::runtime_error("no gnome-keyring: " +
                                 m_keyring.readAllStandardError().toStdString());
}

void KeyringSession::lock()
{
    QDBusMessage message = QDBusMessage::createMethodCall(secrets, "/org/freedesktop/secrets",
                                                          "org.freedesktop.Secret.Service", "Lock");
    message << QVariant::fromValue(QList{QDBusObjectPath(loginCollection)});
    const QDBusMessage reply = QDBusConnection(m_connectionName).call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw std::runtime_error(reply.errorMessage().toStdString());
}

QStringList KeyringSession::labels() const
{
    const auto property = [this](const QString &path, const QString &type, const QString &name) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(secrets, path, "org.freedesktop.DBus.Properties", "Get");
        message << "org.freedesktop.Secret." + type << name;
        const QDBusReply<QDBusVariant> reply = QDBusConnection(m_connectionName).call(message);
        return reply.value().variant();
    };
    QStringList labels;
    const QVariant items = property(loginCollection, "Collection", "Items");
    for (const auto &item : qdbus_cast<QList<QDBusObjectPath>>(items))
        labels += property(item.path(), "Item", "Label").toString();
    labels.sort();
    return labels;
}

void KeyringSession::kill()
{
    m_keyring.kill();
    m_keyring.waitForFinished();
}

} // namespace velmo
