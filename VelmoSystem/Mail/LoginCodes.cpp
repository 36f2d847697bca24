#include "VelmoSystem/Mail/LoginCodes.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoSystem/Mail/MailService.h"
#include "VelmoSystem/Ports/Pasteboard.h"

namespace velmo {

LoginCodes::LoginCodes(MailService &mail, Pasteboard &pasteboard, ActivityCenter &activity,
                       Scheduler &scheduler)
    : m_mail(mail), m_pasteboard(pasteboard), m_activity(activity), m_scheduler(scheduler)
{
}

void LoginCodes::copy(const MailMessage &message)
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

} // namespace velmo
