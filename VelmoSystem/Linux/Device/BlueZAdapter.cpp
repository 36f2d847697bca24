#include "VelmoSystem/Linux/Device/BlueZAdapter.h"

namespace velmo {

BlueZAdapter::BlueZAdapter(QDBusConnection systemBus) : m_bus(std::move(systemBus))
{
}

void BlueZAdapter::start()
{
}

} // namespace velmo
