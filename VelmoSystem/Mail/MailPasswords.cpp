#include "VelmoSystem/Mail/MailPasswords.h"

#include <QStringDecoder>

namespace velmo::MailPasswords {

namespace {

KeyItemStore::Item item(const Uuid &account)
{
    return {.service = QStringLiteral("app.orvane.mail"),
            .account = uuidText(account),
            .label = QStringLiteral("Orvane — e-mail")};
}

} // namespace

void save(KeyItemStore &items, const Uuid &account, const QString &password)
{
    items.remove(item(account));
    if (!items.add(item(account), password.toUtf8()))
        throw KeyItemStore::Refusal(KeyItemStore::duplicateItem, {}, items.place());
}

std::optional<QString> read(const KeyItemStore &items, const Uuid &account)
{
    const auto secret = items.find(item(account));
    if (!secret)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString password = decoder(*secret);
    return decoder.hasError() ? std::nullopt : std::optional(password);
}

void remove(KeyItemStore &items, const Uuid &account)
{
    items.remove(item(account));
}

} // namespace velmo::MailPasswords
