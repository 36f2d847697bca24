#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoCore/Mail/MailAddress.h"

#include <QByteArrayView>
#include <QUrl>

#include <boost/describe.hpp>

#include <cstdint>
#include <optional>

namespace velmo {

/// A message of an account's inbox, as the panel shows it. Never stored.
struct MailMessage {
    Uuid accountID;
    std::uint32_t uid = 0; ///< within the inbox
    MailAddress from;
    QString subject; ///< never empty
    Date date;
    QString snippet;
    bool isRead = false;
    std::optional<QString> messageID; ///< without its angle brackets
    std::optional<std::uint64_t> gmailThreadID;
    std::optional<QString> code;    ///< a login code, ready to be typed
    std::optional<QUrl> signInLink; ///< logs in when it is opened

    /// What the server says of a message beside its text.
    struct Envelope {
        Uuid accountID;
        std::uint32_t uid = 0;
        bool isRead = false;
        std::optional<Date> internalDate;
        std::optional<std::uint64_t> gmailThreadID;
    };
    /// Reads a message (RFC 5322). `now` is its date where nobody gives one.
    static MailMessage read(const Envelope &envelope, QByteArrayView raw, Date now);

    QString id() const;
    bool isSignIn() const { return code || signInLink; }
    /// Equal for messages that offer the same code or link.
    QString signInKey() const;

    bool operator==(const MailMessage &) const = default;
};
BOOST_DESCRIBE_STRUCT(MailMessage, (),
                      (accountID, uid, from, subject, date, snippet, isRead, messageID,
                       gmailThreadID, code, signInLink))

} // namespace velmo
