#include "VelmoUI/Modules/Home/HomePageModel.h"

#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>

namespace velmo {

namespace {

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

HomePageModel::HomePageModel(const HomeCardSources &sources, HotKeyController &hotKeys,
                             PanelPort &panel)
    : m_sources(sources), m_settings(sources.settings), m_hotKeys(hotKeys), m_panel(panel)
{
    connect(&m_settings, &SettingsStore::settingsChanged, this, &HomePageModel::update);
    for (NotchModule *module : sources.modules.all())
        connect(module, &NotchModule::cardsChanged, this, &HomePageModel::update);
    connect(&hotKeys, &HotKeyController::errorsChanged, this, &HomePageModel::updateTips);
    connect(&panel, &PanelPort::pageTurned, this,
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
    watchCards();
    Q_EMIT changed();
}

bool HomePageModel::hasWelcome() const
{
    return m_sources.hasWelcome();
}

int HomePageModel::hoverBehavior() const
{
    return int(m_settings.settings().hoverBehavior);
}

void HomePageModel::setHoverBehavior(int place)
{
    m_settings.update(
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
    m_panel.go({.module = id});
}

const NotchModule *HomePageModel::moduleOf(const QString &card) const
{
    const auto &rows = m_cards.records();
    const auto row = std::ranges::find(rows, card, &HomeCardRow::id);
    if (row == rows.end())
        return nullptr;
    const auto modules = m_sources.modules.visible(m_settings.settings());
    const auto found = std::ranges::find(modules, row->module, &NotchModule::id);
    return found == modules.end() ? nullptr : *found;
}

void HomePageModel::askAbout(const QString &card)
{
    std::vector<PageCommand> commands;
    if (const auto *module = moduleOf(card))
        commands.push_back({openCommand(), QStringLiteral("Abrir %1").arg(module->title()),
                            module->symbol(), QString()});
    if (HomeCards::find(card))
        commands.push_back({hideCommand(), QStringLiteral("Ocultar cartão"),
                            QStringLiteral("eye.slash"), QString()});
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
    m_settings.update([&](AppSettings &settings) {
        if (std::ranges::count(settings.hiddenHomeCards, card) == 0)
            settings.hiddenHomeCards.push_back(card);
    });
}

void HomePageModel::openSettings()
{
    m_panel.openSettings(std::nullopt);
}

void HomePageModel::chooseCards()
{
    m_panel.openSettings(SettingsPane::modules);
}

void HomePageModel::finishOnboarding()
{
    m_settings.update([](AppSettings &settings) { settings.hasCompletedOnboarding = true; });
}

void HomePageModel::watch(bool)
{
    watchCards();
}

void HomePageModel::watchCards()
{
    for (const HomeCardRow &row : m_cards.records())
        row.content->setWatched(isWatched() && row.page == m_pageIndex);
}

const NotchModule::View &
HomePageModel::view(const QString &id, const std::function<NotchModule::View(PanelPort &)> &make)
{
    const auto [place, isNew] = m_views.try_emplace(id);
    if (!isNew)
        return place->second;
    place->second = make(m_panel);
    if (const auto *favorites = qobject_cast<FavoritesModel *>(place->second.page.get()))
        connect(favorites, &FavoritesModel::pickingChanged, this, &HomePageModel::pickingChanged);
    return place->second;
}

FavoritesModel *HomePageModel::picking() const
{
    const auto view = m_views.find(HomeCards::name(HomeCard::favorites));
    auto *favorites =
        view == m_views.end() ? nullptr : qobject_cast<FavoritesModel *>(view->second.page.get());
    return favorites && favorites->isPicking() ? favorites : nullptr;
}

void HomePageModel::update()
{
    layOut();
    m_panel.contentWidthChanged();
}

void HomePageModel::layOut()
{
    std::vector<HomeCardRow> rows;
    const auto add = [&](const QString &id, const QString &title, const QString &module,
                         const std::function<NotchModule::View(PanelPort &)> &make) {
        const auto &[qml, content] = view(id, make);
        rows.push_back(
            {.id = id, .title = title, .source = qml, .content = content.get(), .module = module});
    };
    for (const auto &[module, offer] : m_sources.offers())
        add(module->id() + QStringLiteral(".offer"), offer.title, module->id(), offer.make);
    for (const NotchModule::Card &card : m_sources.shown())
        add(HomeCards::name(card.card), HomeCards::title(card.card),
            HomeCards::moduleID(card.card).value_or(QString()), card.make);

    const auto items = m_sources.items();
    // Before QML has said how wide it is, everything stands on one page.
    const double width = m_width > 0 ? m_width : HomeLayout::idealWidth(items);
    const auto places = HomeLayout::places(items, width, m_gap);
    m_welcomeWidth = hasWelcome() ? places.front().width : 0;
    auto place = places.end() - std::ptrdiff_t(rows.size());
    for (HomeCardRow &row : rows) {
        row.page = place->page;
        row.width = place++->width;
    }
    m_pageCount = places.empty() ? 1 : places.back().page + 1;
    m_pageIndex = std::min(m_pageIndex, m_pageCount - 1);
    m_cards.setRecords(rows);
    watchCards();
    updateTips();
    Q_EMIT changed();
}

void HomePageModel::updateTips()
{
    const AppSettings &settings = m_settings.settings();
    std::vector<HomeTip> tips{{QStringLiteral("drag"), QStringLiteral("tray.and.arrow.down"),
                               QStringLiteral("Arraste até aqui"),
                               QStringLiteral("Arquivos, links e textos")}};
    if (settings.hoverBehavior != HoverBehavior::none)
        tips.push_back({QStringLiteral("hover"), QStringLiteral("computermouse"),
                        QStringLiteral("Passe o cursor"),
                        settings.hoverBehavior == HoverBehavior::expand
                            ? QStringLiteral("Abrir o painel")
                            : QStringLiteral("Ver uma prévia")});
    for (const auto &[action, handler] : m_hotKeys.handlers) {
        if (settings.*HotKeyController::setting(action).isEnabled &&
            !m_hotKeys.errors().contains(action))
            tips.push_back({m_hotKeys.displayString(action), QStringLiteral("keyboard"),
                            m_hotKeys.displayString(action), HotKeyController::title(action)});
    }
    m_tips.setRecords(tips);
}

} // namespace velmo
