#include "VelmoUI/Modules/Clipboard/ClipList.h"

#include "VelmoUI/Design/RecordListModel.h"

#include <algorithm>

namespace velmo {

namespace {

std::vector<Uuid> ids(const std::vector<ClipItem> &items, std::size_t begin, std::size_t end)
{
    std::vector<Uuid> ids;
    for (; begin < end; ++begin)
        ids.push_back(items[begin].id);
    return ids;
}

} // namespace

int ClipList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QHash<int, QByteArray> ClipList::roleNames() const
{
    return RecordListModel<ClipRow>::namesOfRoles();
}

QVariant ClipList::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return RecordListModel<ClipRow>::field(row(index.row()), role);
}

int ClipList::placeOf(const std::optional<Uuid> &id) const
{
    const auto found = id ? std::ranges::find(m_items, *id, &ClipItem::id) : m_items.end();
    return found == m_items.end() ? -1 : int(found - m_items.begin());
}

void ClipList::setItems(std::vector<ClipItem> items, Date now)
{
    m_now = now;
    m_lastRow.first = -1;
    const auto sameID = [](const ClipItem &one, const ClipItem &other) {
        return one.id == other.id;
    };
    const auto first =
        std::size_t(std::ranges::mismatch(m_items, items, sameID).in1 - m_items.begin());
    std::size_t tail = 0;
    while (tail < std::min(m_items.size(), items.size()) - first &&
           sameID(m_items.end()[-1 - std::ptrdiff_t(tail)], items.end()[-1 - std::ptrdiff_t(tail)]))
        ++tail;
    replace(std::move(items), first, tail);
    if (!m_items.empty())
        Q_EMIT dataChanged(index(0), index(int(m_items.size()) - 1));
}

const ClipRow &ClipList::row(int place) const
{
    if (m_lastRow.first != place)
        m_lastRow = {place, ClipRows::make(m_items[std::size_t(place)], m_now)};
    return m_lastRow.second;
}

/// The lists are the same before `first` and in the last `tail` items. What only comes, only goes
/// or moves alone leaves the others in place, on the screen too.
void ClipList::replace(std::vector<ClipItem> items, std::size_t first, std::size_t tail)
{
    const auto oldEnd = m_items.size() - tail;
    const auto newEnd = items.size() - tail;
    const std::vector<Uuid> after = ids(items, first, newEnd);
    std::vector<Uuid> raised = ids(m_items, first, oldEnd);
    std::vector<Uuid> lowered = raised;
    std::ranges::rotate(raised, raised.end() - (raised.empty() ? 0 : 1));
    std::ranges::rotate(lowered, lowered.begin() + (lowered.empty() ? 0 : 1));
    const auto set = [&] { m_items = std::move(items); };
    if (first == oldEnd && first == newEnd) {
        set();
    } else if (first == oldEnd) {
        beginInsertRows({}, int(first), int(newEnd) - 1);
        set();
        endInsertRows();
    } else if (first == newEnd) {
        beginRemoveRows({}, int(first), int(oldEnd) - 1);
        set();
        endRemoveRows();
    } else if (raised == after) {
        beginMoveRows({}, int(oldEnd) - 1, int(oldEnd) - 1, {}, int(first));
        set();
        endMoveRows();
    } else if (lowered == after) {
        beginMoveRows({}, int(first), int(first), {}, int(oldEnd));
        set();
        endMoveRows();
    } else if (oldEnd <= newEnd) { // the rows that there are show other items
        const int added = int(items.size() - m_items.size());
        if (added > 0)
            beginInsertRows({}, rowCount(), rowCount() + added - 1);
        set();
        if (added > 0)
            endInsertRows();
    } else {
        beginRemoveRows({}, int(items.size()), rowCount() - 1);
        set();
        endRemoveRows();
    }
}

} // namespace velmo
