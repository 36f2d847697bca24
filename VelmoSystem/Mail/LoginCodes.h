#pragma once

#include "VelmoCore/Mail/MailMessage.h"

namespace velmo {

class ActivityCenter;
class MailService;
class Pasteboard;
class Scheduler;

/// What is done with the code of a message, wherever it is offered.
class LoginCodes {
public:
    /// All of them outlive it.
    LoginCodes(MailService &mail, Pasteboard &pasteboard, ActivityCenter &activity,
               Scheduler &scheduler);

    /// Copies it as a secret, retires it and says so. Nothing without a code.
    void copy(const MailMessage &message);

private:
    MailService &m_mail;
    Pasteboard &m_pasteboard;
    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
};

} // namespace velmo
