#include "VelmoUI/Notch/PanelPages.h"

namespace velmo {

PanelPages::PanelPages(NotchViewModel &panel, ModuleRegistry &registry)
    : m_panel(panel), m_registry(registry)
{
    connect(&panel, &NotchViewModel::presentationChanged, this, &PanelPages::updatePage);
    connect(&panel, &NotchViewModel::routed, this, &PanelPages::follow);
    connect(&panel.modules(), &ModuleSelection::changed, this, [this] {
        updateTabs();
        updatePage();
    });
    connect(&registry, &ModuleRegistry::failuresChanged, this, &PanelPages::updatePage);
    updateTabs();
}

PanelPages::~PanelPages() = default;

void PanelPages::updateTabs()
{
    const auto *selected = m_panel.modules().current();
    std::vector<ModuleTab> left;
    std::vector<ModuleTab> right;
    std::size_t number = 0;
    for (const auto *module : m_panel.modules().visible()) {
        auto &side = number < modulesPerSide ? left : right;
        ++number;
        side.push_back({module->id(), module->title(), module->symbol(), module == selected,
                        number <= 9 ? QStringLiteral("Ctrl+%1").arg(number) : QString()});
    }
    m_left.setRecords(left);
    m_right.setRecords(right);
}

/// A closed panel keeps its page, so that it fades out whole; only an open one gets another.
void PanelPages::updatePage()
{
    auto *module = m_panel.modules().current();
    const bool isShown = m_panel.presentation() == NotchPresentation::expanded;
    if (isShown && module)
        makePage(*module);
    if (m_view.page)
        m_view.page->setWatched(isShown);
}

void PanelPages::makePage(NotchModule &module)
{
    const auto &failures = m_registry.failures();
    const auto failure = failures.find(module.id());
    const QString reason = failure == failures.end() ? QString() : failure->second;
    if (module.id() == m_id && reason == m_failure)
        return;
    m_id = module.id();
    m_title = module.title();
    m_failure = reason;
    if (m_view.page)
        m_view.page->setWatched(false);
    m_isLoaded = false;
    // The page on show must leave the view before its object goes.
    const NotchModule::View previous =
        std::exchange(m_view, reason.isEmpty() ? module.makeView(m_panel) : NotchModule::View());
    Q_EMIT pageChanged();
}

void PanelPages::setLoaded(bool isLoaded)
{
    m_isLoaded = isLoaded;
    follow();
}

void PanelPages::follow()
{
    if (!m_isLoaded || !m_view.page)
        return;
    if (const Route route = m_panel.takeRoute(); route.module == m_id)
        m_view.page->go(route);
}

} // namespace velmo
