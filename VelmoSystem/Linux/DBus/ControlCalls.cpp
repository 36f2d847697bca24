#include "VelmoSystem/Linux/DBus/ControlCalls.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include <QDBusError>

namespace velmo {

namespace {

using Commands = ControlEndpoint::Commands;

ControlCalls::Body plain(std::function<void()> Commands::*command)
{
    return [command](const Commands &commands) {
        (commands.*command)();
        return QVariantList();
    };
}

ControlCalls::Body openModule(const QString &module)
{
    return [module](const Commands &commands) {
        if (!module.isEmpty() && !commands.hasModule(module))
            throw LocalizedError(QStringLiteral("Não há um módulo “%1”").arg(module));
        commands.open(module);
        return QVariantList();
    };
}

ControlCalls::Body showSettings(const QString &pane)
{
    return [pane](const Commands &commands) {
        if (!pane.isEmpty() && !commands.hasSettingsPane(pane))
            throw LocalizedError(QStringLiteral("Não há uma página de ajustes “%1”").arg(pane));
        commands.settings(pane);
        return QVariantList();
    };
}

ControlCalls::Body openFiles(const QStringList &uris)
{
    return [uris](const Commands &commands) {
        commands.openFiles(LocalFiles::existing({uris.begin(), uris.end()}));
        return QVariantList();
    };
}

ControlCalls::Body unknownAction(const QString &name)
{
    return [name](const Commands &) -> QVariantList {
        throw LocalizedError(QStringLiteral("Não há uma ação “%1”").arg(name));
    };
}

} // namespace

ControlCalls::ControlCalls(QDBusConnection bus) : m_bus(std::move(bus))
{
    new ApplicationAdaptor(*this);
    new ControlAdaptor(*this);
}

ControlCalls::~ControlCalls()
{
    for (const QDBusMessage &call : m_quitCalls)
        m_bus.send(call.createReply());
}

void ControlCalls::serve(Commands commands)
{
    m_commands = std::move(commands);
    for (const auto &body : std::exchange(m_waiting, {}))
        body();
}

void ControlCalls::take(const QDBusMessage &call, Body body)
{
    call.setDelayedReply(true);
    if (m_commands)
        run(call, body);
    else
        m_waiting.emplace_back([this, call, body = std::move(body)] { run(call, body); });
}

void ControlCalls::takeQuit(const QDBusMessage &call)
{
    call.setDelayedReply(true);
    m_quitCalls.push_back(call);
    if (m_commands)
        m_commands->quit();
    else
        m_waiting.emplace_back([this] { m_commands->quit(); });
}

void ControlCalls::run(const QDBusMessage &call, const Body &body)
{
    try {
        m_bus.send(call.createReply(body(*m_commands)));
    } catch (const LocalizedError &error) {
        m_bus.send(call.createErrorReply(QDBusError::InvalidArgs, error.description()));
    }
}

ApplicationAdaptor::ApplicationAdaptor(ControlCalls &calls)
    : QDBusAbstractAdaptor(&calls), m_calls(calls)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &, const QDBusMessage &call)
{
    m_calls.take(call, plain(&Commands::activate));
}

void ApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &,
                              const QDBusMessage &call)
{
    m_calls.take(call, openFiles(uris));
}

void ApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &parameters,
                                        const QVariantMap &, const QDBusMessage &call)
{
    if (name == u"open")
        m_calls.take(call, openModule(parameters.value(0).toString()));
    else if (name == u"toggle")
        m_calls.take(call, plain(&Commands::toggle));
    else if (name == u"hide")
        m_calls.take(call, plain(&Commands::hide));
    else if (name == u"show")
        m_calls.take(call, plain(&Commands::show));
    else if (name == u"quit")
        m_calls.takeQuit(call);
    else
        m_calls.take(call, unknownAction(name));
}

ControlAdaptor::ControlAdaptor(ControlCalls &calls) : QDBusAbstractAdaptor(&calls), m_calls(calls)
{
}

void ControlAdaptor::Open(const QString &module, const QDBusMessage &call)
{
    m_calls.take(call, openModule(module));
}

void ControlAdaptor::Toggle(const QDBusMessage &call)
{
    m_calls.take(call, plain(&Commands::toggle));
}

void ControlAdaptor::Hide(const QDBusMessage &call)
{
    m_calls.take(call, plain(&Commands::hide));
}

void ControlAdaptor::Show(const QDBusMessage &call)
{
    m_calls.take(call, plain(&Commands::show));
}

void ControlAdaptor::Settings(const QString &pane, const QDBusMessage &call)
{
    m_calls.take(call, showSettings(pane));
}

void ControlAdaptor::Drop(const QStringList &uris, const QDBusMessage &call)
{
    m_calls.take(call, openFiles(uris));
}

QString ControlAdaptor::Status(const QDBusMessage &call)
{
    m_calls.take(call, [](const Commands &commands) { return QVariantList{commands.status()}; });
    return {}; // the answer is sent by then, or later
}

void ControlAdaptor::Quit(const QDBusMessage &call)
{
    m_calls.takeQuit(call);
}

} // namespace velmo
