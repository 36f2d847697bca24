#include "VelmoSystem/Device/LaunchAtLoginService.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/PlatformNames.h"

namespace velmo {

LaunchAtLoginService::LaunchAtLoginService(LoginItem &item) : m_item(item), m_status(item.status())
{
}

QString LaunchAtLoginService::message() const
{
    if (m_lastError)
        return *m_lastError;
    return m_status == LoginItem::Status::requiresApproval
               ? QStringLiteral("Aguardando aprovação em %1.")
                     .arg(QStringView(PlatformNames::systemSettings))
               : QString();
}

void LaunchAtLoginService::setEnabled(bool isEnabled)
{
    std::optional<QString> failure;
    try {
        m_item.setEnabled(isEnabled);
    } catch (const LocalizedError &error) {
        failure = error.description();
    }
    take(m_item.status(), failure);
}

void LaunchAtLoginService::refresh()
{
    const auto status = m_item.status();
    take(status, status == m_status ? m_lastError : std::nullopt);
}

void LaunchAtLoginService::take(LoginItem::Status status, const std::optional<QString> &error)
{
    if (status == m_status && error == m_lastError)
        return;
    m_status = status;
    m_lastError = error;
    Q_EMIT changed();
}

} // namespace velmo
