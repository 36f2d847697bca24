#include "VelmoCore/Files/FileCategory.h"

#include <QFileInfo>
#include <QMimeDatabase>

#include <algorithm>

namespace velmo {

namespace {

FileCategory ofType(const QMimeType &type)
{
    if (type.inherits(QStringLiteral("application/pdf")))
        return FileCategory::pdf;
    const QString name = type.name();
    if (name.startsWith(u"image/"))
        return FileCategory::image;
    if (name.startsWith(u"video/"))
        return FileCategory::video;
    if (name.startsWith(u"audio/"))
        return FileCategory::audio;
    if (type.inherits(QStringLiteral("text/plain")))
        return FileCategory::text;
    return FileCategory::other;
}

} // namespace

FileCategory FileCategories::of(const QUrl &url, std::optional<bool> isDirectory)
{
    const QString path = url.adjusted(QUrl::StripTrailingSlash).toLocalFile();
    const QString extension = QFileInfo(path).suffix().toLower();
    if (isDirectory.value_or(false) || (!isDirectory && QFileInfo(path).isDir()))
        return extension == u"app" ? FileCategory::other : FileCategory::folder;
    const bool isArchive = std::ranges::any_of(
        archiveExtensions, [&](const char *known) { return extension == QLatin1String(known); });
    if (isArchive)
        return FileCategory::archive;
    if (extension.isEmpty())
        return FileCategory::other;
    static const QMimeDatabase types;
    return ofType(types.mimeTypeForFile(path, QMimeDatabase::MatchExtension));
}

QString FileCategories::title(FileCategory category)
{
    switch (category) {
    case FileCategory::image:
        return QStringLiteral("Imagem");
    case FileCategory::pdf:
        return QStringLiteral("PDF");
    case FileCategory::archive:
        return QStringLiteral("Arquivo compactado");
    case FileCategory::video:
        return QStringLiteral("Vídeo");
    case FileCategory::audio:
        return QStringLiteral("Áudio");
    case FileCategory::text:
        return QStringLiteral("Texto");
    case FileCategory::folder:
        return QStringLiteral("Pasta");
    case FileCategory::other:
        return QStringLiteral("Arquivo");
    }
    Q_UNREACHABLE();
}

} // namespace velmo
