#include "VelmoSystem/Mail/MailBannerState.h"

#include <algorithm>

namespace velmo {

void MailBannerState::show(const std::vector<MailMessage> &messages)
{
    if (messages.empty())
        return;
    const auto rank = [](const MailMessage &message) {
        return std::pair(message.isSignIn(), message.date);
    };
    m_message = *std::ranges::max_element(messages, {}, rank);
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
