#include "VelmoCore/Files/FileNaming.h"

#include <QStringList>

#include <cstdint>
#include <cstdlib>

/// Whatever the pattern and the files' names, each file gets a name of its own pattern, the same
/// with company as alone, and a valid one goes to a file in the folder and nowhere else. The first
/// two bytes are the first number; then come the pattern and the names, a line each.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    if (size < 2)
        return 0;
    const int start = std::int16_t(data[0] * 256 + data[1]);
    QStringList lines =
        QString::fromUtf8(reinterpret_cast<const char *>(data + 2), qsizetype(size - 2))
            .remove(QChar(0))
            .split(u'\n');
    const QString pattern = lines.takeFirst();
    std::vector<QUrl> urls;
    for (const QString &name : lines) {
        if (FileNaming::isValid(name))
            urls.push_back(QUrl::fromLocalFile(QStringLiteral("/pasta/") + name));
    }
    const std::vector<QString> names = FileNaming::batchNames(urls, pattern, start, Date{0s});
    if (names.size() != urls.size())
        std::abort();
    for (std::size_t index = 0; index < urls.size(); ++index) {
        const QString &name = names[index];
        if (FileNaming::batchNames({urls[index]}, pattern, start + int(index), Date{0s})[0] != name)
            std::abort();
        if (!FileNaming::isValid(name))
            continue;
        const QUrl target =
            FileNaming::uniqueURL(QUrl::fromLocalFile(QStringLiteral("/pasta/") + name),
                                  [&](const QUrl &url) { return url.fileName() == name; });
        if (!target.toLocalFile().startsWith(u"/pasta/") || target.fileName().contains(u'/') ||
            target.fileName().isEmpty() || target.fileName() == name)
            std::abort();
    }
    return 0;
}
