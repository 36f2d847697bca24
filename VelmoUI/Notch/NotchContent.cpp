#include "VelmoUI/Notch/NotchContent.h"

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Ports/Platform.h"

#include <cmath>

namespace velmo {

static_assert(NotchContent::DropResult == int(NotchPresentation::dropResult));

NotchContent::NotchContent(NotchViewModel &model, const PanelServices &services)
    : m_model(model), m_services(services), m_live(services.activity, services.platform.scheduler),
      m_issues(services.files, services.modules), m_pages(model, services.modules),
      m_drop(model.drop(), services.drop, m_live, services.platform.scheduler),
      m_mailBanner(model, m_services)
{
    connect(&model, &NotchViewModel::presentationChanged, this, [this] {
        m_live.setWatched(!m_model.isOpen());
        if (m_model.isOpen())
            m_mailBanner.dismiss();
        updateClock();
        Q_EMIT presentationChanged();
    });
    connect(&model, &NotchViewModel::metricsChanged, this, &NotchContent::metricsChanged);
    connect(&model, &NotchViewModel::metricsChanged, this, &NotchContent::sizesChanged);
    connect(&model.shape(), &ShapeAnimator::targetChanged, this, &NotchContent::sizesChanged);
    connect(&model, &NotchViewModel::contentSizeChanged, this, &NotchContent::sizesChanged);
    connect(&m_issues, &PanelIssues::changed, this, &NotchContent::issuesChanged);
    connect(&m_live, &LiveRows::changed, this, &NotchContent::liveChanged);
    connect(&services.activity, &ActivityCenter::feedbackChanged, this, [this] {
        if (const auto &event = m_services.activity.feedback())
            m_feedback = *event;
        Q_EMIT feedbackChanged();
    });
    connect(&services.settings, &SettingsStore::settingsChanged, this,
            &NotchContent::appearanceChanged);
    for (const NotchModule *module : services.modules.all())
        connect(module, &NotchModule::peekChanged, this, &NotchContent::updatePeek);
    m_live.setWatched(true);
}

LiveRow NotchContent::firstLive() const
{
    return hasLive() ? m_live.model().records().front() : LiveRow();
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
    context.expandedContentWidth = m_model.modules().width();
    const Size core = NotchLayout::shape(presentation, context).coreSize;
    return {core.width, core.height};
}

QSizeF NotchContent::bannerSize() const
{
    const auto context = m_model.layoutContext().withMailBanner(true);
    const Size core = NotchLayout::shape(NotchPresentation::collapsed, context).coreSize;
    return {core.width, core.height};
}

QString NotchContent::accent() const
{
    return QString::fromLatin1(boost::describe::enum_to_string(settings().accent, ""));
}

QString NotchContent::clock() const
{
    return Words::time(m_services.platform.scheduler.now());
}

QString NotchContent::day() const
{
    const QString day = Words::longDay(localDateTime(m_services.platform.scheduler.now()).date());
    return day.left(1).toUpper() + day.mid(1);
}

QString NotchContent::feedbackSpoken() const
{
    const QString detail = feedbackDetail();
    return detail.isEmpty() ? m_feedback.title
                            : QStringLiteral("%1, %2").arg(m_feedback.title, detail);
}

void NotchContent::updatePeek()
{
    NotchModule::Peek peek;
    for (const NotchModule *module : m_services.modules.visible(settings())) {
        if (const auto own = module->peek()) {
            peek = *own;
            break;
        }
    }
    if (std::exchange(m_peek, peek) != peek)
        Q_EMIT peekChanged();
}

void NotchContent::updateClock()
{
    Q_EMIT clockChanged();
    updatePeek(); // "amanhã" becomes "hoje"
    if (m_model.presentation() == NotchPresentation::collapsed) {
        m_nextMinute.cancel();
        return;
    }
    constexpr double minute = 60;
    constexpr double leeway = 0.001;
    Scheduler &scheduler = m_services.platform.scheduler;
    const double gone = std::fmod(scheduler.now().time_since_epoch().count(), minute);
    m_nextMinute = scheduler.after(Seconds(minute - gone + leeway), [this] { updateClock(); });
}

} // namespace velmo
