#include "VelmoUI/Settings/SettingsModel.h"

namespace velmo {

SettingsModel::SettingsModel(SettingsStore &store)
    : QQmlPropertyMap(this, nullptr), m_store(store),
      m_observer(store.observe([this](const auto &, const AppSettings &after) { show(after); }))
{
    show(store.settings());
}

SettingsModel::~SettingsModel()
{
    m_store.removeObserver(m_observer);
}

QVariantMap SettingsModel::bounds(const QString &) const
{
    return {};
}

QVariant SettingsModel::updateValue(const QString &, const QVariant &input)
{
    return input;
}

void SettingsModel::show(const AppSettings &)
{
}

} // namespace velmo
