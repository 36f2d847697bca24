#include "VelmoSystem/Linux/DBus/VerbObjects.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Control/VerbCheck.h"

#include <QDBusError>
#include <QPointer>

#include <algorithm>
#include <iterator>

namespace velmo {

namespace {

const QString cancelMethod = QStringLiteral("Cancel");

QString invalidArguments()
{
    return QDBusError::errorString(QDBusError::InvalidArgs);
}

} // namespace

VerbObjects::VerbObjects(QDBusConnection bus, std::vector<VerbSyntax> table, uid_t user)
    : m_bus(std::move(bus)), m_table(std::move(table)), m_callers(m_bus, user)
{
}

VerbObjects::~VerbObjects()
{
    unregisterObjects();
}

void VerbObjects::registerObjects()
{
    for (const QString &noun : nouns())
        m_bus.registerVirtualObject(VerbBus::path(noun), this);
}

void VerbObjects::unregisterObjects()
{
    for (const QString &noun : nouns())
        m_bus.unregisterObject(VerbBus::path(noun));
}

void VerbObjects::serve(std::vector<Verb> verbs)
{
    m_verbs = std::move(verbs);
    for (const QDBusMessage &message : std::exchange(m_waiting, {}))
        run(message);
}

void VerbObjects::announceChange(const QString &noun, const QString &what)
{
    if (!nouns().contains(noun))
        return;
    if (m_changes.empty())
        QMetaObject::invokeMethod(this, &VerbObjects::emitChanges, Qt::QueuedConnection);
    m_changes.emplace(noun, what);
}

QString VerbObjects::introspect(const QString &path) const
{
    const auto verbs = verbsAt(path);
    return verbs.empty() ? QString() : VerbBus::introspection(verbs);
}

bool VerbObjects::handleMessage(const QDBusMessage &message, const QDBusConnection &)
{
    const auto verbs = verbsAt(message.path());
    if (verbs.empty() || (!message.interface().isEmpty() &&
                          message.interface() != VerbBus::interface(verbs.front().noun)))
        return false;
    const bool isVerb = std::ranges::find(verbs, message.member(), &VerbBus::method) != verbs.end();
    const bool cancels =
        message.member() == cancelMethod && std::ranges::any_of(verbs, &VerbSyntax::isLong);
    if (!isVerb && !cancels)
        return false;
    m_callers.ask(message.service(), [this, message](bool isOwn) {
        if (isOwn)
            take(message);
        else
            m_bus.send(message.createErrorReply(
                QDBusError::AccessDenied, QStringLiteral("O Orvane só atende o seu usuário")));
    });
    return true;
}

QStringList VerbObjects::nouns() const
{
    QStringList nouns;
    for (const VerbSyntax &syntax : m_table) {
        if (!nouns.contains(syntax.noun))
            nouns.append(syntax.noun);
    }
    return nouns;
}

std::vector<VerbSyntax> VerbObjects::verbsAt(const QString &path) const
{
    std::vector<VerbSyntax> verbs;
    std::ranges::copy_if(m_table, std::back_inserter(verbs), [&](const VerbSyntax &syntax) {
        return VerbBus::path(syntax.noun) == path;
    });
    return verbs;
}

void VerbObjects::take(const QDBusMessage &message)
{
    if (m_verbs)
        run(message);
    else
        m_waiting.push_back(message);
}

void VerbObjects::run(const QDBusMessage &message)
{
    const auto verbs = verbsAt(message.path());
    const auto syntax = std::ranges::find(verbs, message.member(), &VerbBus::method);
    const bool isVerb = syntax != verbs.end();
    const QString signature = isVerb ? VerbBus::signature(*syntax) : QStringLiteral("s");
    if (message.signature() != signature)
        m_bus.send(message.createErrorReply(
            invalidArguments(), QStringLiteral("%1 leva (%2), não (%3)")
                                    .arg(message.member(), signature, message.signature())));
    else if (isVerb)
        runVerb(*syntax, message);
    else
        cancel(message);
}

void VerbObjects::runVerb(const VerbSyntax &syntax, const QDBusMessage &message)
{
    const auto verb = std::ranges::find_if(*m_verbs, [&](const Verb &each) {
        return each.syntax.noun == syntax.noun && each.syntax.name == syntax.name;
    });
    if (verb == m_verbs->end()) {
        qCCritical(Log::app).noquote() << "Ninguém atende o comando" << syntax.command();
        m_bus.send(message.createErrorReply(
            QDBusError::NotSupported,
            QStringLiteral("O Orvane não atende “%1”").arg(syntax.command())));
        return;
    }
    try {
        const auto [call, token] = VerbBus::received(syntax, message.arguments());
        if (m_cancellers.contains({message.path(), token}))
            throw VerbUsageError(QStringLiteral("Já há um comando com o nome “%1”").arg(token));
        const VerbCall checked = VerbCheck::checked(syntax, call, {});
        const VerbReply answer = reply(syntax, message, token);
        try {
            verb->run(checked, answer);
        } catch (const LocalizedError &error) {
            answer.fail(error.description());
        }
    } catch (const VerbUsageError &error) {
        m_bus.send(message.createErrorReply(invalidArguments(), error.description()));
    }
}

void VerbObjects::cancel(const QDBusMessage &message)
{
    const auto found = m_cancellers.find({message.path(), message.arguments().first().toString()});
    if (found == m_cancellers.end()) {
        m_bus.send(message.createErrorReply(VerbBus::refused,
                                            QStringLiteral("Nenhum comando com este nome está em "
                                                           "andamento")));
        return;
    }
    m_bus.send(message.createReply());
    const auto cancel = found->second; // its answer removes it
    cancel();
}

VerbReply VerbObjects::reply(const VerbSyntax &syntax, const QDBusMessage &message,
                             const QString &token)
{
    const auto answer = [self = QPointer(this), message, token](const QDBusMessage &reply) {
        if (!self)
            return; // whoever still answers at the end of the run
        self->m_cancellers.erase({message.path(), token});
        self->m_bus.send(reply);
    };
    const VerbReply reply({
        .succeed =
            [=, lists = syntax.lists()](const QString &text) {
                answer(message.createReply(lists ? VerbBus::encoded(QJsonArray())
                                                 : VerbBus::text(text)));
            },
        .list =
            [=](const QJsonArray &records) {
                answer(message.createReply(VerbBus::encoded(records)));
            },
        .fail =
            [=](const QString &reason) {
                answer(message.createErrorReply(VerbBus::refused, VerbBus::text(reason)));
            },
        .progress =
            [self = QPointer(this), message, token,
             interface = VerbBus::interface(syntax.noun)](double fraction, const QString &text) {
                if (!self || token.isEmpty())
                    return;
                auto signal = QDBusMessage::createSignal(message.path(), interface,
                                                         QStringLiteral("Progress"));
                signal << token << fraction << VerbBus::text(text);
                self->m_bus.send(signal);
            },
    });
    if (!token.isEmpty())
        m_cancellers.insert_or_assign({message.path(), token}, reply.canceller());
    return reply;
}

void VerbObjects::emitChanges()
{
    for (const auto &[noun, what] : std::exchange(m_changes, {})) {
        auto signal = QDBusMessage::createSignal(VerbBus::path(noun), VerbBus::interface(noun),
                                                 QStringLiteral("Changed"));
        signal << what;
        m_bus.send(signal);
    }
}

} // namespace velmo
