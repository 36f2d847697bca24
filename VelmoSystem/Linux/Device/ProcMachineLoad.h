#pragma once

#include "VelmoSystem/Ports/MachineLoad.h"

#include <QString>

namespace velmo {

/// `MachineLoad` from the kernel's files and the file system of the user's home.
class ProcMachineLoad : public MachineLoad {
public:
    explicit ProcMachineLoad(const QString &folder = QStringLiteral("/proc"));

    std::optional<Memory> memory() const override;
    std::optional<double> processor() const override;
    std::optional<Storage> storage() const override;

private:
    QString m_folder;
};

} // namespace velmo
