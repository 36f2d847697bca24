#include "VelmoSystem/Mail/IMAPConnection.h"

#include "VelmoCore/Mail/IMAP/IMAPText.h"

#include <algorithm>
#include <array>
#include <span>

namespace velmo {

namespace {

constexpr qsizetype chunk = 262'144; // bytes
constexpr Seconds greetingTimeout = 20s;
constexpr Seconds loginTimeout = 30s;
constexpr Seconds timeout = 60s;
constexpr Seconds fetchTimeout = 90s;
/// Of IDLE's first and last answer.
constexpr Seconds idleTimeout = 30s;
/// Beyond the time that an IDLE may take.
constexpr Seconds idlePatience = 90s;
/// For all of a command, however it drips.
constexpr Seconds longestCommand = 600s;
constexpr qsizetype longestWhole = 8 * 1024 * 1024; // bytes

constexpr std::array<QStringView, 6> trashNames{
    u"trash", u"lixo", u"lixeira", u"deleted items", u"deleted messages", u"itens excluídos"};
constexpr std::array<QStringView, 4> archiveNames{u"archive", u"arquivo", u"arquivados",
                                                  u"archives"};

/// What the server says in an answer to the command of that tag, in its own words.
QString statusText(const QByteArray &response, const QByteArray &tag)
{
    QString text = IMAPText::decoded(response).trimmed();
    const QString start = QString::fromLatin1(tag) + u' ';
    if (text.startsWith(start))
        text.remove(0, start.size());
    text += u' '; // behind a word that stands alone
    for (const QStringView word : {u"NO ", u"BAD ", u"OK "}) {
        if (text.startsWith(word, Qt::CaseInsensitive))
            text.remove(0, word.size());
    }
    if (text.startsWith(u'[') && text.contains(u']'))
        text.remove(0, text.indexOf(u']') + 1);
    return text.trimmed();
}

bool isUntagged(const QByteArray &response, const QByteArray &tag)
{
    return !response.startsWith(tag + ' ');
}

std::optional<QString> named(const std::vector<IMAPResponse::Listing> &listings,
                             std::span<const QStringView> names)
{
    for (const IMAPResponse::Listing &listing : listings) {
        const QStringList parts = listing.name.toLower().split(u'/', Qt::SkipEmptyParts);
        if (!parts.isEmpty() && std::ranges::find(names, parts.last()) != names.end())
            return listing.name;
    }
    return std::nullopt;
}

MailMailboxes specialMailboxes(const std::vector<IMAPResponse::Listing> &listings)
{
    MailMailboxes found;
    for (const IMAPResponse::Listing &listing : listings) {
        for (const QString &attribute : listing.attributes) {
            const QString word = attribute.toLower();
            if (word == u"\\archive")
                found.archive = listing.name;
            else if (word == u"\\trash")
                found.trash = listing.name;
            else if (word == u"\\all")
                found.all = listing.name;
        }
    }
    if (!found.trash)
        found.trash = named(listings, trashNames);
    if (!found.archive)
        found.archive = named(listings, archiveNames);
    return found;
}

/// What a server said meanwhile; it can't say without end.
class Untagged {
public:
    void append(const QByteArray &response)
    {
        m_size += response.size();
        if (m_size > IMAPReader::longestResponse)
            throw IMAPError::connection(QStringLiteral("a resposta é longa demais"));
        m_responses.push_back(response);
    }
    std::vector<QByteArray> take() { return std::move(m_responses); }

private:
    std::vector<QByteArray> m_responses;
    qsizetype m_size = 0;
};

} // namespace

IMAPConnection::IMAPConnection(std::unique_ptr<ByteStream> stream, Scheduler &scheduler)
    : m_stream(std::move(stream)), m_scheduler(scheduler)
{
}

QCoro::Task<> IMAPConnection::open()
{
    co_await m_stream->open();
    const QByteArray greeting = co_await readResponse(greetingTimeout);
    if (!greeting.startsWith("* ")) {
        cancel();
        throw IMAPError::connection(QStringLiteral("não é um servidor IMAP"),
                                    IMAPError::Reason::notIMAP);
    }
    takeCapabilities(greeting);
}

QCoro::Task<> IMAPConnection::login(QString username, QString password)
{
    if (m_capabilities.contains(QStringLiteral("LOGINDISABLED")))
        throw IMAPError::unsupported(
            QStringLiteral("O servidor não aceita login com senha nesta conexão."));
    std::optional<IMAPError> refusal;
    const QString text = QStringLiteral("LOGIN ") + IMAPResponse::quote(username) + u' ' +
                         IMAPResponse::quote(password);
    try {
        co_await command(text, loginTimeout);
    } catch (const IMAPError &error) {
        if (error.reason() != IMAPError::Reason::rejected)
            throw;
        refusal = error;
    }
    if (refusal)
        throw IMAPError::rejected(refusal->text().isEmpty()
                                      ? QStringLiteral("usuário ou senha de app incorretos.")
                                      : refusal->text(),
                                  IMAPError::Reason::badPassword);
    if (canIdle() && m_capabilities.size() > 3)
        co_return; // the answer has listed them
    for (const QByteArray &response : co_await command(QStringLiteral("CAPABILITY"), timeout))
        takeCapabilities(response);
}

QCoro::Task<std::vector<IMAPResponse::Listing>> IMAPConnection::listings(QString text)
{
    std::vector<IMAPResponse::Listing> found;
    for (const QByteArray &response : co_await command(text, timeout)) {
        if (auto listing = IMAPResponse::list(response))
            found.push_back(std::move(*listing));
    }
    co_return found;
}

QCoro::Task<MailMailboxes> IMAPConnection::mailboxes()
{
    const QString plain = QStringLiteral("LIST \"\" \"*\"");
    QString withUses = plain;
    if (m_capabilities.contains(QStringLiteral("SPECIAL-USE")))
        withUses += u" RETURN (SPECIAL-USE)";
    std::optional<std::vector<IMAPResponse::Listing>> found;
    try {
        found = co_await listings(withUses);
    } catch (const IMAPError &) {
        // Some servers stumble over what they offer.
    }
    if (!found)
        found = co_await listings(plain);
    co_return specialMailboxes(*found);
}

QCoro::Task<IMAPConnection::Selected> IMAPConnection::select(QString mailbox)
{
    Selected selected;
    const QString text = QStringLiteral("SELECT ") + IMAPResponse::quote(mailbox);
    for (const QByteArray &response : co_await command(text, timeout)) {
        if (const auto exists = IMAPResponse::count(response, u"EXISTS"))
            selected.exists = *exists;
        if (const auto validity = IMAPResponse::code(u"UIDVALIDITY", response))
            selected.uidValidity = *validity;
    }
    m_hasNews = false;
    co_return selected;
}

QCoro::Task<std::vector<MailMessage>> IMAPConnection::fetchMessages(QString set, bool byUID,
                                                                    Uuid accountID)
{
    QString items = QStringLiteral("(UID FLAGS INTERNALDATE");
    if (m_capabilities.contains(QStringLiteral("X-GM-EXT-1")))
        items += u" X-GM-THRID";
    items += u" BODY.PEEK[]<0.65536>)";
    const QString text =
        (byUID ? QStringLiteral("UID FETCH ") : QStringLiteral("FETCH ")) + set + u' ' + items;
    std::vector<MailMessage> messages;
    for (const QByteArray &response : co_await command(text, fetchTimeout)) {
        const auto fetch = IMAPResponse::fetch(response);
        if (!fetch || !fetch->uid || !fetch->body)
            continue;
        messages.push_back(MailMessage::read({.accountID = accountID,
                                              .uid = *fetch->uid,
                                              .isRead = fetch->isSeen(),
                                              .internalDate = fetch->internalDate,
                                              .gmailThreadID = fetch->gmailThreadID},
                                             *fetch->body, m_scheduler.now()));
    }
    co_return messages;
}

QCoro::Task<std::optional<QByteArray>> IMAPConnection::fetchWhole(std::uint32_t uid)
{
    const QString text =
        QStringLiteral("UID FETCH %1 (UID BODY.PEEK[]<0.%2>)").arg(uid).arg(longestWhole);
    for (const QByteArray &response : co_await command(text, fetchTimeout)) {
        if (auto fetch = IMAPResponse::fetch(response); fetch && fetch->uid == uid && fetch->body)
            co_return std::move(fetch->body);
    }
    co_return std::nullopt;
}

QCoro::Task<MailInbox::Flags> IMAPConnection::flags(std::uint32_t fromUID)
{
    MailInbox::Flags flags;
    const QString text = QStringLiteral("UID FETCH %1:* (UID FLAGS)").arg(fromUID);
    for (const QByteArray &response : co_await command(text, timeout)) {
        if (const auto fetch = IMAPResponse::fetch(response); fetch && fetch->uid)
            flags[*fetch->uid] = fetch->isSeen();
    }
    co_return flags;
}

QCoro::Task<> IMAPConnection::markRead(std::uint32_t uid)
{
    co_await command(QStringLiteral("UID STORE %1 +FLAGS.SILENT (\\Seen)").arg(uid), timeout);
}

QCoro::Task<> IMAPConnection::move(std::uint32_t uid, QString mailbox)
{
    const QString target = QStringLiteral("%1 %2").arg(uid).arg(IMAPResponse::quote(mailbox));
    if (m_capabilities.contains(QStringLiteral("MOVE"))) {
        co_await command(QStringLiteral("UID MOVE ") + target, timeout);
        co_return;
    }
    co_await command(QStringLiteral("UID COPY ") + target, timeout);
    co_await command(QStringLiteral("UID STORE %1 +FLAGS.SILENT (\\Deleted)").arg(uid), timeout);
    // EXPUNGE without UIDs would remove what others have marked.
    if (m_capabilities.contains(QStringLiteral("UIDPLUS")))
        co_await command(QStringLiteral("UID EXPUNGE %1").arg(uid), timeout);
}

QCoro::Task<std::vector<QByteArray>> IMAPConnection::idle(Seconds duration)
{
    const QByteArray tag = start(QStringLiteral("IDLE"));
    const QByteArray answer = co_await readResponse(idleTimeout);
    if (!answer.startsWith('+'))
        throw IMAPError::rejected(statusText(answer, tag));
    m_isDoneSent = false;
    m_isIdling = true;
    const auto ended = qScopeGuard([this] { m_isIdling = false; });
    const ScheduledTask end = m_scheduler.after(duration, [this] { finishIdle(); });
    Untagged untagged;
    while (true) {
        const QByteArray response =
            co_await readResponse(m_isDoneSent ? idleTimeout : duration + idlePatience);
        if (!isUntagged(response, tag)) {
            m_hasNews = false; // whoever waited looks now
            co_return untagged.take();
        }
        takeCount(response);
        untagged.append(response);
        const QString text =
            IMAPText::decoded(response.first(std::min<qsizetype>(60, response.size())));
        if (text.contains(u" EXISTS") || text.contains(u" EXPUNGE") || text.contains(u" FETCH"))
            finishIdle();
    }
}

void IMAPConnection::finishIdle()
{
    if (m_isIdling && !std::exchange(m_isDoneSent, true))
        m_stream->send("DONE\r\n");
}

QCoro::Task<std::vector<QByteArray>> IMAPConnection::command(QString text, Seconds limit)
{
    const QByteArray tag = start(text);
    const Seconds deadline = m_scheduler.elapsed() + longestCommand;
    Untagged untagged;
    while (true) {
        const Seconds left = deadline - m_scheduler.elapsed();
        const QByteArray response = co_await readResponse(std::min(limit, left));
        if (isUntagged(response, tag)) {
            if (response.first(std::min<qsizetype>(13, response.size())).toUpper() ==
                "* CAPABILITY ")
                takeCapabilities(response);
            takeCount(response);
            untagged.append(response);
            continue;
        }
        takeCapabilities(response);
        if (response.sliced(tag.size() + 1).left(3).toUpper().startsWith("OK"))
            co_return untagged.take();
        throw IMAPError::rejected(statusText(response, tag));
    }
}

void IMAPConnection::cancel()
{
    m_stream->cancel(IMAPError::closed());
}

/// Sends a command and gives its tag. Throws `unsupported` on what would be read as two commands.
QByteArray IMAPConnection::start(const QString &text)
{
    if (std::ranges::any_of(text, [](QChar c) { return c == u'\r' || c == u'\n' || c == u'\0'; }))
        throw IMAPError::unsupported(
            QStringLiteral("Nomes e senhas não podem ter quebras de linha."));
    const QByteArray tag = 'n' + QByteArray::number(++m_tagCounter);
    m_stream->send(tag + ' ' + text.toUtf8() + "\r\n");
    return tag;
}

QCoro::Task<QByteArray> IMAPConnection::readResponse(Seconds limit)
{
    try {
        std::optional<QByteArray> response = m_reader.next();
        if (response) // with the one before, which saves the timer
            co_return *std::move(response);
        const ScheduledTask watchdog = m_scheduler.after(limit, [this] {
            m_stream->cancel(
                IMAPError::connection(QStringLiteral("o servidor não respondeu a tempo")));
        });
        while (!response) {
            m_reader.append(co_await m_stream->receive(chunk));
            response = m_reader.next();
        }
        co_return *std::move(response);
    } catch (const IMAPReader::TooLong &error) {
        m_stream->cancel(IMAPError::connection(error.description()));
        throw IMAPError::connection(error.description());
    }
}

/// A message that arrives while another command runs is announced then, and never again.
void IMAPConnection::takeCount(const QByteArray &response)
{
    if (const auto exists = IMAPResponse::count(response, u"EXISTS")) {
        m_hasNews = m_hasNews || *exists > m_exists;
        m_exists = *exists;
    } else if (IMAPResponse::count(response, u"EXPUNGE")) {
        --m_exists;
    }
}

void IMAPConnection::takeCapabilities(const QByteArray &response)
{
    if (auto capabilities = IMAPResponse::capabilities(response.trimmed()))
        m_capabilities = *std::move(capabilities);
}

} // namespace velmo
