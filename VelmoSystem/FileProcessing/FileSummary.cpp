#include "VelmoSystem/FileProcessing/FileSummary.h"

#include "VelmoCore/Foundation/Words.h"

#include <QFileInfo>
#include <QMimeDatabase>

namespace velmo {

namespace {

QString kindOf(const QFileInfo &file)
{
    static const QMimeDatabase types;
    const QMimeType type = types.mimeTypeForFile(file);
    const QString comment = type.isDefault() ? QString() : type.comment();
    if (!comment.isEmpty())
        return comment.at(0).toUpper() + comment.mid(1);
    return file.suffix().isEmpty() ? QStringLiteral("Arquivo") : file.suffix().toUpper();
}

} // namespace

FileSummary FileSummary::make(const QUrl &url)
{
    const QFileInfo file(url.adjusted(QUrl::StripTrailingSlash).toLocalFile());
    FileSummary summary{.url = url,
                        .name = file.fileName().isEmpty() ? file.filePath() : file.fileName(),
                        .kind = kindOf(file),
                        .byteSize = std::nullopt,
                        .isDirectory = file.isDir(),
                        .exists = file.exists()};
    if (file.isFile())
        summary.byteSize = file.size();
    return summary;
}

QString FileSummary::detail() const
{
    if (!exists)
        return QStringLiteral("Arquivo não encontrado");
    if (!byteSize)
        return kind;
    return QStringLiteral("%1 · %2").arg(kind, Words::size(*byteSize));
}

} // namespace velmo
