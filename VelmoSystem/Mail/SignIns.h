#pragma once

#include "VelmoCore/Mail/MailMessage.h"

namespace velmo {

class ActivityCenter;
class FileViewer;
class MailService;
class Pasteboard;
class Scheduler;

/// What is done with the code or the link of a message, wherever it is offered.
class SignIns {
public:
    /// All of them outlive it.
    SignIns(MailService &mail, Pasteboard &pasteboard, FileViewer &fileViewer,
            ActivityCenter &activity, Scheduler &scheduler);

    /// Copies the code as a secret, retires it and says so. Nothing without a code.
    void copyCode(const MailMessage &message);
    /// Opens the link and retires it. Nothing without a link.
    void openLink(const MailMessage &message);

private:
    MailService &m_mail;
    Pasteboard &m_pasteboard;
    FileViewer &m_fileViewer;
    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
};

} // namespace velmo
