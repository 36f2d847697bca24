#include "VelmoCore/Calendar/CalendarSubscription.h"

namespace velmo {

std::optional<QUrl> CalendarSubscription::normalizedURL(const QString &text)
{
    constexpr QStringView webcal = u"webcal://";
    QString address = text.trimmed();
    if (address.startsWith(webcal, Qt::CaseInsensitive))
        address.replace(0, webcal.size(), QStringLiteral("https://"));
    const QUrl url(address);
    const bool isFetchable = url.scheme() == u"https" || url.scheme() == u"http";
    if (!url.isValid() || !isFetchable || url.host().isEmpty())
        return std::nullopt;
    return url;
}

} // namespace velmo
