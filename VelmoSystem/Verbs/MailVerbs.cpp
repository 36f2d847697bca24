#include "VelmoSystem/Verbs/MailVerbs.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Words.h"

#include <QJsonObject>

#include <algorithm>

namespace velmo {

namespace {

const QString noun = QStringLiteral("mail");
const QString hostOption = QStringLiteral("host");
const QString portOption = QStringLiteral("port");
const QString usernameOption = QStringLiteral("username");

QString stateName(const MailStatus &status)
{
    return std::visit(
        overloaded{
            [](const MailStatus::Offline &) { return QStringLiteral("offline"); },
            [](const MailStatus::Connecting &) { return QStringLiteral("connecting"); },
            [](const MailStatus::Online &) { return QStringLiteral("online"); },
        },
        status.state);
}

QJsonValue problem(const MailStatus &status)
{
    const auto *offline = std::get_if<MailStatus::Offline>(&status.state);
    return offline ? QJsonValue(offline->reason) : QJsonValue();
}

int unreadCount(const MailService &mail, const Uuid &account)
{
    return int(std::ranges::count_if(mail.messages(), [&](const MailMessage &message) {
        return message.accountID == account && !message.isRead;
    }));
}

QJsonArray accountRecords(const MailService &mail)
{
    QJsonArray records;
    for (const MailAccount &account : mail.accounts()) {
        const MailStatus status = mail.status(account.id);
        records.append(QJsonObject{
            {QStringLiteral("id"), uuidText(account.id)},
            {QStringLiteral("email"), account.email},
            {QStringLiteral("provider"), VerbTable::caseName(account.provider)},
            {QStringLiteral("providerTitle"), MailProviders::title(account.provider)},
            {QStringLiteral("host"), account.host},
            {QStringLiteral("port"), account.port},
            {QStringLiteral("username"), account.username},
            {QStringLiteral("state"), stateName(status)},
            {QStringLiteral("problem"), problem(status)},
            {QStringLiteral("unread"), unreadCount(mail, account.id)},
        });
    }
    return records;
}

QJsonArray messageRecords(const MailService &mail)
{
    QJsonArray records;
    for (const MailMessage &message : mail.messages()) {
        const auto thread = message.gmailThreadID;
        records.append(QJsonObject{
            {QStringLiteral("id"), message.id()},
            {QStringLiteral("accountID"), uuidText(message.accountID)},
            {QStringLiteral("uid"), qint64(message.uid)},
            {QStringLiteral("from"),
             QJsonObject{{QStringLiteral("name"), message.from.name},
                         {QStringLiteral("address"), message.from.address}}},
            {QStringLiteral("sender"), message.from.display()},
            {QStringLiteral("subject"), message.subject},
            {QStringLiteral("date"), VerbTable::date(message.date)},
            {QStringLiteral("snippet"), message.snippet},
            {QStringLiteral("isRead"), message.isRead},
            {QStringLiteral("messageID"), VerbTable::text(message.messageID)},
            {QStringLiteral("gmailThreadID"),
             thread ? QJsonValue(QString::number(*thread)) : QJsonValue()},
            {QStringLiteral("code"), VerbTable::text(message.code)},
            {QStringLiteral("signInLink"),
             message.signInLink ? QJsonValue(message.signInLink->toString(QUrl::FullyEncoded))
                                : QJsonValue()},
        });
    }
    return records;
}

/// The message whose id is the first argument. Throws `LocalizedError`.
MailMessage named(const MailService &mail, const VerbCall &call)
{
    const auto &messages = mail.messages();
    const QString id = call.words.value(0);
    const auto message = std::ranges::find_if(messages, [&](const MailMessage &one) {
        return one.id().compare(id, Qt::CaseInsensitive) == 0;
    });
    if (message == messages.end())
        throw LocalizedError(
            QStringLiteral("Não há uma mensagem “%1” na caixa de entrada.").arg(id));
    return *message;
}

void add(MailService &mail, const VerbCall &call, const VerbReply &reply)
{
    const auto option = [&](const QString &name) -> std::optional<QString> {
        const auto given = call.options.find(name);
        return given == call.options.end() ? std::nullopt : std::optional(given->second);
    };
    const auto account = MailAccount::make(
        call.words.value(0),
        {option(hostOption), VerbTable::number(call, portOption), option(usernameOption)});
    if (account.host.isEmpty())
        throw LocalizedError(
            QStringLiteral("“%1” não é um endereço de e-mail.").arg(account.email));
    if (account.port < 1 || account.port > 65'535)
        throw LocalizedError(QStringLiteral("A porta vai de 1 a 65535."));
    if (call.words.value(1).isEmpty())
        throw LocalizedError(QStringLiteral("A senha vem pela entrada padrão, e não veio."));
    mail.add(account, call.words.value(1), [reply](const MailService::Problem &problem) {
        if (problem)
            reply.fail(*problem);
        else
            reply.succeed();
    });
}

void remove(MailService &mail, const VerbCall &call)
{
    const QString email = call.words.value(0);
    for (const MailAccount &account : mail.accounts()) {
        if (account.email.compare(email, Qt::CaseInsensitive) == 0) {
            mail.remove(account.id);
            return;
        }
    }
    throw LocalizedError(QStringLiteral("Não há uma conta “%1”.").arg(email));
}

void show(MailService &mail, const VerbCall &call, const VerbReply &reply)
{
    const MailMessage message = named(mail, call);
    mail.fetchWhole(
        message, [message, reply](const std::optional<ParsedMail> &whole, const QString &problem) {
            if (!whole) {
                reply.fail(problem);
                return;
            }
            const QString from =
                message.from.name.isEmpty()
                    ? message.from.address
                    : QStringLiteral("%1 <%2>").arg(message.from.name, message.from.address);
            reply.succeed(
                QStringLiteral("De: %1\nAssunto: %2\nData: %3\n\n%4\n")
                    .arg(from, message.subject, Words::dateAndTime(message.date), whole->text));
        });
}

void giveCode(MailService &mail, Date now, const VerbReply &reply)
{
    const auto signIns = mail.recentSignIns(now);
    if (signIns.empty())
        throw LocalizedError(QStringLiteral("Nenhum código chegou nos últimos dez minutos."));
    const MailMessage message = signIns.front();
    mail.useSignIn(message);
    reply.succeed(message.code.value_or(
        message.signInLink ? message.signInLink->toString(QUrl::FullyEncoded) : QString()));
}

} // namespace

std::vector<VerbSyntax> MailVerbs::syntaxes()
{
    const VerbArgument address{.name = QStringLiteral("ENDEREÇO")};
    const VerbArgument id{.name = QStringLiteral("ID")};
    const auto ofMessage = [&](const QString &name, const QString &summary) {
        return VerbSyntax{.noun = noun, .name = name, .summary = summary, .arguments = {id}};
    };
    return {
        {.noun = noun,
         .name = QStringLiteral("add"),
         .summary = QStringLiteral("conecta uma conta de e-mail; a senha vem pela entrada padrão"),
         .arguments = {address,
                       {.name = QStringLiteral("SENHA"), .kind = VerbArgument::Kind::input}},
         .options = {{.name = hostOption,
                      .value = QStringLiteral("SERVIDOR"),
                      .summary = QStringLiteral("o servidor IMAP; sem ele, o do provedor")},
                     {.name = portOption,
                      .value = QStringLiteral("PORTA"),
                      .summary = QStringLiteral("a porta; sem ela, 993"),
                      .kind = VerbArgument::Kind::number},
                     {.name = usernameOption,
                      .value = QStringLiteral("USUÁRIO"),
                      .summary = QStringLiteral("o nome de usuário; sem ele, o endereço")}}},
        {.noun = noun,
         .name = QStringLiteral("remove"),
         .summary = QStringLiteral("desconecta uma conta e esquece a senha"),
         .arguments = {address}},
        {.noun = noun,
         .name = QStringLiteral("accounts"),
         .summary = QStringLiteral("lista as contas de e-mail"),
         .columns = {{QStringLiteral("email"), QStringLiteral("Endereço")},
                     {QStringLiteral("providerTitle"), QStringLiteral("Provedor")},
                     {QStringLiteral("state"), QStringLiteral("Estado")},
                     {QStringLiteral("unread"), QStringLiteral("Não lidas")},
                     {QStringLiteral("problem"), QStringLiteral("Problema")}}},
        {.noun = noun,
         .name = QStringLiteral("list"),
         .summary = QStringLiteral("lista as mensagens mais novas"),
         .columns = {{QStringLiteral("id"), QStringLiteral("ID")},
                     {QStringLiteral("date"), QStringLiteral("Data")},
                     {QStringLiteral("sender"), QStringLiteral("De")},
                     {QStringLiteral("subject"), QStringLiteral("Assunto")}}},
        ofMessage(QStringLiteral("show"), QStringLiteral("escreve a mensagem inteira")),
        ofMessage(QStringLiteral("read"), QStringLiteral("marca a mensagem como lida")),
        ofMessage(QStringLiteral("archive"), QStringLiteral("arquiva a mensagem")),
        ofMessage(QStringLiteral("trash"), QStringLiteral("move a mensagem para o lixo")),
        {.noun = noun,
         .name = QStringLiteral("code"),
         .summary = QStringLiteral("escreve o código de acesso mais novo")},
        {.noun = noun,
         .name = QStringLiteral("refresh"),
         .summary = QStringLiteral("procura mensagens novas agora")},
    };
}

std::vector<Verb> MailVerbs::make(MailService &mail, const Scheduler &scheduler)
{
    const auto perform = [&mail](MailService::Action action) {
        return [&mail, action](const VerbCall &call, const VerbReply &reply) {
            mail.performNow(action, named(mail, call), [reply](const auto &error) {
                if (error)
                    reply.fail(error->description());
                else
                    reply.succeed();
            });
        };
    };
    return VerbTable::bind(
        syntaxes(),
        {{QStringLiteral("mail add"),
          [&mail](const VerbCall &call, const VerbReply &reply) { add(mail, call, reply); }},
         {QStringLiteral("mail remove"),
          [&mail](const VerbCall &call, const VerbReply &reply) {
              remove(mail, call);
              reply.succeed();
          }},
         {QStringLiteral("mail accounts"),
          [&mail](const VerbCall &, const VerbReply &reply) { reply.list(accountRecords(mail)); }},
         {QStringLiteral("mail list"),
          [&mail](const VerbCall &, const VerbReply &reply) { reply.list(messageRecords(mail)); }},
         {QStringLiteral("mail show"),
          [&mail](const VerbCall &call, const VerbReply &reply) { show(mail, call, reply); }},
         {QStringLiteral("mail read"), perform(MailService::Action::markRead)},
         {QStringLiteral("mail archive"), perform(MailService::Action::archive)},
         {QStringLiteral("mail trash"), perform(MailService::Action::trash)},
         {QStringLiteral("mail code"),
          [&mail, &scheduler](const VerbCall &, const VerbReply &reply) {
              giveCode(mail, scheduler.now(), reply);
          }},
         {QStringLiteral("mail refresh"), [&mail](const VerbCall &, const VerbReply &reply) {
              mail.refresh();
              reply.succeed();
          }}});
}

void MailVerbs::connectChanges(const MailService &mail, const QObject *listener,
                               const VerbTable::Changed &changed)
{
    QObject::connect(&mail, &MailService::messagesChanged, listener,
                     [changed] { changed(noun, QStringLiteral("messages")); });
    QObject::connect(&mail, &MailService::accountsChanged, listener,
                     [changed] { changed(noun, QStringLiteral("accounts")); });
    QObject::connect(&mail, &MailService::statusChanged, listener,
                     [changed] { changed(noun, QStringLiteral("status")); });
}

QJsonArray MailVerbs::status(const MailService &mail)
{
    QJsonArray records;
    for (const MailAccount &account : mail.accounts()) {
        const MailStatus status = mail.status(account.id);
        records.append(QJsonObject{
            {QStringLiteral("email"), account.email},
            {QStringLiteral("state"), stateName(status)},
            {QStringLiteral("problem"), problem(status)},
            {QStringLiteral("unread"), unreadCount(mail, account.id)},
            {QStringLiteral("lastCheck"), VerbTable::date(mail.lastCheck(account.id))}});
    }
    return records;
}

} // namespace velmo
