#include "VelmoCore/Mail/MailMessage.h"

#include "VelmoCore/Mail/LoginCodeDetector.h"
#include "VelmoCore/Mail/MailParser.h"

namespace velmo {

namespace {

constexpr int snippetLength = 220;

} // namespace

MailMessage MailMessage::read(const Envelope &envelope, QByteArrayView raw, Date now)
{
    const ParsedMail mail = MailParser::parse(raw);
    const auto [code, link] = LoginCodeDetector::detect(mail.subject, mail.text, mail.links);
    return {
        .accountID = envelope.accountID,
        .uid = envelope.uid,
        .from = mail.from,
        .subject = mail.subject.isEmpty() ? QStringLiteral("(sem assunto)") : mail.subject,
        .date = envelope.internalDate.value_or(mail.date.value_or(now)),
        .snippet = MailParser::snippet(mail.text, snippetLength),
        .isRead = envelope.isRead,
        .messageID = mail.messageID,
        .gmailThreadID = envelope.gmailThreadID,
        .code = code,
        .signInLink = link,
    };
}

QString MailMessage::id() const
{
    return uuidText(accountID) + u'-' + QString::number(uid);
}

QString MailMessage::signInKey() const
{
    if (code)
        return *code;
    return signInLink ? QString::fromUtf8(signInLink->toEncoded()) : id();
}

} // namespace velmo
