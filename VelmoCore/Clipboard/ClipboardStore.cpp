#include "VelmoCore/Clipboard/ClipboardStore.h"

#include <QDir>
#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

constexpr Seconds day = 86'400s;
constexpr Seconds saveDelay = 0.5s;

QString foldedText(const QString &text)
{
    return QLocale().toLower(text);
}

std::optional<QString> inside(const std::optional<QString> &directory, const QString &name)
{
    return directory ? std::optional(QDir(*directory).filePath(name)) : std::nullopt;
}

} // namespace

ClipboardStore::ClipboardStore(const std::optional<QString> &directory, const DataFiles &files,
                               Scheduler &scheduler)
    : m_scheduler(scheduler),
      m_file(
          inside(directory, QStringLiteral("clipboard.json")), files, scheduler,
          {QStringLiteral("Clipboard"), QStringLiteral("o clipboard")},
          [this] {
              return Snapshot{m_items, m_collections};
          },
          [this] { Q_EMIT issuesChanged(); }),
      m_images{inside(directory, QStringLiteral("images")), files}
{
    m_worker.setMaxThreadCount(1);
    m_file.load([this](Snapshot kept) { adopt(std::move(kept)); });
}

ClipboardStore::~ClipboardStore()
{
    m_worker.waitForDone();
}

std::vector<ClipItem> ClipboardStore::items(const QString &query, std::optional<ClipKind> kind,
                                            const std::optional<Uuid> &collection,
                                            bool favoritesOnly) const
{
    const QString wanted = foldedText(query.trimmed());
    std::array<std::vector<const ClipItem *>, 2> found; // pinned ones, others
    for (const ClipItem &item : m_items) {
        if ((!kind || item.kind == *kind) && (!favoritesOnly || item.isFavorite) &&
            (!collection || std::ranges::count(item.collectionIDs, *collection) > 0) &&
            (wanted.isEmpty() || folded(item).contains(wanted)))
            found[item.isPinned ? 0 : 1].push_back(&item);
    }
    std::vector<ClipItem> ordered;
    ordered.reserve(found[0].size() + found[1].size());
    for (const auto &group : found) {
        for (const ClipItem *item : group)
            ordered.push_back(*item);
    }
    return ordered;
}

std::optional<ClipItem> ClipboardStore::item(const Uuid &id) const
{
    const auto item = std::ranges::find(m_items, id, &ClipItem::id);
    return item == m_items.end() ? std::nullopt : std::optional(*item);
}

void ClipboardStore::add(const ClipItem &item)
{
    place(item);
    dropBeyondLimits(m_scheduler.now());
    changed();
}

void ClipboardStore::adopt(Snapshot kept)
{
    const Items early = std::exchange(m_items, std::move(kept.items));
    for (auto item = early.rbegin(); item != early.rend(); ++item)
        place(*item);
    m_collections.insert(m_collections.begin(), kept.collections.begin(), kept.collections.end());
    encryptLegacyImages();
    foldInBackground();
    Q_EMIT collectionsChanged();
    Q_EMIT itemsChanged();
    Q_EMIT loaded();
}

void ClipboardStore::place(const ClipItem &item)
{
    const auto known = std::ranges::find(m_items, item.signature, &ClipItem::signature);
    if (known == m_items.end()) {
        m_items.insert(m_items.begin(), item);
    } else {
        known->date = item.date;
        if (item.sourceAppName)
            known->sourceAppName = item.sourceAppName;
        if (item.sourceBundleID)
            known->sourceBundleID = item.sourceBundleID;
        known->isPinned = known->isPinned || item.isPinned;
        known->isFavorite = known->isFavorite || item.isFavorite;
        for (const Uuid &collection : item.collectionIDs) {
            if (std::ranges::count(known->collectionIDs, collection) == 0)
                known->collectionIDs.push_back(collection);
        }
        if (item.imageFile != known->imageFile)
            removeImage(item);
        raise(known);
    }
    m_folded.remove(m_items.front().id);
    folded(m_items.front());
}

void ClipboardStore::touch(const Uuid &id)
{
    const auto item = find(id);
    if (item == m_items.end())
        return;
    item->date = m_scheduler.now();
    raise(item);
    changed();
}

void ClipboardStore::remove(const Uuid &id)
{
    if (dropIf([&](const ClipItem &item) { return item.id == id; }))
        changed();
}

void ClipboardStore::togglePin(const Uuid &id)
{
    change(id, [](ClipItem &item) { item.isPinned = !item.isPinned; });
}

void ClipboardStore::toggleFavorite(const Uuid &id)
{
    change(id, [](ClipItem &item) { item.isFavorite = !item.isFavorite; });
}

void ClipboardStore::toggle(const Uuid &itemID, const Uuid &collectionID)
{
    change(itemID, [&](ClipItem &item) {
        if (std::erase(item.collectionIDs, collectionID) == 0)
            item.collectionIDs.push_back(collectionID);
    });
}

void ClipboardStore::clear(bool includingKept)
{
    if (dropIf([&](const ClipItem &item) { return includingKept || !item.isKept(); }))
        changed();
}

std::optional<ClipCollection> ClipboardStore::createCollection(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    const ClipCollection made{makeUuid(), trimmed, m_scheduler.now()};
    m_collections.push_back(made);
    m_file.saveAfter(saveDelay);
    Q_EMIT collectionsChanged();
    return made;
}

void ClipboardStore::renameCollection(const Uuid &id, const QString &name)
{
    const QString trimmed = name.trimmed();
    const auto collection = std::ranges::find(m_collections, id, &ClipCollection::id);
    if (collection == m_collections.end() || trimmed.isEmpty() || trimmed == collection->name)
        return;
    collection->name = trimmed;
    m_file.saveAfter(saveDelay);
    Q_EMIT collectionsChanged();
}

void ClipboardStore::deleteCollection(const Uuid &id)
{
    if (std::erase_if(m_collections, [&](const auto &collection) { return collection.id == id; }) ==
        0)
        return;
    for (ClipItem &item : m_items)
        std::erase(item.collectionIDs, id);
    dropBeyondLimits(m_scheduler.now());
    Q_EMIT collectionsChanged();
    changed();
}

void ClipboardStore::setLimits(int maxItems, int retentionDays)
{
    m_maxItems = maxItems;
    m_retentionDays = retentionDays;
}

void ClipboardStore::enforceLimits(Date now)
{
    if (dropBeyondLimits(now))
        changed();
}

std::optional<QUrl> ClipboardStore::imageURL(const ClipItem &item) const
{
    const auto path = item.imageFile ? m_images.path(*item.imageFile) : std::nullopt;
    return path ? std::optional(QUrl::fromLocalFile(*path)) : std::nullopt;
}

std::optional<QByteArray> ClipboardStore::imageData(const ClipItem &item) const
{
    return item.imageFile ? m_images.read(*item.imageFile) : std::nullopt;
}

void ClipboardStore::encryptLegacyImages()
{
    if (!m_images.files.cipher())
        return;
    std::vector<QString> names;
    for (const ClipItem &item : m_items) {
        if (item.imageFile)
            names.push_back(*item.imageFile);
    }
    if (names.empty())
        return;
    m_worker.start([images = m_images, names] {
        for (const QString &name : names)
            images.sealIfPlain(name);
    });
}

void ClipboardStore::flush()
{
    m_file.flush();
    m_worker.waitForDone();
}

ClipboardStore::Items::iterator ClipboardStore::find(const Uuid &id)
{
    return std::ranges::find(m_items, id, &ClipItem::id);
}

void ClipboardStore::change(const Uuid &id, const std::function<void(ClipItem &)> &change)
{
    const auto item = find(id);
    if (item == m_items.end())
        return;
    change(*item);
    changed();
}

void ClipboardStore::raise(Items::iterator item)
{
    std::rotate(m_items.begin(), item, item + 1);
}

bool ClipboardStore::dropIf(const std::function<bool(const ClipItem &)> &mustGo)
{
    return std::erase_if(m_items, [&](const ClipItem &item) {
               if (!mustGo(item))
                   return false;
               removeImage(item);
               m_folded.remove(item.id);
               return true;
           }) > 0;
}

bool ClipboardStore::dropBeyondLimits(Date now)
{
    const Date cutOff = now - std::max(m_retentionDays, 1) * day;
    int count = 0;
    return dropIf([&](const ClipItem &item) {
        if (item.isKept())
            return false;
        const bool stays = item.date >= cutOff && count < std::max(m_maxItems, 1);
        count += stays ? 1 : 0;
        return !stays;
    });
}

void ClipboardStore::removeImage(const ClipItem &item)
{
    if (item.imageFile)
        m_worker.start([images = m_images, name = *item.imageFile] { images.remove(name); });
}

void ClipboardStore::changed()
{
    m_file.saveAfter(saveDelay);
    Q_EMIT itemsChanged();
}

const QString &ClipboardStore::folded(const ClipItem &item) const
{
    const auto known = m_folded.constFind(item.id);
    return known != m_folded.cend() ? *known
                                    : *m_folded.insert(item.id, foldedText(item.searchableText()));
}

void ClipboardStore::foldInBackground()
{
    if (m_items.empty())
        return;
    m_worker.start([items = m_items, &scheduler = m_scheduler, self = QPointer(this)] {
        FoldedTexts texts;
        for (const ClipItem &item : items)
            texts.insert(item.id, foldedText(item.searchableText()));
        scheduler.post([texts, self] {
            if (!self)
                return;
            for (const ClipItem &item : self->m_items) {
                const auto text = texts.constFind(item.id);
                if (text != texts.cend() && !self->m_folded.contains(item.id))
                    self->m_folded.insert(item.id, *text);
            }
        });
    });
}

} // namespace velmo
