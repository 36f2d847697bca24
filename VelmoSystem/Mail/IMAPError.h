#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

namespace velmo {

/// What keeps a mail server from doing what it is asked for.
class IMAPError : public LocalizedError {
public:
    enum class Reason {
        connection, ///< the network or the protocol failed
        hostNotFound,
        untrusted,   ///< the server's certificate doesn't hold
        notIMAP,     ///< something else answers there
        rejected,    ///< the server said no
        badPassword, ///< to the user name and the password
        unsupported,
        closed
    };

    static IMAPError connection(const QString &text, Reason reason = Reason::connection);
    /// `text` in the server's own words, perhaps empty.
    static IMAPError rejected(const QString &text, Reason reason = Reason::rejected);
    static IMAPError unsupported(const QString &text);
    static IMAPError closed();

    Reason reason() const { return m_reason; }
    /// What the network or the server said, without the words around it.
    const QString &text() const { return m_text; }
    /// Whether the server refused, so that asking again soon is of no use.
    bool isRejected() const
    {
        return m_reason == Reason::rejected || m_reason == Reason::badPassword;
    }
    /// What the user can do about it; empty if only waiting helps.
    QString advice() const;

private:
    IMAPError(Reason reason, const QString &text, const QString &description)
        : LocalizedError(description), m_reason(reason), m_text(text)
    {
    }

    Reason m_reason;
    QString m_text;
};

} // namespace velmo
