#include "VelmoUI/Modules/Clipboard/ClipCollections.h"

#include "VelmoCore/Clipboard/ClipItem.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr QStringView allID = u"all";
constexpr QStringView favoritesID = u"favorites";
constexpr QStringView newID = u"new";

bool holds(const ClipItem &item, const QString &id)
{
    const auto collection = uuidFromText(id);
    return collection && std::ranges::count(item.collectionIDs, *collection) > 0;
}

} // namespace

ClipCollections::ClipCollections(ClipboardStore &store) : m_store(store), m_shown(allID.toString())
{
    connect(&store, &ClipboardStore::collectionsChanged, this, &ClipCollections::update);
    connect(&store, &ClipboardStore::itemsChanged, this, [this] {
        if (isCollecting())
            update();
    });
    update();
}

std::optional<Uuid> ClipCollections::shown() const
{
    return uuidFromText(m_shown);
}

bool ClipCollections::showsFavorites() const
{
    return m_shown == favoritesID;
}

void ClipCollections::choose(const QString &id)
{
    const auto item = m_collected ? m_store.item(*m_collected) : std::nullopt;
    if (id == newID) {
        startNaming(id);
    } else if (item) {
        toggle(id, *item);
    } else if (std::exchange(m_shown, id) != id) {
        update();
        Q_EMIT shownChanged();
    }
}

void ClipCollections::showAll()
{
    stopCollecting();
    stopNaming();
    choose(allID.toString());
}

void ClipCollections::collect(const QString &itemID)
{
    m_collected = uuidFromText(itemID);
    update();
}

void ClipCollections::stopCollecting()
{
    if (std::exchange(m_collected, std::nullopt))
        update();
}

void ClipCollections::add(const QString &id, const QString &itemID)
{
    const auto known = uuidFromText(itemID);
    const auto item = known ? m_store.item(*known) : std::nullopt;
    if (item && !holds(*item, id) && !(id == favoritesID && item->isFavorite))
        toggle(id, *item);
}

void ClipCollections::startNaming(const QString &id)
{
    m_named = id;
    update();
}

void ClipCollections::finishNaming(const QString &name)
{
    const QString named = std::exchange(m_named, {});
    if (const auto id = uuidFromText(named))
        m_store.renameCollection(*id, name);
    else if (named == newID) {
        const auto made = m_store.createCollection(name);
        if (made && m_collected)
            m_store.toggle(*m_collected, made->id);
    }
    update();
}

void ClipCollections::stopNaming()
{
    m_named.clear();
    update();
}

void ClipCollections::update()
{
    const auto item = m_collected ? m_store.item(*m_collected) : std::nullopt;
    if (!item)
        m_collected.reset();
    std::vector<ClipCollectionRow> rows;
    const auto append = [&](const QString &id, const QString &title, const QString &symbol,
                            bool isHeld, bool isOwn) {
        rows.push_back({id, title, symbol, item ? isHeld : id == m_shown, isOwn, id == m_named});
    };
    if (!item)
        append(allID.toString(), QStringLiteral("Histórico"), QStringLiteral("doc.on.clipboard"),
               false, false);
    append(favoritesID.toString(), QStringLiteral("Favoritos"), QStringLiteral("star"),
           item && item->isFavorite, false);
    for (const ClipCollection &collection : m_store.collections()) {
        const QString id = uuidText(collection.id);
        append(id, collection.name, QStringLiteral("folder"), item && holds(*item, id), true);
    }
    append(newID.toString(), QStringLiteral("Nova coleção"), QStringLiteral("plus"), false, false);
    m_rows.setRecords(rows);
    Q_EMIT changed();
    if (shown() && std::ranges::count(rows, m_shown, &ClipCollectionRow::id) == 0) { // deleted
        m_shown = allID.toString();
        update();
        Q_EMIT shownChanged();
    }
}

void ClipCollections::toggle(const QString &id, const ClipItem &item)
{
    if (id == favoritesID)
        m_store.toggleFavorite(item.id);
    else if (const auto collection = uuidFromText(id))
        m_store.toggle(item.id, *collection);
}

} // namespace velmo
