#pragma once

#include "VelmoCore/Mail/MailMessage.h"

#include <QSet>

#include <map>
#include <vector>

namespace velmo {

/// The latest messages of all accounts, newest first, and which of them are news. Pure: what comes
/// from a server is brought to it.
class MailInbox {
public:
    /// How long a login is offered.
    static constexpr Seconds signInAge = 600s;
    /// Of each account.
    static constexpr std::size_t mostMessages = 25;

    /// Read states by UID, as the server has them.
    using Flags = std::map<std::uint32_t, bool>;

    /// The smallest and the largest UID that is known of an account; 0 for none.
    struct Range {
        std::uint32_t low = 0;
        std::uint32_t high = 0; ///< what is above it is new

        bool operator==(const Range &) const = default;
    };

    const std::vector<MailMessage> &messages() const { return m_messages; }
    const MailMessage *find(const QString &id) const;
    int unreadCount() const;
    Range uidRange(const Uuid &account) const;
    /// Which numbering of the mailbox the UIDs are of; nothing before it was loaded.
    std::optional<std::uint32_t> uidValidity(const Uuid &account) const;

    /// After a connection: replaces what is known of the account. Gives the new messages; none at
    /// the first sight of a mailbox, or of one that has been numbered afresh.
    std::vector<MailMessage> load(const Uuid &account, const std::vector<MailMessage> &messages,
                                  std::uint32_t validity);
    /// Meanwhile: adds `messages` and takes over `flags`, which speak of all UIDs from `from` on
    /// (0 for none): what is missing there is gone. Gives the new messages.
    std::vector<MailMessage> sync(const Uuid &account, const std::vector<MailMessage> &messages,
                                  const Flags &flags, std::uint32_t from);
    /// Forgets the account.
    void remove(const Uuid &account);

    /// False if there is no such message.
    bool setRead(const QString &id, bool isRead);
    /// Takes a message off the list, where it stays away until it is given back or forgotten.
    std::optional<MailMessage> take(const QString &id);
    void giveBack(const QString &id);
    /// The server has moved it.
    void forget(const QString &id) { m_taken.erase(id); }

    /// What the user is notified of: what is unread and less than half an hour old.
    static std::vector<MailMessage> announced(std::vector<MailMessage> messages, Date now);

    /// The sign-ins of the last ten minutes that weren't used; of the same code or link the newest.
    std::vector<MailMessage> recentSignIns(Date now) const;
    /// Also retires the other messages with the same code or link.
    void useSignIn(const MailMessage &message);

private:
    struct Known {
        std::uint32_t validity = 0;
        std::uint32_t announcedUpTo = 0; ///< the highest UID seen
    };

    void forgetTaken(const Uuid &account);
    std::vector<MailMessage> ofAccount(const Uuid &account) const;
    void replace(const Uuid &account, std::vector<MailMessage> messages);

    std::vector<MailMessage> m_messages;
    std::map<Uuid, Known> m_known;
    std::map<QString, MailMessage> m_taken; ///< by id
    QSet<QString> m_usedSignIns;            ///< ids
};

} // namespace velmo
