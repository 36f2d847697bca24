#include "VelmoUI/Modules/Mail/SignInsModel.h"

#include "VelmoSystem/Mail/SignIns.h"

namespace velmo {

SignInsModel::SignInsModel(const MailServices &services) : m_services(services)
{
    connect(&services.mail, &MailService::signInsChanged, this, &SignInsModel::update);
    update();
}

void SignInsModel::use(const QString &id)
{
    const MailMessage *found = m_services.mail.find(id);
    if (!found)
        return;
    const MailMessage message = *found;
    if (message.code)
        m_services.signIns.copyCode(message);
    else
        m_services.signIns.openLink(message);
}

void SignInsModel::dismiss(const QString &id)
{
    if (const MailMessage *found = m_services.mail.find(id))
        m_services.mail.useSignIn(MailMessage(*found));
}

void SignInsModel::update()
{
    std::vector<SignInRow> rows;
    for (const MailMessage &message : m_services.mail.recentSignIns(m_services.scheduler.now())) {
        const bool hasLink = !message.code && message.signInLink;
        rows.push_back({.id = message.id(),
                        .sender = message.from.display(),
                        .code = message.code.value_or(QString()),
                        .host = hasLink ? message.signInLink->host() : QString()});
    }
    m_rows.setRecords(rows);
}

} // namespace velmo
