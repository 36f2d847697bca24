#include "VelmoSystem/Linux/Device/ProcMachineLoad.h"

#include <QDir>
#include <QFile>
#include <QStorageInfo>

#include <cmath>
#include <limits>
#include <unistd.h>

namespace velmo {

namespace {

/// A file of the kernel has no size; reading stops at its end.
QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Bytes of a line such as "MemTotal:       16231232 kB".
std::optional<qint64> field(const QByteArray &text, const QByteArray &name)
{
    for (const QByteArray &line : text.split('\n')) {
        if (!line.startsWith(name))
            continue;
        const QList<QByteArray> words = line.mid(name.size()).simplified().split(' ');
        bool isNumber = false;
        const qint64 kibibytes = words.value(0).toLongLong(&isNumber);
        constexpr qint64 limit = std::numeric_limits<qint64>::max() / 1024;
        if (isNumber && words.value(1) == "kB" && kibibytes >= 0 && kibibytes <= limit)
            return kibibytes * 1024;
    }
    return std::nullopt;
}

} // namespace

ProcMachineLoad::ProcMachineLoad(const QString &folder) : m_folder(folder)
{
}

std::optional<MachineLoad::Memory> ProcMachineLoad::memory() const
{
    const QByteArray text = contents(m_folder + QStringLiteral("/meminfo"));
    const auto total = field(text, "MemTotal:");
    const auto available = field(text, "MemAvailable:");
    if (!total || !available || *total == 0 || *available > *total)
        return std::nullopt;
    return Memory{.used = *total - *available, .total = *total};
}

std::optional<double> ProcMachineLoad::processor() const
{
    bool isNumber = false;
    const double load =
        contents(m_folder + QStringLiteral("/loadavg")).split(' ').value(0).toDouble(&isNumber);
    const long processors = ::sysconf(_SC_NPROCESSORS_ONLN);
    if (!isNumber || !std::isfinite(load) || load < 0 || processors < 1)
        return std::nullopt;
    return load / double(processors);
}

std::optional<MachineLoad::Storage> ProcMachineLoad::storage() const
{
    const QStorageInfo home(QDir::homePath());
    if (!home.isValid() || !home.isReady() || home.bytesTotal() <= 0)
        return std::nullopt;
    return Storage{.available = home.bytesAvailable(), .total = home.bytesTotal()};
}

} // namespace velmo
