#pragma once

#include "VelmoCore/Foundation/Uuid.h"

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

/// Who runs the server of an account.
enum class MailProvider { gmail, icloud, yahoo, fastmail, zoho, other };
BOOST_DESCRIBE_ENUM(MailProvider, gmail, icloud, yahoo, fastmail, zoho, other)

/// What is known of the providers.
namespace MailProviders {

/// By the domain of the address.
MailProvider detect(const QString &email);
QString title(MailProvider provider);
/// Where the user gets the password that Orvane needs.
QString appPasswordHint(MailProvider provider);
/// The IMAP server; nothing for `other`.
std::optional<QString> host(MailProvider provider);
/// The page for app passwords; nothing for `other`.
std::optional<QUrl> appPasswordURL(MailProvider provider);
/// The web client; nothing for `other`.
std::optional<QUrl> webmail(MailProvider provider);
/// "imap." and the domain of the address; empty without a domain.
QString guessHost(const QString &email);

} // namespace MailProviders

/// A mailbox that the user has connected. The password is in the key store.
struct MailAccount {
    static constexpr int standardPort = 993; ///< of IMAP over TLS (RFC 8314)

    Uuid id;
    QString email;
    MailProvider provider = MailProvider::other;
    QString host;
    int port = standardPort;
    QString username;

    /// What the user may give beside the address.
    struct Server {
        std::optional<QString> host;
        std::optional<int> port;
        std::optional<QString> username;
    };
    /// A new account: what isn't given follows from the address.
    static MailAccount make(const QString &email, const Server &server);

    bool operator==(const MailAccount &) const = default;
};
BOOST_DESCRIBE_STRUCT(MailAccount, (), (id, email, provider, host, port, username))

} // namespace velmo
