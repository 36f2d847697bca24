#include "VelmoSystem/Storage/StorageInspector.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>
#include <QLocale>

#include <array>
#include <cmath>
#include <filesystem>
#include <sys/stat.h>
#include <vector>

namespace velmo {
namespace {

namespace fs = std::filesystem;

constexpr qint64 blockSize = 512; // of `st_blocks`, on every file system

struct Unit {
    const char *name;
    int decimals;
};
constexpr std::array<Unit, 6> units = {
    {{"bytes", 0}, {"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}}};

fs::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

FileError fileError(const fs::path &path, const std::error_code &error)
{
    return {QFile::decodeName(path.c_str()), error.value()};
}

double rounded(double value, int decimals)
{
    const double scale = std::pow(10, decimals);
    return std::round(value * scale) / scale;
}

} // namespace

qint64 StorageInspector::size(const QString &path, const std::stop_token &stop)
{
    qint64 total = 0;
    std::error_code error;
    fs::recursive_directory_iterator entry(native(path),
                                           fs::directory_options::skip_permission_denied, error);
    const fs::recursive_directory_iterator end;
    for (; !error && entry != end && !stop.stop_requested(); entry.increment(error)) {
        struct stat status = {};
        if (::lstat(entry->path().c_str(), &status) == 0 && S_ISREG(status.st_mode))
            total += status.st_blocks * blockSize;
    }
    return total;
}

QString StorageInspector::format(qint64 bytes)
{
    if (bytes == 0)
        return QStringLiteral("Zero KB");
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (rounded(value, units[unit].decimals) >= 1000 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    const QString number = QLocale().toString(rounded(value, units[unit].decimals), 'f',
                                              QLocale::FloatingPointShortest);
    return number + u' ' + (bytes == 1 ? QStringLiteral("byte") : QLatin1String(units[unit].name));
}

void StorageInspector::clearContents(const QString &path)
{
    std::error_code error;
    std::vector<fs::path> children;
    fs::directory_iterator entry(native(path), error);
    if (error == std::errc::no_such_file_or_directory)
        return;
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        children.push_back(entry->path());
    if (error)
        throw fileError(native(path), error);
    for (const fs::path &child : children) {
        fs::remove_all(child, error);
        if (error)
            throw fileError(child, error);
    }
}

} // namespace velmo
