#pragma once

#include "VelmoCore/Mail/MailMessage.h"

#include <vector>

namespace velmo {

class SignIns;
class SystemNotifier;

/// New mail as a notification of the desktop, for when no panel can show it.
class MailNotices {
public:
    /// Both outlive it.
    MailNotices(SystemNotifier &notifier, SignIns &signIns);

    /// One for all of them, in place of an earlier one. Without `showsPreview` it keeps the text of
    /// the message to itself.
    void show(const std::vector<MailMessage> &messages, bool showsPreview);

private:
    SystemNotifier &m_notifier;
    SignIns &m_signIns;
};

} // namespace velmo
