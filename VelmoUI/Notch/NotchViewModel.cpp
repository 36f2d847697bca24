#include "VelmoUI/Notch/NotchViewModel.h"

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/DesktopAppearance.h"
#include "VelmoSystem/Ports/DragPasteboard.h"
#include "VelmoSystem/Ports/ShareService.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <memory>

namespace velmo {

namespace {

/// What surrounds a module's content in the panel.
constexpr double moduleWidthPadding = 20;

QString toolsModule()
{
    return QStringLiteral("tools");
}

} // namespace

NotchViewModel::NotchViewModel(DisplayID displayID, const NotchMetrics &metrics,
                               AppServices &services)
    : m_displayID(displayID), m_services(services), m_metrics(metrics),
      m_presentationChangedAt(services.platform.scheduler.now())
{
    updateShape({NotchMotion::None{}});
    const auto contentChanged = [this] { updateShape(shapeAnimation()); };
    connect(&services.activity, &ActivityCenter::liveChanged, this, contentChanged);
    connect(&services.activity, &ActivityCenter::feedbackChanged, this, contentChanged);
    m_settingsObserver =
        services.settings.observe([this](const AppSettings &before, const AppSettings &after) {
            settingsChanged(before, after);
        });
}

NotchViewModel::~NotchViewModel()
{
    m_services.settings.removeObserver(m_settingsObserver);
}

void NotchViewModel::setMetrics(const NotchMetrics &metrics)
{
    if (metrics == m_metrics)
        return;
    m_metrics = metrics;
    Q_EMIT metricsChanged();
    updateShape({NotchMotion::None{}});
}

NotchLayoutContext NotchViewModel::layoutContext() const
{
    const AppSettings &settings = m_services.settings.settings();
    NotchLayoutContext context;
    context.metrics = m_metrics;
    context.panelSize = settings.panelSize;
    context.nonNotchStyle = settings.nonNotchStyle;
    context.hasLiveActivity = !m_services.activity.live().empty();
    context.hasFeedback = m_services.activity.feedback().has_value();
    if (presentation() == NotchPresentation::expanded)
        context.expandedContentWidth = moduleWidth();
    if (context.expandedContentWidth && m_heldBarWidth)
        context.expandedContentWidth = std::max(*context.expandedContentWidth, *m_heldBarWidth);
    return context;
}

void NotchViewModel::send(NotchEvent event)
{
    const AppSettings &settings = m_services.settings.settings();
    const NotchBehavior behavior{settings.hoverBehavior, settings.openOnClick,
                                 settings.closeOnMouseLeave, settings.closeOnClickOutside};
    const NotchState next = NotchStateMachine::reduce(m_state, event, behavior);
    if (next == m_state)
        return;

    const NotchLayoutContext context = layoutContext();
    const bool opening = NotchLayout::shape(next.presentation, context).height() >
                         NotchLayout::shape(m_state.presentation, context).height();
    if (event == NotchEvent::dragEntered) {
        m_droppedItems.clear();
        Q_EMIT droppedItemsChanged();
        m_dropZones = offeredDropZones();
        m_dropZone = DropZone::actions;
        Q_EMIT dropTargetChanged();
    }
    const NotchPresentation from = m_state.presentation;
    m_state = next;
    if (next.presentation == from)
        return;
    if (next.presentation == NotchPresentation::expanded)
        m_heldBarWidth.reset(); // of an earlier time

    m_presentationChangedAt = m_services.platform.scheduler.now();
    activateShownModule();
    updateShape(motion(opening));
    Q_EMIT contentSizeChanged();
    Q_EMIT presentationChanged();
    if (onTransition)
        onTransition(from, next.presentation, event);
}

void NotchViewModel::tap()
{
    if (isOpen(presentation()) && onTapWhileOpen)
        onTapWhileOpen();
    send(NotchEvent::tap);
}

NotchModule *NotchViewModel::selectedModule() const
{
    const auto modules = m_services.modules.visible(m_services.settings.settings());
    const auto selected = std::ranges::find(modules, m_selectedModuleID, &NotchModule::id);
    if (selected != modules.end())
        return *selected;
    return modules.empty() ? nullptr : modules.front();
}

void NotchViewModel::setBarHeld(bool isHeld)
{
    if (isHeld == m_heldBarWidth.has_value())
        return;
    m_heldBarWidth.reset();
    if (isHeld)
        m_heldBarWidth = NotchLayout::shape(presentation(), layoutContext()).coreSize.width;
    contentWidthChanged();
}

std::optional<double> NotchViewModel::heldBarWidth() const
{
    if (!m_heldBarWidth)
        return std::nullopt;
    // The user may have chosen a smaller panel meanwhile.
    return std::min(
        *m_heldBarWidth,
        NotchLayout::shape(NotchPresentation::expanded, layoutContext()).coreSize.width);
}

void NotchViewModel::selectModule(const QString &id)
{
    const auto modules = m_services.modules.visible(m_services.settings.settings());
    if (id == m_selectedModuleID || !std::ranges::count(modules, id, &NotchModule::id))
        return;
    m_selectedModuleID = id;
    showSelectedModule();
}

void NotchViewModel::selectModule(int index)
{
    const auto modules = m_services.modules.visible(m_services.settings.settings());
    if (index >= 0 && index < int(modules.size()))
        selectModule(modules[std::size_t(index)]->id());
}

void NotchViewModel::selectAdjacentModule(int direction)
{
    const auto modules = m_services.modules.visible(m_services.settings.settings());
    if (modules.empty())
        return;
    const auto count = int(modules.size());
    const auto place = int(std::ranges::find(modules, selectedModule()) - modules.begin());
    selectModule((place + direction % count + count) % count);
}

void NotchViewModel::contentWidthChanged()
{
    updateShape(shapeAnimation());
    Q_EMIT contentSizeChanged();
}

void NotchViewModel::setPresentingSystemUI(bool isPresenting)
{
    m_isPresentingSystemUI = isPresenting;
    m_keyboardTask.cancel();
    if (isPresenting)
        return;
    m_keyboardTask = m_services.platform.scheduler.after(keyboardDelay, [this] {
        if (isOpen(presentation()) && onTapWhileOpen)
            onTapWhileOpen();
    });
}

void NotchViewModel::setDropTargeted(bool targeted)
{
    if (targeted == m_isDropTargeted)
        return;
    m_isDropTargeted = targeted;
    Q_EMIT dropTargetChanged();
}

void NotchViewModel::setDropZone(DropZone zone)
{
    if (zone == m_dropZone)
        return;
    m_dropZone = zone;
    Q_EMIT dropTargetChanged();
}

void NotchViewModel::receiveDrop(const std::vector<DroppedItem> &items)
{
    const AppSettings &settings = m_services.settings.settings();
    m_droppedItems = items;
    ++m_dropNumber;
    ++m_keepNumber;
    m_isDropKept = false;
    m_dropJob.reset();
    Q_EMIT droppedItemsChanged();
    setDropTargeted(false);
    if (settings.dropStraightToShelf) {
        ShelfDrop::keep(m_services, items, followDropped(), offerTheRest());
        send(NotchEvent::dismiss);
    } else if (m_dropZone == DropZone::airdrop) {
        share(items);
    } else {
        send(NotchEvent::dropCompleted);
        if (m_dropZone == DropZone::notch)
            moveIntoNotch(items);
    }
}

void NotchViewModel::moveIntoNotch(const std::vector<DroppedItem> &items)
{
    m_dropJob = ShelfDrop::moveIn(m_services, items, followDropped(), offerTheRest());
    setDropKept(true);
}

void NotchViewModel::keepDropped()
{
    m_dropJob = ShelfDrop::keep(m_services, m_droppedItems, followDropped(), offerTheRest());
    setDropKept(true);
}

void NotchViewModel::undoDrop()
{
    velmo::undoDrop(m_services, followDropped(), [offer = offerTheRest()](bool) { offer(false); });
}

void NotchViewModel::cancelDropJob()
{
    const std::optional<QString> job = std::exchange(m_dropJob, std::nullopt);
    if (!job)
        return;
    m_services.activity.cancel(*job);
    setDropKept(false);
}

void NotchViewModel::setDropKept(bool isKept)
{
    m_isDropKept = isKept;
    Q_EMIT droppedItemsChanged();
}

bool NotchViewModel::canOpenTools() const
{
    return !m_droppedItems.empty() && files(m_droppedItems).size() == m_droppedItems.size() &&
           std::ranges::count(m_services.modules.visible(m_services.settings.settings()),
                              toolsModule(), &NotchModule::id) > 0;
}

void NotchViewModel::openTools()
{
    m_services.tools.open(files(m_droppedItems), std::nullopt);
    selectModule(toolsModule());
    send(NotchEvent::openRequested);
}

void NotchViewModel::performAction(const QString &id)
{
    auto *action = m_services.actions.find(id);
    if (!action || !action->isAvailable(m_droppedItems))
        return;
    const QString source = QStringLiteral("actions");
    try {
        const ActionOutcome outcome = action->perform(m_droppedItems);
        m_services.activity.post(ActivityEvent::make(m_services.platform.scheduler.now(),
                                                     outcome.symbol, outcome.message, outcome.style,
                                                     source));
        m_services.shelf.lookForMissingFiles();
        if (outcome.dismissesPanel)
            send(NotchEvent::dismiss);
    } catch (const LocalizedError &error) {
        m_services.activity.postFailure(QStringLiteral("%1: falhou").arg(action->title()), source,
                                        error.description());
    }
}

bool NotchViewModel::canShare(const std::vector<DroppedItem> &items) const
{
    return !items.empty() && files(items).size() == items.size() &&
           m_services.platform.share.isAvailable();
}

void NotchViewModel::share(const std::vector<DroppedItem> &items)
{
    const std::vector<QUrl> urls = files(items);
    try {
        if (urls.size() < items.size())
            throw LocalizedError(QStringLiteral("Só arquivos podem ser enviados."));
        m_services.platform.share.share(urls);
        send(NotchEvent::dismiss);
    } catch (const LocalizedError &error) {
        send(NotchEvent::dropCompleted);
        m_services.activity.postFailure(QStringLiteral("Não foi possível compartilhar"),
                                        QStringLiteral("share"), error.description());
    }
}

std::vector<QUrl> NotchViewModel::files(const std::vector<DroppedItem> &items)
{
    std::vector<QUrl> urls;
    for (const DroppedItem &item : items) {
        if (const auto file = item.fileURL())
            urls.push_back(*file);
    }
    return urls;
}

ShelfDrop::Moved NotchViewModel::followDropped()
{
    // They come in the order of the list, so that each is found next to the one before.
    const auto place = std::make_shared<std::size_t>(0);
    return [self = QPointer(this), place,
            number = m_dropNumber](const std::vector<ShelfTransfer::Move> &moves) {
        if (!self || self->m_dropNumber != number)
            return;
        std::vector<DroppedItem> &items = self->m_droppedItems;
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
            Q_EMIT self->droppedFileMoved(from, to);
        }
        if (!moves.empty())
            Q_EMIT self->droppedItemsChanged();
    };
}

ShelfDrop::Finished NotchViewModel::offerTheRest()
{
    return [self = QPointer(this), number = ++m_keepNumber](bool isComplete) {
        if (self && !isComplete && self->m_keepNumber == number)
            self->setDropKept(false);
    };
}

std::vector<DropZone> NotchViewModel::offeredDropZones() const
{
    if (m_services.settings.settings().dropStraightToShelf)
        return {DropZone::notch};
    const auto contents = m_services.platform.dragPasteboard.contents();
    const bool hasNoFiles = !contents.hasFiles && (contents.hasLinks || contents.hasText);
    if (hasNoFiles || !m_services.platform.share.isAvailable())
        return {DropZone::actions, DropZone::notch};
    return {DropZone::airdrop, DropZone::actions, DropZone::notch};
}

void NotchViewModel::startDroplet(const Point &start, const std::vector<DroppedItem> &items)
{
    if (!m_services.settings.settings().animationsEnabled || items.empty())
        return;
    m_droplet = Droplet{makeUuid(), start, items.front()};
    Q_EMIT dropletChanged();
    m_dropletTask = m_services.platform.scheduler.after(dropletFlight, [this] {
        m_droplet.reset();
        ++m_gulpSerial;
        Q_EMIT dropletChanged();
        Q_EMIT gulped();
    });
}

void NotchViewModel::removeDroppedItem(const QString &id)
{
    if (std::erase_if(m_droppedItems, [&](const auto &item) { return item.id() == id; }) == 0)
        return;
    Q_EMIT droppedItemsChanged();
    if (m_droppedItems.empty() && presentation() == NotchPresentation::dropResult)
        send(NotchEvent::dismiss);
}

void NotchViewModel::activateShownModule()
{
    auto *module = selectedModule();
    if (module && presentation() == NotchPresentation::expanded)
        m_services.modules.activateIfNeeded(*module);
}

void NotchViewModel::showSelectedModule()
{
    activateShownModule();
    Q_EMIT selectedModuleChanged();
    contentWidthChanged();
}

NotchMotion NotchViewModel::motion(bool opening) const
{
    const AppSettings &settings = m_services.settings.settings();
    return NotchMotions::transition(opening, settings.animationsEnabled, reducesMotion(),
                                    settings.animationSpeed);
}

NotchMotion NotchViewModel::shapeAnimation() const
{
    const AppSettings &settings = m_services.settings.settings();
    return NotchMotions::shapeChange(
        presentation(), m_services.platform.scheduler.now() - m_presentationChangedAt,
        settings.animationsEnabled, reducesMotion(), settings.animationSpeed);
}

bool NotchViewModel::reducesMotion() const
{
    return m_services.platform.appearance.shouldReduceMotion();
}

void NotchViewModel::updateShape(const NotchMotion &motion)
{
    m_shape.moveTo(NotchLayout::shape(presentation(), layoutContext()), motion);
}

std::optional<double> NotchViewModel::moduleWidth() const
{
    const auto *module = selectedModule();
    const auto width = module ? module->contentWidth(m_services) : std::nullopt;
    if (!width)
        return std::nullopt;
    return std::ceil(*width + moduleWidthPadding);
}

void NotchViewModel::settingsChanged(const AppSettings &before, const AppSettings &after)
{
    if (before.moduleOrder != after.moduleOrder || before.hiddenModules != after.hiddenModules) {
        Q_EMIT modulesChanged();
        showSelectedModule();
    }
    if (before.panelSize != after.panelSize || before.nonNotchStyle != after.nonNotchStyle)
        updateShape(shapeAnimation());
}

} // namespace velmo
