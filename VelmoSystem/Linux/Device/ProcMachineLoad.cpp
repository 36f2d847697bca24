#include "VelmoSystem/Linux/Device/ProcMachineLoad.h"

namespace velmo {

ProcMachineLoad::ProcMachineLoad(const QString &folder) : m_folder(folder)
{
}

std::optional<MachineLoad::Memory> ProcMachineLoad::memory() const
{
    return std::nullopt;
}

std::optional<double> ProcMachineLoad::processor() const
{
    return std::nullopt;
}

std::optional<MachineLoad::Storage> ProcMachineLoad::storage() const
{
    return std::nullopt;
}

} // namespace velmo
