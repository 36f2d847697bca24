#include "VelmoSystem/Linux/DBus/ControlClient.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Control/RecordTable.h"
#include "VelmoSystem/FileProcessing/LocalFiles.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"
#include "VelmoSystem/Linux/DBus/VerbBus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QJsonDocument>
#include <QUuid>

#include <limits>

namespace velmo {

namespace {

constexpr int noTimeout = std::numeric_limits<int>::max();
constexpr int verbTimeout = 30'000; ///< milliseconds
constexpr int interrupted = 130;

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

const QString notRunning = QStringLiteral("O Orvane não está em execução");

QString description(const QDBusError &error)
{
    if (error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner")
        return notRunning;
    switch (error.type()) {
    case QDBusError::Disconnected:
        return QStringLiteral("Não há barramento de sessão por onde falar com o Orvane");
    case QDBusError::ServiceUnknown:
        return notRunning;
    case QDBusError::UnknownObject:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
        return QStringLiteral("O Orvane em execução não conhece este comando");
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return QStringLiteral("O Orvane não respondeu");
    default:
        return error.message();
    }
}

QDBusMessage methodCall(const QString &path, const QString &interface, const QString &method,
                        const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(ControlBus::service, path, interface, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    return message;
}

QString text(const CommandLine::VerbRequest &request, const QJsonArray &records,
             const Console &console)
{
    if (request.asJson)
        return QString::fromUtf8(QJsonDocument(records).toJson());
    const auto &columns = request.syntax.columns;
    return console.isTerminal ? RecordTable::aligned(columns, records, console.width)
                              : RecordTable::separated(columns, records);
}

} // namespace

ControlClient::ControlClient(QDBusConnection bus, Console console)
    : m_bus(std::move(bus)), m_console(std::move(console))
{
}

void ControlClient::run(const CommandLine::Client &request, Finished finished)
{
    m_finished = std::move(finished);
    try {
        call(methodCall(ControlBus::path, ControlBus::interface, methodName(request.command),
                        arguments(request)),
             ControlBus::timeout,
             [this](const QDBusPendingCallWatcher &answer) { finish(report(answer)); });
    } catch (const LocalizedError &error) {
        m_console.writeError(error.description());
        QMetaObject::invokeMethod(
            &m_context, [this] { m_finished(1); }, Qt::QueuedConnection);
    }
}

void ControlClient::run(const CommandLine::VerbRequest &request, Finished finished)
{
    m_finished = std::move(finished);
    const VerbSyntax &syntax = request.syntax;
    const QString path = VerbBus::path(syntax.noun);
    const QString interface = VerbBus::interface(syntax.noun);
    const QString token =
        syntax.isLong() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : QString();
    if (syntax.isLong()) {
        m_cancel = methodCall(path, interface, QStringLiteral("Cancel"), {token});
        m_listeners.push_back(std::make_unique<BusListener>(
            m_bus, ControlBus::service, path, interface, QStringLiteral("Progress"),
            [this, token](const QVariantList &values) {
                if (values.value(0) == token)
                    m_console.showProgress(values.value(1).toDouble(), values.value(2).toString());
            }));
    }
    VerbCall asked = request.call;
    if (syntax.takesInput())
        asked.words.append(m_console.readSecret(syntax.arguments.back().name));
    call(methodCall(path, interface, VerbBus::method(syntax),
                    VerbBus::encoded(syntax, asked, token)),
         syntax.isLong() ? noTimeout : verbTimeout,
         [this, request](const QDBusPendingCallWatcher &answer) {
             if (m_isCancelled)
                 return;
             m_cancel.reset();
             m_console.clearProgress();
             finish(report(request, answer));
         });
}

void ControlClient::watch(const std::vector<VerbSyntax> &verbs, Finished finished)
{
    m_finished = std::move(finished);
    QStringList nouns;
    for (const VerbSyntax &verb : verbs) {
        if (nouns.contains(verb.noun))
            continue;
        nouns.append(verb.noun);
        m_listeners.push_back(std::make_unique<BusListener>(
            m_bus, ControlBus::service, VerbBus::path(verb.noun), VerbBus::interface(verb.noun),
            QStringLiteral("Changed"), [this, noun = verb.noun](const QVariantList &values) {
                m_console.writeLineNow(noun + u' ' + values.value(0).toString());
            }));
    }
    m_service = std::make_unique<QDBusServiceWatcher>(ControlBus::service, m_bus,
                                                      QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(m_service.get(), &QDBusServiceWatcher::serviceUnregistered, &m_context,
                     [this] {
                         m_console.writeError(QStringLiteral("O Orvane foi encerrado"));
                         finish(1);
                     });
    call(methodCall(ControlBus::path, QStringLiteral("org.freedesktop.DBus.Peer"),
                    QStringLiteral("Ping"), {}),
         ControlBus::timeout, [this](const QDBusPendingCallWatcher &answer) {
             if (answer.isError())
                 finish(reportError(answer.error()));
         });
}

void ControlClient::cancel()
{
    m_isCancelled = true;
    m_listeners.clear();
    m_console.clearProgress();
    if (!m_cancel) {
        m_finished(interrupted);
        return;
    }
    const QDBusMessage message = *std::exchange(m_cancel, std::nullopt);
    call(message, ControlBus::timeout,
         [this](const QDBusPendingCallWatcher &) { m_finished(interrupted); });
}

std::vector<QUrl> ControlClient::files(const QStringList &words)
{
    std::vector<QUrl> urls;
    for (const QString &word : words)
        urls.push_back(QUrl::fromUserInput(word, QDir::currentPath(), QUrl::AssumeLocalFile));
    return LocalFiles::existing(urls);
}

void ControlClient::call(const QDBusMessage &message, int timeout, const Answered &answered)
{
    // Without a connection Qt's own answer would never come.
    const auto call = m_bus.isConnected()
                          ? m_bus.asyncCall(message, timeout)
                          : QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, {}));
    auto *const watcher = new QDBusPendingCallWatcher(call, &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [watcher, answered] {
        watcher->deleteLater();
        answered(*watcher);
    });
}

void ControlClient::finish(int exitCode)
{
    if (exitCode == 0 || !m_bus.isConnected()) {
        m_finished(exitCode);
        return;
    }
    // Qt's thread for the bus still handles a failed call when we hear of it, and complains if the
    // process ends meanwhile. Once it reports another call, it is done with that one.
    const auto ping = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    call(ping, ControlBus::timeout,
         [this, exitCode](const QDBusPendingCallWatcher &) { m_finished(exitCode); });
}

int ControlClient::report(const QDBusPendingCallWatcher &answer)
{
    if (answer.isError())
        return reportError(answer.error());
    for (const QVariant &value : answer.reply().arguments())
        m_console.write(value.toString() + u'\n');
    return 0;
}

int ControlClient::report(const CommandLine::VerbRequest &request,
                          const QDBusPendingCallWatcher &answer)
{
    if (answer.isError())
        return reportError(answer.error());
    const QVariant value = answer.reply().arguments().value(0);
    if (const auto records = VerbBus::records(value)) {
        m_console.write(text(request, *records, m_console));
    } else if (const QString text = value.toString(); !text.isEmpty()) {
        m_console.write(text.endsWith(u'\n') ? text : text + u'\n');
    }
    return 0;
}

int ControlClient::reportError(const QDBusError &error)
{
    m_console.writeError(description(error));
    return 1;
}

} // namespace velmo
