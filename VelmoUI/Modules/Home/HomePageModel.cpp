#include "VelmoUI/Modules/Home/HomePageModel.h"

#include "VelmoSystem/Ports/PowerInfo.h"
#include "VelmoUI/Modules/Clipboard/ClipboardCardModel.h"
#include "VelmoUI/Modules/Home/FavoritesModel.h"
#include "VelmoUI/Modules/Home/HomeView.h"
#include "VelmoUI/Modules/Notes/NotesPageModel.h"
#include "VelmoUI/Modules/Shelf/ShelfCardModel.h"
#include "VelmoUI/Modules/System/SystemPageModel.h"
#include "VelmoUI/Modules/Timers/TimersPageModel.h"
#include "VelmoUI/Notch/NotchViewModel.h"

#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>

namespace velmo {

namespace {

QUrl cardSource(const char16_t *name)
{
    return QUrl(
        QStringLiteral("qrc:/qt/qml/Velmo/Modules/Home/%1.qml").arg(QString::fromUtf16(name)));
}

QString openCommand()
{
    return QStringLiteral("open");
}

QString hideCommand()
{
    return QStringLiteral("hide");
}

QString chooseCommand()
{
    return QStringLiteral("choose");
}

} // namespace

HomePageModel::HomePageModel(const ModuleContext &context) : m_context(context)
{
    connect(&context.services.settings, &SettingsStore::settingsChanged, this,
            &HomePageModel::update);
    connect(&context.services.platform.power, &PowerInfo::changed, this, &HomePageModel::update);
    connect(&context.services.notes, &NotesStore::changed, this, &HomePageModel::update);
    connect(&context.services.timers, &TimerCenter::changed, this, &HomePageModel::update);
    connect(&context.services.hotKeys, &HotKeyController::errorsChanged, this,
            &HomePageModel::updateTips);
    connect(&context.panel, &NotchViewModel::homePageRequested, this,
            [this](int direction) { setPageIndex(m_pageIndex + direction); });
    update();
}

HomePageModel::~HomePageModel() = default;

void HomePageModel::setPageIndex(int index)
{
    const int nearest = std::clamp(index, 0, m_pageCount - 1);
    if (nearest == m_pageIndex)
        return;
    m_pageIndex = nearest;
    Q_EMIT changed();
}

bool HomePageModel::hasWelcome() const
{
    return !m_context.services.settings.settings().hasCompletedOnboarding;
}

int HomePageModel::hoverBehavior() const
{
    return int(m_context.services.settings.settings().hoverBehavior);
}

void HomePageModel::setHoverBehavior(int place)
{
    m_context.services.settings.update(
        [&](AppSettings &settings) { settings.hoverBehavior = HoverBehavior(place); });
}

void HomePageModel::setWidth(qreal width, qreal gap)
{
    if (width == m_width && gap == m_gap)
        return;
    m_width = width;
    m_gap = gap;
    layOut(); // Home asks for no other width because of that
}

void HomePageModel::turnWheel(int angle)
{
    const bool turnsBack = (angle < 0) != (m_wheelAngle < 0);
    m_wheelAngle = turnsBack ? angle : m_wheelAngle + angle;
    if (std::abs(m_wheelAngle) < QWheelEvent::DefaultDeltasPerStep)
        return;
    setPageIndex(m_pageIndex + (m_wheelAngle < 0 ? 1 : -1));
    m_wheelAngle = 0;
}

void HomePageModel::openModule(const QString &id)
{
    m_context.select(id);
}

const NotchModule *HomePageModel::moduleOf(const QString &card) const
{
    HomeCard known{};
    if (!boost::describe::enum_from_string(card.toUtf8().constData(), known))
        return nullptr;
    const auto &services = m_context.services;
    const auto modules = services.modules.visible(services.settings.settings());
    const auto found = std::ranges::find(modules, HomeCards::moduleID(known), &NotchModule::id);
    return found == modules.end() ? nullptr : *found;
}

void HomePageModel::askAbout(const QString &card)
{
    std::vector<PageCommand> commands;
    if (const auto *module = moduleOf(card))
        commands.push_back({openCommand(), QStringLiteral("Abrir %1").arg(module->title()),
                            module->symbol(), QString()});
    commands.push_back(
        {hideCommand(), QStringLiteral("Ocultar cartão"), QStringLiteral("eye.slash"), QString()});
    commands.push_back({chooseCommand(), QStringLiteral("Escolher cartões"),
                        QStringLiteral("square.grid.2x2"), QString()});
    m_commands.setRecords(commands);
}

void HomePageModel::run(const QString &command, const QString &card)
{
    if (const auto *module = moduleOf(card); module && command == openCommand())
        openModule(module->id());
    else if (command == hideCommand())
        hide(card);
    else if (command == chooseCommand())
        chooseCards();
}

void HomePageModel::hide(const QString &card)
{
    m_context.services.settings.update([&](AppSettings &settings) {
        if (std::ranges::count(settings.hiddenHomeCards, card) == 0)
            settings.hiddenHomeCards.push_back(card);
    });
}

void HomePageModel::openSettings()
{
    m_context.close();
    m_context.services.openSettings(std::nullopt);
}

void HomePageModel::chooseCards()
{
    m_context.close();
    m_context.services.openSettings(SettingsPane::modules);
}

void HomePageModel::finishOnboarding()
{
    m_context.services.settings.update(
        [](AppSettings &settings) { settings.hasCompletedOnboarding = true; });
}

NotchModule::View HomePageModel::makeCard(HomeCard card)
{
    switch (card) {
    case HomeCard::favorites:
        return {cardSource(u"FavoritesCard"), std::make_unique<FavoritesModel>(m_context)};
    case HomeCard::clipboard:
        return {cardSource(u"ClipboardCard"), std::make_unique<ClipboardCardModel>(m_context)};
    case HomeCard::focus:
        return {cardSource(u"FocusCard"), std::make_unique<TimersPageModel>(m_context.services)};
    case HomeCard::notes:
        return {cardSource(u"NotesCard"), std::make_unique<NotesPageModel>(m_context.services)};
    case HomeCard::shelf:
        return {cardSource(u"ShelfCard"), std::make_unique<ShelfCardModel>(m_context)};
    case HomeCard::system:
        return {cardSource(u"SystemSummaryCard"),
                std::make_unique<SystemPageModel>(m_context.services)};
    default: // not available yet
        Q_UNREACHABLE();
    }
}

void HomePageModel::update()
{
    layOut();
    m_context.panel.contentWidthChanged();
}

void HomePageModel::layOut()
{
    const std::vector<HomeCard> cards = HomeView::cards(m_context.services);
    // Before QML has said how wide it is, everything stands on one page.
    const double width = m_width > 0 ? m_width : HomeLayout::idealWidth(cards, hasWelcome());
    const auto pages = HomeLayout::pages(cards, hasWelcome(), width, m_gap);
    std::vector<HomeCardRow> rows;
    for (int page = 0; page < int(pages.size()); ++page) {
        for (const auto &[card, cardWidth] : pages[std::size_t(page)].cards) {
            const QString id = HomeCards::name(card);
            if (!m_views.contains(id))
                m_views.emplace(id, makeCard(card));
            const NotchModule::View &view = m_views.at(id);
            rows.push_back(
                {id, HomeCards::title(card), cardWidth, page, view.source, view.page.get()});
        }
    }
    m_cards.setRecords(rows);
    m_welcomeWidth = pages.front().welcomeWidth;
    m_pageCount = int(pages.size());
    m_pageIndex = std::min(m_pageIndex, m_pageCount - 1);
    updateTips();
    Q_EMIT changed();
}

void HomePageModel::updateTips()
{
    const AppServices &services = m_context.services;
    const AppSettings &settings = services.settings.settings();
    std::vector<HomeTip> tips{{QStringLiteral("drag"), QStringLiteral("tray.and.arrow.down"),
                               QStringLiteral("Arraste até aqui"),
                               QStringLiteral("Arquivos, links e textos")}};
    if (settings.hoverBehavior != HoverBehavior::none)
        tips.push_back({QStringLiteral("hover"), QStringLiteral("computermouse"),
                        QStringLiteral("Passe o cursor"),
                        settings.hoverBehavior == HoverBehavior::expand
                            ? QStringLiteral("Abrir o painel")
                            : QStringLiteral("Ver uma prévia")});
    for (const auto &[action, handler] : services.hotKeys.handlers) {
        if (settings.*HotKeyController::setting(action).isEnabled &&
            !services.hotKeys.errors().contains(action))
            tips.push_back({services.hotKeys.displayString(action), QStringLiteral("keyboard"),
                            services.hotKeys.displayString(action),
                            HotKeyController::title(action)});
    }
    m_tips.setRecords(tips);
}

} // namespace velmo
