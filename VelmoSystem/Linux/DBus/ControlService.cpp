#include "VelmoSystem/Linux/DBus/ControlService.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Linux/DBus/ControlCalls.h"
#include "VelmoSystem/Linux/DBus/VerbObjects.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

namespace velmo {

ControlService::ControlService(QDBusConnection bus, std::vector<QUrl> files,
                               std::vector<VerbSyntax> verbs)
    : m_bus(std::move(bus)), m_files(std::move(files)),
      m_calls(std::make_unique<ControlCalls>(m_bus)),
      m_verbs(std::make_unique<VerbObjects>(m_bus, std::move(verbs)))
{
}

ControlService::~ControlService()
{
    // The name goes first: who hears that we have quit may start the next one at once.
    if (m_bus.isConnected())
        m_bus.unregisterService(ControlBus::service);
}

ControlEndpoint::Registration ControlService::claim()
{
    if (!m_bus.isConnected()) {
        qCWarning(Log::app, "Sem barramento de sessão: o Orvane não atende outros programas");
        return Registration::noBus;
    }
    // Before the name: calls may come with it.
    m_bus.registerObject(ControlBus::path, m_calls.get(), QDBusConnection::ExportAdaptors);
    m_verbs->registerObjects();
    // One that doesn't answer may be on its way out; then the name is ours.
    if (ownName() || (!activateOther() && ownName()))
        return Registration::first;
    m_verbs->unregisterObjects();
    m_bus.unregisterObject(ControlBus::path);
    return Registration::second;
}

void ControlService::serve(Commands commands, std::vector<Verb> verbs)
{
    m_calls->serve(std::move(commands));
    m_verbs->serve(std::move(verbs));
}

void ControlService::changed(const QString &noun, const QString &what)
{
    m_verbs->announceChange(noun, what);
}

bool ControlService::ownName()
{
    const auto reply = m_bus.interface()->registerService(
        ControlBus::service, QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

bool ControlService::activateOther()
{
    const auto method = m_files.empty() ? QStringLiteral("Activate") : QStringLiteral("Open");
    auto message = QDBusMessage::createMethodCall(ControlBus::service, ControlBus::path,
                                                  ControlBus::applicationInterface, method);
    message.setAutoStartService(false);
    if (!m_files.empty()) {
        QStringList uris;
        for (const QUrl &file : m_files)
            uris.append(file.toString(QUrl::FullyEncoded));
        message << uris;
    }
    message << QVariantMap();

    const QDBusMessage reply = m_bus.call(message, QDBus::Block, ControlBus::timeout);
    if (reply.type() != QDBusMessage::ErrorMessage)
        return true;
    qCWarning(Log::app, "O Orvane em execução não atende: %ls",
              qUtf16Printable(reply.errorMessage()));
    return false;
}

} // namespace velmo
