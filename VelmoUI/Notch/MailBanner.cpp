#include "VelmoUI/Notch/MailBanner.h"

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Mail/MailBannerState.h"
#include "VelmoSystem/Mail/SignIns.h"
#include "VelmoUI/Notch/NotchViewModel.h"
#include "VelmoUI/Notch/PanelServices.h"

namespace velmo {

MailBanner::MailBanner(NotchViewModel &model, const PanelServices &services)
    : m_model(model), m_services(services)
{
    connect(&services.mail.banner, &MailBannerState::changed, this, &MailBanner::update);
    update();
}

bool MailBanner::isShown() const
{
    return m_services.mail.banner.message().has_value();
}

void MailBanner::update()
{
    if (const auto &message = m_services.mail.banner.message()) {
        m_message = *message;
        m_moreCount = m_services.mail.banner.moreCount();
    }
    Q_EMIT changed();
}

QString MailBanner::snippet() const
{
    return m_services.settings.settings().mailShowsPreview ? m_message.snippet : QString();
}

QString MailBanner::more() const
{
    return m_moreCount > 0 ? QStringLiteral("e mais %1").arg(m_moreCount) : QString();
}

QString MailBanner::spoken() const
{
    QStringList parts{QStringLiteral("E-mail de %1").arg(sender()), subject()};
    if (m_message.code)
        parts << QStringLiteral("código %1").arg(code());
    else if (!snippet().isEmpty())
        parts << snippet();
    return parts.join(QStringLiteral(", "));
}

void MailBanner::copyCode()
{
    m_services.mail.signIns.copyCode(m_message);
    dismiss();
}

void MailBanner::openLink()
{
    m_services.mail.signIns.openLink(m_message);
    dismiss();
}

void MailBanner::open()
{
    m_model.send(NotchEvent::openRequested);
    m_model.go({.module = QStringLiteral("mail"), .item = m_message.id(), .verb = {}});
}

void MailBanner::dismiss()
{
    m_services.mail.banner.dismiss();
}

void MailBanner::setHeld(bool isHeld)
{
    m_services.mail.banner.setHeld(isHeld);
}

} // namespace velmo
