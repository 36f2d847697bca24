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

} // namespace

KeyringSession::KeyringSession()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toUtf8());
}

KeyringSession::~KeyringSession()
{
    kill();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_addressBefore);
}

void KeyringSession::start(const QStringList &options)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(variable, m_home.path());
    environment.remove("DISPLAY");
    m_keyring.setProcessEnvironment(environment);

    QDBusServiceWatcher watcher(secrets, m_peer, QDBusServiceWatcher::WatchForRegistration);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QObject::connect(&m_keyring, &QProcess::finished, &loop, &QEventLoop::quit);
    m_keyring.start("gnome-keyring-daemon",
                    options + QStringList{"--foreground", "--components=secrets"});
    m_keyring.write("senha");
    m_keyring.closeWriteChannel();
    loop.exec();
    if (!m_peer.interface()->isServiceRegistered(secrets))
        throw std::runtime_error("no gnome-keyring: " +
                                 m_keyring.readAllStandardError().toStdString());
}

void KeyringSession::lock()
{
    QDBusMessage message = QDBusMessage::createMethodCall(secrets, "/org/freedesktop/secrets",
                                                          "org.freedesktop.Secret.Service", "Lock");
    message << QVariant::fromValue(QList{QDBusObjectPath(loginCollection)});
    const QDBusMessage reply = m_peer.call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw std::runtime_error(reply.errorMessage().toStdString());
}

QStringList KeyringSession::labels() const
{
    const auto property = [this](const QString &path, const QString &type, const QString &name) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(secrets, path, "org.freedesktop.DBus.Properties", "Get");
        message << "org.freedesktop.Secret." + type << name;
        const QDBusReply<QDBusVariant> reply = m_peer.call(message);
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
