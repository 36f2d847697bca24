#include "VelmoUI/Notch/DropSurface.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Activity/ActivityEvent.h"
#include "VelmoCore/Foundation/Geometry.h"
#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"
#include "VelmoSystem/Ports/DragPasteboard.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoSystem/Ports/ShareService.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"

#include <QPointer>

#include <algorithm>
#include <memory>

namespace velmo {

namespace {

QString toolsModule()
{
    return QStringLiteral("tools");
}

} // namespace

DropSurface::DropSurface(PanelPort &panel, const PanelServices &services,
                         std::function<void(NotchEvent)> send)
    : m_panel(panel), m_services(services), m_send(std::move(send))
{
}

void DropSurface::begin()
{
    m_items.clear();
    Q_EMIT itemsChanged();
    m_zones = offeredZones();
    m_zone = DropZone::actions;
    Q_EMIT targetChanged();
}

void DropSurface::setTargeted(bool isTargeted)
{
    if (std::exchange(m_isTargeted, isTargeted) != isTargeted)
        Q_EMIT targetChanged();
}

void DropSurface::setZone(DropZone zone)
{
    if (std::exchange(m_zone, zone) != zone)
        Q_EMIT targetChanged();
}

void DropSurface::receive(const std::vector<DroppedItem> &items)
{
    m_items = items;
    ++m_dropNumber;
    ++m_keepNumber;
    m_isKept = false;
    m_job.reset();
    Q_EMIT itemsChanged();
    setTargeted(false);
    if (m_services.settings.settings().dropStraightToShelf) {
        m_services.drop.mover.keep(items, follow(), offerTheRest());
        m_panel.close();
    } else if (m_zone == DropZone::airdrop) {
        share();
    } else {
        m_send(NotchEvent::dropCompleted);
        if (m_zone == DropZone::notch)
            moveIntoNotch(items);
    }
}

void DropSurface::removeItem(const QString &id)
{
    if (std::erase_if(m_items, [&](const auto &item) { return item.id() == id; }) == 0)
        return;
    Q_EMIT itemsChanged();
    if (m_items.empty())
        m_panel.close();
}

void DropSurface::moveIntoNotch(const std::vector<DroppedItem> &items)
{
    m_job = m_services.drop.mover.moveIn(items, follow(), offerTheRest());
    setKept(true);
}

void DropSurface::keep()
{
    m_job = m_services.drop.mover.keep(m_items, follow(), offerTheRest());
    setKept(true);
}

void DropSurface::cancelJob()
{
    const std::optional<QString> job = std::exchange(m_job, std::nullopt);
    if (!job)
        return;
    m_services.activity.cancel(*job);
    setKept(false);
}

void DropSurface::undo()
{
    m_services.drop.mover.undoDrop(follow(), [offer = offerTheRest()](bool) { offer(false); });
}

bool DropSurface::canShare() const
{
    return !m_items.empty() && files().size() == m_items.size() &&
           m_services.platform.share.isAvailable();
}

void DropSurface::share()
{
    const std::vector<QUrl> urls = files();
    try {
        if (urls.size() < m_items.size())
            throw LocalizedError(QStringLiteral("Só arquivos podem ser enviados."));
        m_services.platform.share.share(urls);
        m_panel.close();
    } catch (const LocalizedError &error) {
        m_send(NotchEvent::dropCompleted);
        m_services.activity.postFailure(QStringLiteral("Não foi possível compartilhar"),
                                        QStringLiteral("share"), error.description());
    }
}

bool DropSurface::canOpenTools() const
{
    const auto modules = m_services.modules.visible(m_services.settings.settings());
    return !m_items.empty() && files().size() == m_items.size() &&
           std::ranges::count(modules, toolsModule(), &NotchModule::id) > 0;
}

void DropSurface::openTools()
{
    m_services.drop.tools.open(files(), std::nullopt);
    m_panel.go({.module = toolsModule()});
}

void DropSurface::perform(const QString &action)
{
    const QString source = QStringLiteral("actions");
    try {
        const auto outcome = m_services.drop.actions.run(action, m_items, source);
        if (!outcome)
            return;
        m_services.activity.post(ActivityEvent::make(m_services.platform.scheduler.now(),
                                                     outcome->symbol, outcome->message,
                                                     outcome->style, source));
        if (outcome->dismissesPanel)
            m_panel.close();
    } catch (const LocalizedError &) {
        // The activity says so, on this surface too.
    }
}

void DropSurface::startDroplet(const Point &start)
{
    if (!m_services.settings.settings().animationsEnabled || m_items.empty())
        return;
    m_droplet = Droplet{makeUuid(), start, m_items.front()};
    Q_EMIT dropletChanged();
    m_dropletTask = m_services.platform.scheduler.after(dropletFlight, [this] {
        m_droplet.reset();
        Q_EMIT dropletChanged();
        Q_EMIT gulped();
    });
}

std::vector<DropZone> DropSurface::offeredZones() const
{
    if (m_services.settings.settings().dropStraightToShelf)
        return {DropZone::notch};
    const auto contents = m_services.platform.dragPasteboard.contents();
    const bool hasNoFiles = !contents.hasFiles && (contents.hasLinks || contents.hasText);
    if (hasNoFiles || !m_services.platform.share.isAvailable())
        return {DropZone::actions, DropZone::notch};
    return {DropZone::airdrop, DropZone::actions, DropZone::notch};
}

void DropSurface::setKept(bool isKept)
{
    m_isKept = isKept;
    Q_EMIT itemsChanged();
}

std::vector<QUrl> DropSurface::files() const
{
    std::vector<QUrl> urls;
    for (const DroppedItem &item : m_items) {
        if (const auto file = item.fileURL())
            urls.push_back(*file);
    }
    return urls;
}

ShelfMover::Moved DropSurface::follow()
{
    // They come in the order of the list, so that each is found next to the one before.
    const auto place = std::make_shared<std::size_t>(0);
    return [self = QPointer(this), place,
            number = m_dropNumber](const std::vector<ShelfMover::Move> &moves) {
        if (!self || self->m_dropNumber != number)
            return;
        std::vector<DroppedItem> &items = self->m_items;
        for (const auto &[from, to] : moves) {
            const DroppedItem wanted{DroppedItem::File{from}};
            auto begin = items.begin() + std::ptrdiff_t(std::min(*place, items.size()));
            auto item = std::find(begin, items.end(), wanted);
            if (item == items.end())
                item = std::find(items.begin(), begin, wanted);
            if (item == items.end())
                continue;
            *item = {DroppedItem::File{to}};
            *place = std::size_t(item - items.begin()) + 1;
            Q_EMIT self->fileMoved(from, to);
        }
        if (!moves.empty())
            Q_EMIT self->itemsChanged();
    };
}

ShelfMover::Finished DropSurface::offerTheRest()
{
    return [self = QPointer(this), number = ++m_keepNumber](bool isComplete) {
        if (self && !isComplete && self->m_keepNumber == number)
            self->setKept(false);
    };
}

} // namespace velmo
