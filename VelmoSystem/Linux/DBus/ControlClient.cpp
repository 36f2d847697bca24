#include "VelmoSystem/Linux/DBus/ControlClient.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/FileProcessing/LocalFiles.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>

#include <cstdio>

namespace velmo {

namespace {

QString methodName(CommandLine::Command command)
{
    using enum CommandLine::Command;
    switch (command) {
    case open:
        return QStringLiteral("Open");
    case toggle:
        return QStringLiteral("Toggle");
    case hide:
        return QStringLiteral("Hide");
    case show:
        return QStringLiteral("Show");
    case settings:
        return QStringLiteral("Settings");
    case drop:
        return QStringLiteral("Drop");
    case status:
        return QStringLiteral("Status");
    case quit:
        return QStringLiteral("Quit");
    }
    Q_UNREACHABLE();
}

/// Throws as `ControlClient::files` does.
QVariantList arguments(const CommandLine::Client &request)
{
    if (request.command == CommandLine::Command::open ||
        request.command == CommandLine::Command::settings)
        return {request.arguments.value(0)};
    if (request.command != CommandLine::Command::drop)
        return {};
    QStringList uris;
    for (const QUrl &file : ControlClient::files(request.arguments))
        uris.append(file.toString(QUrl::FullyEncoded));
    return {uris};
}

QString description(const QDBusError &error)
{
    auto notRunning = QStringLiteral("O Orvane não está em execução");
    if (error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner")
        return notRunning;
    switch (error.type()) {
    case QDBusError::Disconnected:
        return QStringLiteral("Não há barramento de sessão por onde falar com o Orvane");
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownObject:
        return notRunning;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return QStringLiteral("O Orvane não respondeu");
    default:
        return error.message();
    }
}

void writeLine(std::FILE *stream, const QString &line)
{
    std::fputs((line + u'\n').toUtf8().constData(), stream);
}

} // namespace

ControlClient::ControlClient(QDBusConnection bus) : m_bus(std::move(bus))
{
}

void ControlClient::run(const CommandLine::Client &request, std::function<void(int)> finished)
{
    auto *const watcher = new QDBusPendingCallWatcher(call(request), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [this, watcher, finished = std::move(finished)] {
                         watcher->deleteLater();
                         finish(report(*watcher), finished);
                     });
}

std::vector<QUrl> ControlClient::files(const QStringList &words)
{
    std::vector<QUrl> urls;
    for (const QString &word : words)
        urls.push_back(QUrl::fromUserInput(word, QDir::currentPath(), QUrl::AssumeLocalFile));
    return LocalFiles::existing(urls);
}

QDBusPendingCall ControlClient::call(const CommandLine::Client &request)
{
    auto message = QDBusMessage::createMethodCall(
        ControlBus::service, ControlBus::path, ControlBus::interface, methodName(request.command));
    message.setAutoStartService(false);
    try {
        message.setArguments(arguments(request));
    } catch (const LocalizedError &error) {
        return QDBusPendingCall::fromError(
            QDBusError(QDBusError::InvalidArgs, error.description()));
    }
    // Without a connection Qt's own answer would never come.
    if (!m_bus.isConnected())
        return QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, {}));
    return m_bus.asyncCall(message, ControlBus::timeout);
}

void ControlClient::finish(int exitCode, const std::function<void(int)> &finished)
{
    if (exitCode == 0 || !m_bus.isConnected()) {
        finished(exitCode);
        return;
    }
    // Qt's thread for the bus still handles a failed call when we hear of it, and complains if the
    // process ends meanwhile. Once it tells of another call, it is done with that one.
    const auto ping = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    auto *const watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(ping, ControlBus::timeout), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [exitCode, finished] { finished(exitCode); });
}

int ControlClient::report(const QDBusPendingCallWatcher &answer) const
{
    if (answer.isError()) {
        writeLine(stderr, description(answer.error()));
        return 1;
    }
    for (const QVariant &value : answer.reply().arguments())
        writeLine(stdout, value.toString());
    return 0;
}

} // namespace velmo
