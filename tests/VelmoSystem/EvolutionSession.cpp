#include "tests/VelmoSystem/EvolutionSession.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusReply>

namespace velmo {
namespace {

using Interfaces = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, Interfaces>;
using Texts = QMap<QString, QString>;

const QString prefix = QStringLiteral("org.gnome.evolution.dataserver.");
const QString manager = QStringLiteral("/org/gnome/evolution/dataserver/SourceManager");
const QString services = QStringLiteral("/usr/share/dbus-1/services/");

/// An unset variable is an empty one to what reads these.
void restore(const char *variable, const QByteArray &value)
{
    qputenv(variable, value);
}

} // namespace

EvolutionSession::EvolutionSession(Past past) : m_bus(prepare(past))
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<ManagedObjects>();
    qDBusRegisterMetaType<Texts>();
    qputenv("XDG_DATA_HOME", m_home.path("data").toUtf8());
    qputenv("XDG_CONFIG_HOME", m_home.path("config").toUtf8());
}

EvolutionSession::~EvolutionSession()
{
    for (const char *kind : {"Calendar", "AddressBook", "Sources"}) {
        if (runs(kind))
            signal(kind, SIGKILL);
    }
    restore("XDG_DATA_HOME", m_dataBefore);
    restore("XDG_CONFIG_HOME", m_configBefore);
}

/// The folder of the installed services, but with their home here.
QString EvolutionSession::prepare(Past past) const
{
    if (past == Past::used)
        QDir(m_home.path()).mkpath("config/evolution");
    QString environment =
        "Exec=/usr/bin/env -u DISPLAY GSETTINGS_BACKEND=memory HOME=" + m_home.path();
    for (const char *part : {"DATA_HOME=%1/data", "CONFIG_HOME=%1/config", "CACHE_HOME=%1/cache",
                             "STATE_HOME=%1/state", "RUNTIME_DIR=%1"})
        environment += " XDG_" + QString(part).arg(m_home.path());
    for (const QString &name : QDir(services).entryList({prefix + '*'})) {
        QFile file(services + name);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Can't read %s", qPrintable(name));
        m_home.write("services/" + name,
                     file.readAll().replace("Exec=", environment.toUtf8() + ' '));
    }
    return m_home.path("services");
}

QString EvolutionSession::name(const QString &kind) const
{
    const QStringList names = m_peer.interface()->registeredServiceNames();
    const QStringList found = names.filter(prefix + kind);
    return found.isEmpty() ? QString() : found.first();
}

void EvolutionSession::start(const QString &kind) const
{
    const QStringList names = m_peer.interface()->activatableServiceNames();
    m_peer.interface()->startService(names.filter(prefix + kind).value(0));
}

void EvolutionSession::signal(const QString &kind, int number) const
{
    ::kill(pid_t(m_peer.interface()->servicePid(name(kind))), number);
}

void EvolutionSession::addSource(const QString &uid, const QString &keys) const
{
    call(manager, "SourceManager", "CreateSources", {QVariant::fromValue(Texts{{uid, keys}})});
}

void EvolutionSession::changeSource(const QString &uid, const QString &from,
                                    const QString &to) const
{
    auto message = QDBusMessage::createMethodCall(
        name("Sources"), manager, "org.freedesktop.DBus.ObjectManager", "GetManagedObjects");
    const QDBusReply<ManagedObjects> sources = m_peer.call(message);
    for (const auto &[path, interfaces] : sources.value().asKeyValueRange()) {
        const QVariantMap source = interfaces.value(prefix + "Source");
        if (source.value("UID") == uid)
            call(path.path(), "Source.Writable", "Write",
                 {source.value("Data").toString().replace(from, to)});
    }
}

QDBusMessage EvolutionSession::call(const QString &path, const QString &interface,
                                    const QString &method, const QVariantList &arguments) const
{
    auto message =
        QDBusMessage::createMethodCall(name("Sources"), path, prefix + interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_peer.call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw std::runtime_error(reply.errorMessage().toStdString());
    return reply;
}

} // namespace velmo
