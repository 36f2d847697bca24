#include "VelmoUI/Notch/NotchViewModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Mail/MailBannerState.h"
#include "VelmoSystem/Ports/DesktopAppearance.h"
#include "VelmoSystem/Ports/Platform.h"

#include <algorithm>

namespace velmo {

QString presentationName(NotchPresentation presentation)
{
    return QString::fromLatin1(boost::describe::enum_to_string(presentation, ""));
}

NotchViewModel::NotchViewModel(DisplayID displayID, const NotchMetrics &metrics,
                               const PanelServices &services)
    : m_displayID(displayID), m_services(services), m_metrics(metrics),
      m_presentationChangedAt(services.platform.scheduler.now()),
      m_modules(services.modules, services.settings),
      m_drop(*this, services, [this](NotchEvent event) { send(event); }),
      m_settings(services.settings.observe([this](const AppSettings &before,
                                                  const AppSettings &after) {
          if (before.panelSize != after.panelSize || before.nonNotchStyle != after.nonNotchStyle)
              updateShape(shapeAnimation());
      }))
{
    updateShape({NotchMotion::None{}});
    const auto contentChanged = [this] { updateShape(shapeAnimation()); };
    connect(&services.activity, &ActivityCenter::liveChanged, this, contentChanged);
    connect(&services.activity, &ActivityCenter::feedbackChanged, this, contentChanged);
    connect(&services.mail.banner, &MailBannerState::changed, this, contentChanged);
    connect(&m_modules, &ModuleSelection::changed, this, &NotchViewModel::showModule);
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
    context.hasMailBanner = m_services.mail.banner.message().has_value();
    if (presentation() == NotchPresentation::expanded)
        context.expandedContentWidth = m_modules.width();
    if (context.expandedContentWidth && m_heldBarWidth)
        context.expandedContentWidth = std::max(*context.expandedContentWidth, *m_heldBarWidth);
    return context;
}

Rect NotchViewModel::frame() const
{
    const NotchLayoutContext context = layoutContext();
    return NotchLayout::shapeFrame(NotchLayout::shape(presentation(), context), context);
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
    if (event == NotchEvent::dragEntered)
        m_drop.begin();
    const NotchPresentation from = m_state.presentation;
    const bool wasOpen = isOpen();
    m_state = next;
    if (next.presentation == from)
        return;
    if (next.presentation == NotchPresentation::expanded) {
        m_heldBarWidth.reset(); // of an earlier time
        m_modules.activate();
    }
    m_presentationChangedAt = m_services.platform.scheduler.now();
    updateShape(motion(opening));
    Q_EMIT contentSizeChanged();
    Q_EMIT presentationChanged();
    if (isOpen() != wasOpen)
        Q_EMIT openChanged();
    if (onTransition)
        onTransition(from, next.presentation, event);
}

void NotchViewModel::tap()
{
    if (isOpen() && onTapWhileOpen)
        onTapWhileOpen();
    send(NotchEvent::tap);
}

void NotchViewModel::go(const Route &route)
{
    m_route = route;
    m_modules.select(route.module);
    send(NotchEvent::openRequested);
    Q_EMIT routed();
}

void NotchViewModel::openSettings(std::optional<SettingsPane> pane)
{
    close();
    m_services.openSettings(pane);
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
        if (isOpen() && onTapWhileOpen)
            onTapWhileOpen();
    });
}

void NotchViewModel::showModule()
{
    if (presentation() == NotchPresentation::expanded)
        m_modules.activate();
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

} // namespace velmo
