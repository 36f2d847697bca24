#include "VelmoSystem/Mail/SignIns.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoSystem/Mail/MailService.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/Pasteboard.h"

namespace velmo {

SignIns::SignIns(MailService &mail, Pasteboard &pasteboard, FileViewer &fileViewer,
                 ActivityCenter &activity, Scheduler &scheduler)
    : m_mail(mail), m_pasteboard(pasteboard), m_fileViewer(fileViewer), m_activity(activity),
      m_scheduler(scheduler)
{
}

void SignIns::copyCode(const MailMessage &message)
{
    if (!message.code)
        return;
    m_pasteboard.write({.text = message.code, .isSecret = true});
    m_mail.useSignIn(message);
    m_activity.post(ActivityEvent::make(m_scheduler.now(), QStringLiteral("doc.on.doc"),
                                        QStringLiteral("Código copiado"), FeedbackStyle::success,
                                        QStringLiteral("mail")),
                    ActivityCenter::Presentation::transientOnly);
}

void SignIns::openLink(const MailMessage &message)
{
    if (!message.signInLink)
        return;
    m_fileViewer.open(*message.signInLink);
    m_mail.useSignIn(message);
}

} // namespace velmo
