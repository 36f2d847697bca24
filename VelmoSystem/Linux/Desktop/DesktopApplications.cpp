#include "VelmoSystem/Linux/Desktop/DesktopApplications.h"

namespace velmo {

DesktopApplications::DesktopApplications() = default;

std::vector<Applications::Application> DesktopApplications::installed() const
{
    return {};
}

std::optional<Applications::Application> DesktopApplications::find(const QString &) const
{
    return std::nullopt;
}

std::optional<QString> DesktopApplications::idOf(const QUrl &) const
{
    return std::nullopt;
}

void DesktopApplications::launch(const QString &)
{
}

} // namespace velmo
