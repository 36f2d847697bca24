#include "VelmoCore/Mail/MailInbox.h"

#include <algorithm>
#include <iterator>

namespace velmo {

namespace {

constexpr Seconds newsAge = 1'800s;

void sortByDate(std::vector<MailMessage> &messages)
{
    std::ranges::stable_sort(messages, std::ranges::greater(), &MailMessage::date);
}

std::uint32_t highestUid(const std::vector<MailMessage> &messages)
{
    const auto highest = std::ranges::max_element(messages, {}, &MailMessage::uid);
    return highest == messages.end() ? 0 : highest->uid;
}

std::vector<MailMessage> above(std::uint32_t uid, const std::vector<MailMessage> &messages)
{
    std::vector<MailMessage> found;
    std::ranges::copy_if(messages, std::back_inserter(found),
                         [&](const MailMessage &message) { return message.uid > uid; });
    return found;
}

} // namespace

const MailMessage *MailInbox::find(const QString &id) const
{
    const auto found = std::ranges::find(m_messages, id, &MailMessage::id);
    return found == m_messages.end() ? nullptr : &*found;
}

int MailInbox::unreadCount() const
{
    return int(std::ranges::count(m_messages, false, &MailMessage::isRead));
}

MailInbox::Range MailInbox::uidRange(const Uuid &account) const
{
    Range range;
    for (const MailMessage &message : ofAccount(account)) {
        range.low = range.low == 0 ? message.uid : std::min(range.low, message.uid);
        range.high = std::max(range.high, message.uid);
    }
    if (const auto known = m_known.find(account); known != m_known.end())
        range.high = std::max(range.high, known->second.announcedUpTo);
    return range;
}

std::optional<std::uint32_t> MailInbox::uidValidity(const Uuid &account) const
{
    const auto known = m_known.find(account);
    return known == m_known.end() ? std::nullopt : std::optional(known->second.validity);
}

std::vector<MailMessage> MailInbox::load(const Uuid &account,
                                         const std::vector<MailMessage> &messages,
                                         std::uint32_t validity)
{
    const auto known = m_known.find(account);
    const bool isSame = known != m_known.end() && known->second.validity == validity;
    const std::uint32_t baseline = isSame ? known->second.announcedUpTo : 0;
    if (!isSame) // others bear these numbers now
        forgetTaken(account);
    replace(account, messages);
    m_known[account] = {validity, std::max(baseline, highestUid(messages))};
    return isSame ? above(baseline, messages) : std::vector<MailMessage>();
}

std::vector<MailMessage> MailInbox::sync(const Uuid &account,
                                         const std::vector<MailMessage> &messages,
                                         const Flags &flags, std::uint32_t from)
{
    std::vector<MailMessage> current = ofAccount(account);
    if (from != 0) {
        std::erase_if(current, [&](MailMessage &message) {
            const auto flag = flags.find(message.uid);
            if (flag != flags.end())
                message.isRead = flag->second;
            return message.uid >= from && flag == flags.end();
        });
    }
    Known &known = m_known[account];
    const auto fresh = above(known.announcedUpTo, messages);
    current.insert(current.end(), fresh.begin(), fresh.end());
    replace(account, std::move(current));
    known.announcedUpTo = std::max(known.announcedUpTo, highestUid(messages));
    return fresh;
}

void MailInbox::remove(const Uuid &account)
{
    std::erase_if(m_messages, [&](const auto &message) { return message.accountID == account; });
    forgetTaken(account);
    m_known.erase(account);
}

bool MailInbox::setRead(const QString &id, bool isRead)
{
    const auto message = std::ranges::find(m_messages, id, &MailMessage::id);
    if (message == m_messages.end())
        return false;
    message->isRead = isRead;
    return true;
}

std::optional<MailMessage> MailInbox::take(const QString &id)
{
    const auto found = std::ranges::find(m_messages, id, &MailMessage::id);
    if (found == m_messages.end())
        return std::nullopt;
    const MailMessage message = *found;
    m_messages.erase(found);
    m_taken.insert_or_assign(id, message);
    return message;
}

void MailInbox::giveBack(const QString &id)
{
    const auto taken = m_taken.extract(id);
    if (taken.empty())
        return;
    auto messages = ofAccount(taken.mapped().accountID);
    messages.push_back(taken.mapped());
    replace(taken.mapped().accountID, std::move(messages));
}

std::vector<MailMessage> MailInbox::announced(std::vector<MailMessage> messages, Date now)
{
    std::erase_if(messages, [&](const MailMessage &message) {
        return message.isRead || now - message.date >= newsAge;
    });
    return messages;
}

std::vector<MailMessage> MailInbox::recentSignIns(Date now) const
{
    std::vector<MailMessage> found;
    QSet<QString> keys;
    for (const MailMessage &message : m_messages) {
        if (!message.isSignIn() || now - message.date >= signInAge ||
            m_usedSignIns.contains(message.id()) || keys.contains(message.signInKey()))
            continue;
        keys.insert(message.signInKey());
        found.push_back(message);
    }
    return found;
}

void MailInbox::useSignIn(const MailMessage &message)
{
    m_usedSignIns.insert(message.id());
    for (const MailMessage &other : m_messages) {
        if (other.signInKey() == message.signInKey())
            m_usedSignIns.insert(other.id());
    }
}

void MailInbox::forgetTaken(const Uuid &account)
{
    std::erase_if(m_taken, [&](const auto &taken) { return taken.second.accountID == account; });
}

std::vector<MailMessage> MailInbox::ofAccount(const Uuid &account) const
{
    std::vector<MailMessage> messages;
    std::ranges::copy_if(m_messages, std::back_inserter(messages),
                         [&](const MailMessage &message) { return message.accountID == account; });
    return messages;
}

void MailInbox::replace(const Uuid &account, std::vector<MailMessage> messages)
{
    std::erase_if(messages,
                  [this](const MailMessage &message) { return m_taken.contains(message.id()); });
    // The server's times are whole seconds; within one the higher number is newer.
    std::ranges::sort(messages, std::ranges::greater(), &MailMessage::uid);
    sortByDate(messages);
    if (messages.size() > mostMessages)
        messages.resize(mostMessages);
    std::erase_if(m_messages, [&](const auto &message) { return message.accountID == account; });
    std::ranges::move(messages, std::back_inserter(m_messages));
    sortByDate(m_messages);
}

} // namespace velmo
