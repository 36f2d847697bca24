#include "VelmoSystem/Mail/MailBannerState.h"

#include <algorithm>

namespace velmo {

const MailMessage &MailBannerState::foremost(const std::vector<MailMessage> &messages)
{
    const auto rank = [](const MailMessage &message) {
        return std::pair(message.isSignIn(), message.date);
    };
    return *std::ranges::max_element(messages, {}, rank);
}

void MailBannerState::show(const std::vector<MailMessage> &messages)
{
    if (messages.empty())
        return;
    m_message = foremost(messages);
    m_moreCount = int(messages.size()) - 1;
    dismissLater();
    Q_EMIT changed();
}

void MailBannerState::dismiss()
{
    m_end.cancel();
    if (!std::exchange(m_message, std::nullopt))
        return;
    Q_EMIT changed();
}

void MailBannerState::setHeld(bool isHeld)
{
    if (!m_message)
        return;
    if (isHeld)
        m_end.cancel();
    else
        dismissLater();
}

void MailBannerState::dismissLater()
{
    m_end =
        m_scheduler.after(m_message->isSignIn() ? signInDuration : duration, [this] { dismiss(); });
}

} // namespace velmo
