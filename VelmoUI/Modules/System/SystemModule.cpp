#include "VelmoUI/Modules/System/SystemModule.h"

namespace velmo {

namespace {

/// How little battery counts as low.
constexpr int lowBattery = 15;

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/System/") + QLatin1String(name));
}

} // namespace

SystemModule::SystemModule(const SystemSources &sources) : m_sources(sources)
{
    connect(&sources.power, &PowerInfo::changed, this, &SystemModule::cardsChanged);
}

NotchModule::View SystemModule::makeView(PanelPort &)
{
    return {qml("SystemPage.qml"), std::make_unique<SystemPageModel>(m_sources)};
}

std::vector<NotchModule::Card> SystemModule::cards()
{
    return {
        {.card = HomeCard::system,
         .make = [this](PanelPort &) -> View {
             return {qml("SystemSummaryCard.qml"), std::make_unique<SystemPageModel>(m_sources)};
         },
         .isActive =
             [this] {
                 const auto battery = m_sources.power.battery();
                 return battery && battery->percent <= lowBattery && !battery->isCharging;
             }}};
}

void SystemModule::start()
{
    m_sources.connectivity.start();
}

} // namespace velmo
