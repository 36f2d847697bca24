#include "VelmoCore/Mail/MailURLs.h"

#include <QUrlQuery>

namespace velmo::MailURLs {

std::optional<QUrl> open(const MailAccount &account, const MailMessage &message)
{
    const auto webmail = MailProviders::webmail(account.provider);
    if (account.provider == MailProvider::gmail && message.gmailThreadID) {
        QUrl url = *webmail;
        url.setPath(QStringLiteral("/mail/u/"));
        url.setQuery("authuser=" +
                     QString::fromLatin1(QUrl::toPercentEncoding(account.email, "@")));
        url.setFragment(QStringLiteral("all/") + QString::number(*message.gmailThreadID, 16));
        return url;
    }
    if (webmail)
        return webmail;
    if (message.messageID)
        return QUrl::fromEncoded("mid:" + QUrl::toPercentEncoding(*message.messageID, "@"));
    return std::nullopt;
}

QUrl reply(const MailMessage &message)
{
    const bool isReply = message.subject.startsWith(u"re:", Qt::CaseInsensitive);
    QUrl url;
    url.setScheme(QStringLiteral("mailto"));
    url.setPath(message.from.address);
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("subject"),
                       QString::fromLatin1(QUrl::toPercentEncoding(
                           isReply ? message.subject : QStringLiteral("Re: ") + message.subject)));
    url.setQuery(query);
    return url;
}

} // namespace velmo::MailURLs
