#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

namespace velmo {

std::optional<QUrl> LocalFiles::fromURL(const QUrl &url)
{
    if (!url.isLocalFile())
        return std::nullopt;
    const QString host = url.host();
    if (!host.isEmpty() && host != u"localhost" &&
        host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) != 0)
        return std::nullopt;

    const QString path = url.path(QUrl::FullyDecoded);
    if (!path.startsWith(u'/') || path.contains(QChar::Null))
        return std::nullopt;
    return QUrl::fromLocalFile(QDir::cleanPath(path));
}

std::vector<QUrl> LocalFiles::existing(const std::vector<QUrl> &urls)
{
    std::vector<QUrl> files;
    for (const QUrl &url : urls) {
        const auto file = fromURL(url);
        if (!file)
            throw LocalizedError(
                QStringLiteral("Não é um arquivo deste computador: %1").arg(url.toDisplayString()));
        if (!QFileInfo::exists(file->toLocalFile()))
            throw LocalizedError(
                QStringLiteral("O arquivo não existe: %1").arg(file->toLocalFile()));
        files.push_back(*file);
    }
    return files;
}

} // namespace velmo
