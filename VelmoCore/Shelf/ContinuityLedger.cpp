#include "VelmoCore/Shelf/ContinuityLedger.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include <algorithm>

namespace velmo {

qint64 ContinuityItem::byteCount() const
{
    return std::visit(overloaded{
                          [](const Link &link) { return qint64(link.value.toEncoded().size()); },
                          [](const Text &text) { return qint64(text.value.toUtf8().size()); },
                          [](const File &file) { return file.byteCount; },
                      },
                      kind.value);
}

std::vector<ContinuityItem> ContinuityLedger::visible() const
{
    std::vector<ContinuityItem> shown;
    std::ranges::copy_if(items, std::back_inserter(shown),
                         [](const ContinuityItem &item) { return !item.isDeleted; });
    std::ranges::stable_sort(shown, std::ranges::greater(), &ContinuityItem::modified);
    return shown;
}

qint64 ContinuityLedger::usedBytes() const
{
    qint64 sum = 0;
    for (const ContinuityItem &item : items) {
        if (!item.isDeleted)
            sum += item.byteCount();
    }
    return sum;
}

void ContinuityLedger::merge(const std::vector<ContinuityItem> &incoming, Date now)
{
    for (const ContinuityItem &item : incoming) {
        const auto known = std::ranges::find(items, item.id, &ContinuityItem::id);
        if (known == items.end())
            items.push_back(item);
        else if (item.modified > known->modified ||
                 (item.modified == known->modified && item.isDeleted && !known->isDeleted))
            *known = item;
    }
    enforceLimit(now);
}

void ContinuityLedger::add(const ContinuityItem &item, Date now)
{
    merge({item}, now);
}

void ContinuityLedger::remove(const Uuid &id, Date date)
{
    const auto known = std::ranges::find(items, id, &ContinuityItem::id);
    if (known == items.end())
        return;
    known->isDeleted = true;
    known->modified = date;
}

void ContinuityLedger::enforceLimit(Date now)
{
    qint64 used = usedBytes();
    std::vector<ContinuityItem *> candidates;
    for (ContinuityItem &item : items) {
        if (!item.isPinned && !item.isDeleted)
            candidates.push_back(&item);
    }
    std::ranges::stable_sort(candidates, {}, &ContinuityItem::modified);
    for (ContinuityItem *oldest : candidates) {
        if (used <= storageLimit)
            return;
        used -= oldest->byteCount();
        oldest->isDeleted = true;
        oldest->modified = now;
    }
}

} // namespace velmo
