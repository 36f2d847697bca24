#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Mail/IMAP/IMAPReader.h"
#include "VelmoCore/Mail/IMAP/IMAPResponse.h"
#include "VelmoCore/Mail/MailInbox.h"
#include "VelmoSystem/Mail/IMAPError.h"
#include "VelmoSystem/Ports/ByteStream.h"

#include <QSet>

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmo {

/// The special mailboxes of a server, by the names that it gives them.
struct MailMailboxes {
    std::optional<QString> archive;
    std::optional<QString> trash;
    std::optional<QString> all;

    const std::optional<QString> &archiveTarget() const { return archive ? archive : all; }

    bool operator==(const MailMailboxes &) const = default;
};

/// One connection to a mail server (IMAP4rev1, RFC 3501, with IDLE, MOVE, UIDPLUS and SPECIAL-USE
/// where the server has them). One operation at a time; all of them throw `IMAPError`. Only a
/// refusal leaves the connection usable. Everything happens on the thread of the scheduler.
class IMAPConnection {
public:
    /// A mailbox that was selected; 0 where the server doesn't say.
    struct Selected {
        std::int64_t exists = 0;
        std::uint32_t uidValidity = 0;
    };

    IMAPConnection(std::unique_ptr<ByteStream> stream, Scheduler &scheduler);
    /// No operation may be under way: `cancel` ends it.
    ~IMAPConnection() = default;
    Q_DISABLE_COPY_MOVE(IMAPConnection)

    QCoro::Task<> open();
    QCoro::Task<> login(QString username, QString password);
    QCoro::Task<MailMailboxes> mailboxes();
    QCoro::Task<Selected> select(QString mailbox);
    /// The beginnings of messages, whose read state stays as it is. `set` counts messages, or UIDs.
    QCoro::Task<std::vector<MailMessage>> fetchMessages(QString set, bool byUID, Uuid accountID);
    /// A whole message, at most 8 MiB of it; nothing if it has gone.
    QCoro::Task<std::optional<QByteArray>> fetchWhole(std::uint32_t uid);
    QCoro::Task<MailInbox::Flags> flags(std::uint32_t fromUID);
    QCoro::Task<> markRead(std::uint32_t uid);
    /// A server without MOVE and UIDPLUS keeps the message, marked as deleted.
    QCoro::Task<> move(std::uint32_t uid, QString mailbox);
    /// Waits for news, for so long at most, and gives what the server said meanwhile.
    QCoro::Task<std::vector<QByteArray>> idle(Seconds duration);
    /// Ends a wait for news early.
    void finishIdle();
    QCoro::Task<std::vector<QByteArray>> command(QString text, Seconds timeout);

    bool canIdle() const { return m_capabilities.contains(QStringLiteral("IDLE")); }
    /// Whether the mailbox has grown since this was last asked, or since it was selected.
    bool takeNews() { return std::exchange(m_hasNews, false); }
    /// The operation under way fails at once.
    void cancel();

private:
    QByteArray start(const QString &text);
    QCoro::Task<QByteArray> readResponse(Seconds timeout);
    QCoro::Task<> readGreeting();
    QCoro::Task<std::vector<IMAPResponse::Listing>> listings(QString command);
    void takeCapabilities(const QByteArray &response);
    void takeCount(const QByteArray &response);

    std::unique_ptr<ByteStream> m_stream;
    Scheduler &m_scheduler;
    IMAPReader m_reader;
    int m_tagCounter = 0;
    QSet<QString> m_capabilities; ///< in upper case
    std::int64_t m_exists = 0;
    bool m_hasNews = false;
    bool m_isIdling = false;
    bool m_isDoneSent = false; ///< DONE, for this IDLE
};

} // namespace velmo
