#include "VelmoSystem/Mail/MailNotices.h"

#include "VelmoSystem/Mail/MailBannerState.h"
#include "VelmoSystem/Mail/SignIns.h"
#include "VelmoSystem/Notifications/SystemNotifier.h"

namespace velmo {

namespace {

QString module()
{
    return QStringLiteral("mail");
}

QString copyAction()
{
    return QStringLiteral("copy");
}

QString openAction()
{
    return QStringLiteral("link");
}

SystemNotifier::Notification notification(const MailMessage &message, int moreCount,
                                          bool showsPreview)
{
    SystemNotifier::Notification notification{.title = message.from.display(), .body = {}};
    if (moreCount > 0)
        notification.title += QStringLiteral(" e mais %1").arg(moreCount);
    QStringList lines{message.subject};
    if (message.code) {
        lines << QStringLiteral("Código: %1").arg(*message.code);
        notification.actions = {{copyAction(), QStringLiteral("Copiar código")}};
    } else {
        if (showsPreview && !message.snippet.isEmpty())
            lines << message.snippet;
        if (message.signInLink)
            notification.actions = {
                {openAction(), QStringLiteral("Entrar em %1").arg(message.signInLink->host())}};
    }
    notification.body = lines.join(u'\n');
    return notification;
}

} // namespace

MailNotices::MailNotices(SystemNotifier &notifier, SignIns &signIns)
    : m_notifier(notifier), m_signIns(signIns)
{
}

void MailNotices::show(const std::vector<MailMessage> &messages, bool showsPreview)
{
    if (messages.empty())
        return;
    const MailMessage &message = MailBannerState::foremost(messages);
    m_notifier.send(module(), notification(message, int(messages.size()) - 1, showsPreview),
                    {.module = module(), .item = message.id(), .verb = {}},
                    [this, message](const QString &action) {
                        if (action == copyAction())
                            m_signIns.copyCode(message);
                        else if (action == openAction())
                            m_signIns.openLink(message);
                    });
}

} // namespace velmo
