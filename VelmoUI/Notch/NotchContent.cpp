#include "VelmoUI/Notch/NotchContent.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Storage/StorageInspector.h"
#include "VelmoUI/Design/ThumbnailProvider.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <ranges>

namespace velmo {

namespace {

/// More would only be scrolled past, and take long to make.
constexpr std::size_t mostTiles = 50;

/// `details` may not have come yet.
DroppedRow fileRow(const QUrl &url, const DroppedFiles::Details *details, const ShelfStore &shelf)
{
    const bool isFolder = details && details->isFolder;
    QStringList texts;
    if (shelf.isInNotch(url))
        texts.append(QStringLiteral("Na prateleira"));
    if (details)
        texts.append(isFolder ? QStringLiteral("Pasta") : StorageInspector::format(details->size));
    return {{},
            isFolder ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill"),
            FileNaming::nameOf(url),
            texts.join(QStringLiteral(" · ")),
            details && !isFolder ? QUrl(ThumbnailProvider::urlFor(url.toLocalFile())) : QUrl(),
            {}};
}

/// What isn't an action of the catalog.
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

/// Of those that have no tile.
DroppedRow restRow(std::size_t count)
{
    return {QStringLiteral("rest"),
            QStringLiteral("doc.on.doc"),
            count == 1 ? QStringLiteral("Mais 1 item")
                       : QStringLiteral("Mais %1 itens").arg(QLocale().toString(qulonglong(count))),
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

NotchContent::NotchContent(NotchViewModel &model)
    : m_model(model), m_live(model.services().activity, model.services().platform.scheduler),
      m_issues(model.services()), m_files(model.services().platform.scheduler)
{
    AppServices &services = model.services();
    connect(&model, &NotchViewModel::presentationChanged, this, [this] {
        m_live.setWatched(!isOpen(m_model.presentation()));
        updateClock();
        updatePage();
        Q_EMIT presentationChanged();
    });
    connect(&model, &NotchViewModel::metricsChanged, this, &NotchContent::metricsChanged);
    connect(&model, &NotchViewModel::metricsChanged, this, &NotchContent::sizesChanged);
    connect(&model.shape(), &ShapeAnimator::targetChanged, this, &NotchContent::sizesChanged);
    connect(&model, &NotchViewModel::contentSizeChanged, this, &NotchContent::sizesChanged);
    connect(&model, &NotchViewModel::selectedModuleChanged, this, [this] {
        updateModules();
        updatePage();
    });
    connect(&model, &NotchViewModel::modulesChanged, this, &NotchContent::updateModules);
    connect(&model, &NotchViewModel::dropTargetChanged, this, &NotchContent::updateDropZones);
    connect(&model, &NotchViewModel::droppedItemsChanged, this, &NotchContent::updateDroppedItems);
    connect(&model, &NotchViewModel::droppedFileMoved, &m_files, &DroppedFiles::move);
    connect(&m_files, &DroppedFiles::changed, this, &NotchContent::updateDroppedRows);
    connect(&m_files, &DroppedFiles::changed, this, &NotchContent::dropletChanged);
    connect(&model, &NotchViewModel::dropletChanged, this, &NotchContent::dropletChanged);
    connect(&model, &NotchViewModel::gulped, this, &NotchContent::gulped);
    connect(&m_issues, &PanelIssues::changed, this, &NotchContent::issuesChanged);
    connect(&m_live, &LiveRows::changed, this, [this] {
        updateDropJob();
        Q_EMIT liveChanged();
    });
    connect(&services.dropUndo, &DropUndo::changed, this, &NotchContent::undoChanged);
    connect(&services.modules, &ModuleRegistry::failuresChanged, this, &NotchContent::updatePage);
    connect(&services.activity, &ActivityCenter::feedbackChanged, this, [this] {
        if (const auto &event = m_model.services().activity.feedback())
            m_feedback = *event;
        Q_EMIT feedbackChanged();
    });
    connect(&services.settings, &SettingsStore::settingsChanged, this,
            &NotchContent::appearanceChanged);
    m_live.setWatched(true);
    updateModules();
    updateDropZones();
}

QString NotchContent::name(NotchPresentation presentation)
{
    return QString::fromLatin1(boost::describe::enum_to_string(presentation, ""));
}

qreal NotchContent::notchCenterX() const
{
    return m_model.metrics().centerX - NotchLayout::canvasFrame(m_model.layoutContext()).minX();
}

QSizeF NotchContent::size(NotchPresentation presentation, bool hasFeedback) const
{
    NotchLayoutContext context = m_model.layoutContext();
    context.hasLiveActivity = true;
    context.hasFeedback = hasFeedback;
    context.expandedContentWidth = m_model.moduleWidth();
    const Size core = NotchLayout::shape(presentation, context).coreSize;
    return {core.width, core.height};
}

qreal NotchContent::pace() const
{
    return NotchMotions::pace(settings().animationSpeed);
}

QString NotchContent::accent() const
{
    return QString::fromLatin1(boost::describe::enum_to_string(settings().accent, ""));
}

QString NotchContent::clock() const
{
    const QDateTime now = localDateTime(m_model.services().platform.scheduler.now());
    const QLocale locale;
    return locale.toString(now.time(),
                           locale.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss")));
}

QString NotchContent::day() const
{
    static const QRegularExpression year(QStringLiteral("[\\s,]*('de'\\s*)?y+"));
    const QLocale locale;
    const QDate today = localDateTime(m_model.services().platform.scheduler.now()).date();
    const QString day = locale.toString(today, locale.dateFormat().remove(year));
    return day.left(1).toUpper() + day.mid(1);
}

QString NotchContent::feedbackSpoken() const
{
    const QString detail = feedbackDetail();
    return detail.isEmpty() ? m_feedback.title
                            : QStringLiteral("%1, %2").arg(m_feedback.title, detail);
}

QString NotchContent::feedbackStyle() const
{
    return QString::fromLatin1(boost::describe::enum_to_string(m_feedback.style, ""));
}

QString NotchContent::droppedTitle() const
{
    const auto count = m_model.droppedItems().size();
    return count == 1 ? QStringLiteral("1 item")
                      : QStringLiteral("%1 itens").arg(QLocale().toString(qulonglong(count)));
}

QPointF NotchContent::dropletStart() const
{
    const auto &droplet = m_model.droplet();
    return droplet ? QPointF(droplet->start.x, droplet->start.y) : QPointF();
}

QString NotchContent::dropletSymbol() const
{
    const auto &droplet = m_model.droplet();
    return droplet ? droppedRow(droplet->item, m_files, m_model.services().shelf).symbol
                   : QString();
}

QUrl NotchContent::dropletImage() const
{
    const auto &droplet = m_model.droplet();
    return droplet ? droppedRow(droplet->item, m_files, m_model.services().shelf).image : QUrl();
}

int NotchContent::dropletFlight() const
{
    return int(
        std::chrono::round<std::chrono::milliseconds>(NotchViewModel::dropletFlight).count());
}

QString NotchContent::pageFailureTitle() const
{
    return QStringLiteral("%1 não pôde ser carregado").arg(m_pageTitle);
}

void NotchContent::openSettings()
{
    close();
    m_model.services().openSettings(std::nullopt);
}

void NotchContent::updateClock()
{
    Q_EMIT clockChanged();
    if (m_model.presentation() == NotchPresentation::collapsed) {
        m_nextMinute.cancel();
        return;
    }
    constexpr double minute = 60;
    constexpr double leeway = 0.001;
    Scheduler &scheduler = m_model.services().platform.scheduler;
    const double gone = std::fmod(scheduler.now().time_since_epoch().count(), minute);
    m_nextMinute = scheduler.after(Seconds(minute - gone + leeway), [this] { updateClock(); });
}

void NotchContent::updatePage()
{
    auto *module = m_model.selectedModule();
    if (m_model.presentation() != NotchPresentation::expanded || !module)
        return;
    const auto &failures = m_model.services().modules.failures();
    const auto failure = failures.find(module->id());
    const QString reason = failure == failures.end() ? QString() : failure->second;
    if (module->id() == m_pageModuleID && reason == m_pageFailure)
        return;
    m_pageModuleID = module->id();
    m_pageTitle = module->title();
    m_pageFailure = reason;
    // The page on show must leave the view before its object goes.
    const NotchModule::View previous =
        std::exchange(m_view, reason.isEmpty() ? module->makeView({m_model.services(), m_model})
                                               : NotchModule::View());
    Q_EMIT pageChanged();
}

void NotchContent::updateModules()
{
    const auto *selected = m_model.selectedModule();
    std::vector<ModuleTab> left;
    std::vector<ModuleTab> right;
    std::size_t number = 0;
    for (const auto *module : m_model.services().modules.visible(settings())) {
        auto &side = number < modulesPerSide ? left : right;
        ++number;
        side.push_back({module->id(), module->title(), module->symbol(), module == selected,
                        number <= 9 ? QStringLiteral("Ctrl+%1").arg(number) : QString()});
    }
    m_leftModules.setRecords(left);
    m_rightModules.setRecords(right);
}

void NotchContent::updateDropZones()
{
    const auto row = [this](DropZone zone) -> DropZoneRow {
        const bool isTargeted = m_model.isDropTargeted() && m_model.dropZone() == zone;
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
    for (const DropZone zone : m_model.dropZones())
        rows.push_back(row(zone));
    m_dropZones.setRecords(rows);
}

void NotchContent::updateDroppedRows()
{
    const std::vector<DroppedItem> &items = m_model.droppedItems();
    std::vector<DroppedRow> rows;
    for (const DroppedItem &item : items | std::views::take(mostTiles))
        rows.push_back(droppedRow(item, m_files, m_model.services().shelf));
    if (items.size() > mostTiles)
        rows.push_back(restRow(items.size() - mostTiles));
    m_droppedItems.setRecords(rows);
}

void NotchContent::updateDroppedItems()
{
    QSet<QUrl> files;
    for (const DroppedItem &item : m_model.droppedItems() | std::views::take(mostTiles)) {
        if (const auto file = item.fileURL())
            files.insert(*file);
    }
    m_files.follow(files);
    updateDroppedRows();
    m_dropActions.setRecords(offeredActions());
    updateDropJob();
    Q_EMIT droppedItemsChanged();
}

void NotchContent::updateDropJob()
{
    const auto &rows = liveRows();
    const auto row = std::ranges::find(rows, m_model.dropJob(), &LiveRow::id);
    const LiveRow job = row == rows.end() ? LiveRow() : *row;
    if (std::exchange(m_dropJob, job) != job)
        Q_EMIT dropJobChanged();
}

std::vector<DropActionRow> NotchContent::offeredActions() const
{
    const std::vector<DroppedItem> &items = m_model.droppedItems();
    std::vector<DropActionRow> rows;
    if (m_model.canKeepDropped())
        rows.push_back({keepID(), QStringLiteral("tray.and.arrow.down"),
                        QStringLiteral("Guardar na prateleira")});
    for (const auto *action : m_model.services().actions.actions(items))
        rows.push_back({action->id(), action->symbol(), action->title()});
    if (m_model.canOpenTools())
        rows.push_back(
            {toolsID(), QStringLiteral("wrench.and.screwdriver"), QStringLiteral("Ferramentas")});
    if (m_model.canShare(items))
        rows.push_back(
            {shareID(), QStringLiteral("square.and.arrow.up"), QStringLiteral("Compartilhar")});
    return rows;
}

void NotchContent::performDropAction(const QString &id)
{
    if (id == keepID())
        m_model.keepDropped();
    else if (id == toolsID())
        m_model.openTools();
    else if (id == shareID())
        m_model.share(m_model.droppedItems());
    else
        m_model.performAction(id);
}

} // namespace velmo
