#include "VelmoUI/Modules/Mail/MailPageModel.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Mail/MailURLs.h"
#include "VelmoSystem/Ports/FileViewer.h"

#include <QPointer>
#include <QRegularExpression>

#include <algorithm>

namespace velmo {

namespace {

MailRow rowOf(const MailMessage &message, const QString &selected, Date now)
{
    const QString sender = message.from.display();
    const QString time = Words::timeOrDayAndTime(message.date, now);
    const QString unread = message.isRead ? QString() : QStringLiteral("Não lida: ");
    return {.id = message.id(),
            .sender = sender,
            .subject = message.subject,
            .time = time,
            .snippet = message.snippet,
            .isRead = message.isRead,
            .isSelected = message.id() == selected,
            .spoken = QStringLiteral("%1%2, %3, %4").arg(unread, sender, message.subject, time)};
}

/// Whether a text that looks like an address names another host than `url`'s.
bool namesAnotherHost(const QString &text, const QUrl &url)
{
    static const QRegularExpression address(
        QStringLiteral("(?:https?://)?((?:[\\w-]+\\.)+[a-z]{2,})"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = address.match(text);
    if (!match.hasMatch())
        return false;
    const QString named = match.captured(1).toLower();
    const QString host = url.host().toLower();
    return host != named && !host.endsWith(u'.' + named) && !named.endsWith(u'.' + host);
}

} // namespace

MailPageModel::MailPageModel(const MailServices &services, PanelPort &panel)
    : m_mail(services.mail), m_fileViewer(services.fileViewer), m_scheduler(services.scheduler),
      m_signIns(services.signIns), m_accounts(services.mail, services.fileViewer)
{
    connect(&m_mail, &MailService::messagesChanged, this, &MailPageModel::update);
    connect(&m_accounts, &MailAccountsModel::changed, this, &MailPageModel::changed);
    connect(&panel, &PanelPort::openChanged, this, [this, &panel] {
        if (!panel.isOpen())
            m_mail.performPending();
    });
    update();
}

void MailPageModel::go(const Route &route)
{
    if (m_mail.find(route.item))
        select(route.item);
}

void MailPageModel::watch(bool isWatched)
{
    if (!isWatched)
        return;
    update(); // "ontem" begins at midnight
    m_mail.refresh();
}

void MailPageModel::update()
{
    const Date now = m_scheduler.now();
    std::vector<MailRow> rows;
    for (const MailMessage &message : m_mail.messages())
        rows.push_back(rowOf(message, m_selected, now));
    m_rows.setRecords(rows);
    Q_EMIT changed();
}

QString MailPageModel::state() const
{
    for (const MailAccount &account : m_mail.accounts()) {
        const MailStatus status = m_mail.status(account.id);
        if (const auto *offline = std::get_if<MailStatus::Offline>(&status.state))
            return QStringLiteral("%1: %2").arg(account.email, offline->reason);
        if (std::holds_alternative<MailStatus::Connecting>(status.state))
            return QStringLiteral("%1: conectando…").arg(account.email);
    }
    return {};
}

void MailPageModel::select(const QString &id)
{
    if (m_selected == id && (m_whole || m_problem.isEmpty()))
        return;
    m_selected = id;
    m_whole.reset();
    m_problem.clear();
    m_links.setRecords({});
    update();
    load();
}

/// One message at a time: who runs through the list connects only for where they end.
void MailPageModel::load()
{
    const MailMessage *message = selected();
    if (!message || m_isFetching)
        return;
    m_isFetching = true;
    m_mail.fetchWhole(
        *message, [page = QPointer(this), id = m_selected](const std::optional<ParsedMail> &whole,
                                                           const QString &problem) {
            if (!page)
                return;
            page->m_isFetching = false;
            if (page->m_selected != id) {
                page->load();
                return;
            }
            page->m_whole = whole;
            page->m_problem = problem;
            page->updateLinks();
            Q_EMIT page->changed();
        });
}

void MailPageModel::updateLinks()
{
    std::vector<MailLinkRow> rows;
    if (m_whole) {
        for (const MailLink &link : m_whole->links) {
            const QString address = QString::fromUtf8(link.url.toEncoded());
            if (std::ranges::find(rows, address, &MailLinkRow::id) == rows.end())
                rows.push_back({.id = address,
                                .title = link.url.host(),
                                .text = link.text.simplified(),
                                .isFalse = namesAnotherHost(link.text, link.url)});
        }
    }
    m_links.setRecords(rows);
}

QString MailPageModel::sender() const
{
    const MailMessage *message = selected();
    if (!message)
        return {};
    const MailAddress &from = message->from;
    return from.name.isEmpty() ? from.address
                               : QStringLiteral("%1 <%2>").arg(from.name, from.address);
}

QString MailPageModel::subject() const
{
    const MailMessage *message = selected();
    return message ? message->subject : QString();
}

QString MailPageModel::text() const
{
    const MailMessage *message = selected();
    if (!message)
        return {};
    return m_whole ? m_whole->text : m_problem.isEmpty() ? message->snippet : m_problem;
}

bool MailPageModel::isUnread() const
{
    const MailMessage *message = selected();
    return message && !message->isRead;
}

QString MailPageModel::code() const
{
    const MailMessage *message = selected();
    return message ? message->code.value_or(QString()) : QString();
}

QString MailPageModel::signInHost() const
{
    const MailMessage *message = selected();
    if (!message || message->code || !message->signInLink)
        return {};
    const QString address = QString::fromUtf8(message->signInLink->toEncoded());
    const auto &links = m_links.records();
    const auto link = std::ranges::find(links, address, &MailLinkRow::id);
    return link == links.end() || link->isFalse ? QString() : link->title;
}

bool MailPageModel::canArchive() const
{
    const MailMessage *message = selected();
    return message && m_mail.canArchive(*message);
}

bool MailPageModel::canOpen() const
{
    const MailMessage *message = selected();
    const auto account = message ? m_mail.account(message->accountID) : std::nullopt;
    return account && MailURLs::open(*account, *message);
}

QString MailPageModel::undoTitle() const
{
    const auto pending = m_mail.lastPending();
    if (!pending)
        return {};
    return pending->action == MailService::Action::archive ? QStringLiteral("Arquivada · Desfazer")
                                                           : QStringLiteral("No lixo · Desfazer");
}

void MailPageModel::refresh()
{
    m_mail.refresh();
}

void MailPageModel::markRead()
{
    if (const MailMessage *message = selected())
        m_mail.perform(MailService::Action::markRead, MailMessage(*message));
}

void MailPageModel::archive()
{
    move(MailService::Action::archive);
}

void MailPageModel::trash()
{
    move(MailService::Action::trash);
}

/// The next message takes the place of the selected one.
void MailPageModel::move(MailService::Action action)
{
    const MailMessage *message = selected();
    if (!message)
        return;
    const auto &all = m_mail.messages();
    const auto place = std::size_t(message - all.data());
    m_mail.perform(action, MailMessage(*message));
    if (!selected())
        select(all.empty() ? QString() : all[std::min(place, all.size() - 1)].id());
}

void MailPageModel::undo()
{
    const auto pending = m_mail.lastPending();
    if (!pending || !m_mail.undo(pending->messageID))
        return;
    select(pending->messageID);
}

void MailPageModel::reply()
{
    if (const MailMessage *message = selected())
        m_fileViewer.open(MailURLs::reply(*message));
}

void MailPageModel::openOutside()
{
    const MailMessage *message = selected();
    const auto account = message ? m_mail.account(message->accountID) : std::nullopt;
    if (!account)
        return;
    if (const auto url = MailURLs::open(*account, *message))
        m_fileViewer.open(*url);
}

void MailPageModel::copyCode()
{
    if (const MailMessage *message = selected())
        m_signIns.copyCode(MailMessage(*message));
}

void MailPageModel::signIn()
{
    if (const MailMessage *message = selected())
        m_signIns.openLink(MailMessage(*message));
}

void MailPageModel::openLink(const QString &address)
{
    const MailMessage *message = selected();
    if (message && message->signInLink && message->signInLink->toEncoded() == address.toUtf8())
        signIn();
    else
        m_fileViewer.open(QUrl::fromEncoded(address.toUtf8()));
}

} // namespace velmo
