#include "VelmoUI/Notch/DropContent.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Shelf/DropUndo.h"
#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoUI/Design/ThumbnailProvider.h"
#include "VelmoUI/Notch/DropSurface.h"

#include <algorithm>
#include <ranges>

namespace velmo {

namespace {

/// More would take long to make, and nobody looks at them.
constexpr std::size_t mostTiles = 50;

/// `details` may not have come yet.
DroppedRow fileRow(const QUrl &url, const DroppedFiles::Details *details, const ShelfStore &shelf)
{
    const bool isFolder = details && details->isFolder;
    QStringList texts;
    if (shelf.isInNotch(url))
        texts.append(QStringLiteral("Na prateleira"));
    if (details)
        texts.append(isFolder ? QStringLiteral("Pasta") : Words::size(details->size));
    return {{},
            isFolder ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill"),
            FileNaming::nameOf(url),
            texts.join(QStringLiteral(" · ")),
            details && !isFolder ? QUrl(ThumbnailProvider::urlFor(url.toLocalFile())) : QUrl(),
            {}};
}

/// Ids of what is not an action of the catalog.
QString keepID()
{
    return QStringLiteral("drop.keep");
}

QString toolsID()
{
    return QStringLiteral("drop.tools");
}

QString shareID()
{
    return QStringLiteral("drop.share");
}

/// Stands for the items without a tile.
DroppedRow restRow(std::size_t count)
{
    return {QStringLiteral("rest"),
            QStringLiteral("doc.on.doc"),
            QStringLiteral("Mais ") + Words::items(count),
            {},
            {},
            {}};
}

DroppedRow droppedRow(const DroppedItem &item, const DroppedFiles &files, const ShelfStore &shelf)
{
    DroppedRow row = std::visit(overloaded{
                                    [&](const DroppedItem::File &file) {
                                        return fileRow(file.value, files.find(file.value), shelf);
                                    },
                                    [](const DroppedItem::Link &link) {
                                        return DroppedRow{{},
                                                          QStringLiteral("link"),
                                                          link.value.host().isEmpty()
                                                              ? link.value.toDisplayString()
                                                              : link.value.host(),
                                                          link.value.toDisplayString(),
                                                          {},
                                                          {}};
                                    },
                                    [](const DroppedItem::Text &text) {
                                        return DroppedRow{{},
                                                          QStringLiteral("text.alignleft"),
                                                          text.value.simplified(),
                                                          QStringLiteral("Texto"),
                                                          {},
                                                          {}};
                                    },
                                },
                                item.content);
    row.id = item.id();
    row.removal = QStringLiteral("Remover %1").arg(row.title);
    return row;
}

} // namespace

DropContent::DropContent(DropSurface &surface, const DropServices &services, LiveRows &live,
                         Scheduler &scheduler)
    : m_surface(surface), m_services(services), m_live(live), m_files(scheduler)
{
    connect(&surface, &DropSurface::targetChanged, this, &DropContent::updateZones);
    connect(&surface, &DropSurface::itemsChanged, this, &DropContent::updateItems);
    connect(&surface, &DropSurface::fileMoved, &m_files, &DroppedFiles::move);
    connect(&m_files, &DroppedFiles::changed, this, &DropContent::updateRows);
    connect(&m_files, &DroppedFiles::changed, this, &DropContent::dropletChanged);
    connect(&surface, &DropSurface::dropletChanged, this, &DropContent::dropletChanged);
    connect(&surface, &DropSurface::gulped, this, &DropContent::gulped);
    connect(&services.undo, &DropUndo::changed, this, &DropContent::undoChanged);
    connect(&live, &LiveRows::changed, this, &DropContent::updateJob);
    updateZones();
}

QString DropContent::title() const
{
    return Words::items(m_surface.items().size());
}

QPointF DropContent::dropletStart() const
{
    const auto &droplet = m_surface.droplet();
    return droplet ? QPointF(droplet->start.x, droplet->start.y) : QPointF();
}

DroppedRow DropContent::dropletRow() const
{
    const auto &droplet = m_surface.droplet();
    return droplet ? droppedRow(droplet->item, m_files, m_services.shelf) : DroppedRow();
}

int DropContent::dropletFlight() const
{
    return int(std::chrono::round<std::chrono::milliseconds>(DropSurface::dropletFlight).count());
}

void DropContent::perform(const QString &action)
{
    if (action == keepID())
        m_surface.keep();
    else if (action == toolsID())
        m_surface.openTools();
    else if (action == shareID())
        m_surface.share();
    else
        m_surface.perform(action);
}

void DropContent::updateZones()
{
    const auto row = [this](DropZone zone) -> DropZoneRow {
        const bool isTargeted = m_surface.isTargeted() && m_surface.zone() == zone;
        const QString id = QString::fromLatin1(boost::describe::enum_to_string(zone, ""));
        switch (zone) {
        case DropZone::airdrop:
            return {id, QStringLiteral("square.and.arrow.up"), QStringLiteral("Compartilhar"),
                    QStringLiteral("Enviar para outro lugar"), isTargeted};
        case DropZone::actions:
            return {id, QStringLiteral("wand.and.stars"), QStringLiteral("Ações"),
                    QStringLiteral("Escolher o que fazer"), isTargeted};
        case DropZone::notch:
            break;
        }
        return {id, QStringLiteral("tray.and.arrow.down"), QStringLiteral("No notch"),
                QStringLiteral("Deixar à mão"), isTargeted};
    };
    std::vector<DropZoneRow> rows;
    for (const DropZone zone : m_surface.zones())
        rows.push_back(row(zone));
    m_zones.setRecords(rows);
}

void DropContent::updateRows()
{
    const std::vector<DroppedItem> &items = m_surface.items();
    std::vector<DroppedRow> rows;
    for (const DroppedItem &item : items | std::views::take(mostTiles))
        rows.push_back(droppedRow(item, m_files, m_services.shelf));
    if (items.size() > mostTiles)
        rows.push_back(restRow(items.size() - mostTiles));
    m_items.setRecords(rows);
}

void DropContent::updateItems()
{
    QSet<QUrl> files;
    for (const DroppedItem &item : m_surface.items() | std::views::take(mostTiles)) {
        if (const auto file = item.fileURL())
            files.insert(*file);
    }
    m_files.follow(files);
    updateRows();
    m_actions.setRecords(offeredActions());
    updateJob();
    Q_EMIT itemsChanged();
}

void DropContent::updateJob()
{
    const auto &rows = m_live.model().records();
    const auto row = std::ranges::find(rows, m_surface.job(), &LiveRow::id);
    const LiveRow job = row == rows.end() ? LiveRow() : *row;
    if (std::exchange(m_job, job) != job)
        Q_EMIT jobChanged();
}

std::vector<DropActionRow> DropContent::offeredActions() const
{
    const std::vector<DroppedItem> &items = m_surface.items();
    std::vector<DropActionRow> rows;
    if (m_surface.canKeep())
        rows.push_back({keepID(), QStringLiteral("tray.and.arrow.down"),
                        QStringLiteral("Guardar na prateleira")});
    for (const auto *action : m_services.actions.available(items))
        rows.push_back({action->id(), action->symbol(), action->title()});
    if (m_surface.canOpenTools())
        rows.push_back(
            {toolsID(), QStringLiteral("wrench.and.screwdriver"), QStringLiteral("Ferramentas")});
    if (m_surface.canShare())
        rows.push_back(
            {shareID(), QStringLiteral("square.and.arrow.up"), QStringLiteral("Compartilhar")});
    return rows;
}

} // namespace velmo
