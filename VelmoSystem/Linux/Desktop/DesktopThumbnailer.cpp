#include "VelmoSystem/Linux/Desktop/DesktopThumbnailer.h"

#include "VelmoCore/Files/FileCategory.h"
#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Ports/ToolProcess.h"

#include <QFileInfo>
#include <QImageReader>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <limits>

namespace velmo {

namespace {

/// More than any camera's; what a file merely claims to have costs nothing.
constexpr qint64 mostPixels = 250'000'000;
constexpr std::chrono::milliseconds waitStep{50};
constexpr int mostWaits = 200;

/// A file that reads as broken once nobody wants it any more, so that its decoder gives up.
class AbandonableFile : public QFile {
public:
    AbandonableFile(const QString &path, std::stop_token stop)
        : QFile(path), m_stop(std::move(stop))
    {
    }

protected:
    qint64 readData(char *data, qint64 limit) override
    {
        return m_stop.stop_requested() ? -1 : QFile::readData(data, limit);
    }

private:
    const std::stop_token m_stop;
};

QImage fitted(const QImage &picture, int side)
{
    if (picture.isNull() || (picture.width() <= side && picture.height() <= side))
        return picture;
    return picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QImage imageOf(const QString &path, int side, const std::stop_token &stop)
{
    AbandonableFile file(path, stop);
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > mostPixels)
        return {};
    if (size.width() > side || size.height() > side)
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return fitted(reader.read(), side);
}

/// The picture that a program makes, given the path to write it to without its ".png"; null without
/// the program, or if it fails. It may write nowhere else.
QImage imageBy(const QString &program,
               const std::function<QStringList(const QString &picture)> &arguments,
               const std::stop_token &stop)
{
    const QString tool = QStandardPaths::findExecutable(program);
    const QTemporaryDir folder;
    if (tool.isEmpty() || !folder.isValid())
        return {};
    const QString picture = folder.filePath(QStringLiteral("picture"));
    try {
        ToolProcess process({.tool = tool,
                             .arguments = arguments(picture),
                             .input = std::nullopt,
                             .workingFolder = folder.path(),
                             .writableFolder = folder.path()});
        for (int wait = 0; !process.waitFor(waitStep); ++wait) {
            if (wait == mostWaits || stop.stop_requested())
                return {};
        }
    } catch (const LocalizedError &error) {
        qCWarning(Log::app).noquote() << "Miniatura não feita:" << error.description();
        return {};
    }
    return imageOf(picture + QStringLiteral(".png"), std::numeric_limits<int>::max(), stop);
}

QImage pageOf(const QString &path, int side, const std::stop_token &stop)
{
    return imageBy(
        QStringLiteral("pdftoppm"),
        [&](const QString &picture) {
            return QStringList{QStringLiteral("-f"),
                               QStringLiteral("1"),
                               QStringLiteral("-singlefile"),
                               QStringLiteral("-png"),
                               QStringLiteral("-scale-to"),
                               QString::number(side),
                               path,
                               picture};
        },
        stop);
}

QImage frameOf(const QString &path, int side, const std::stop_token &stop)
{
    return imageBy(
        QStringLiteral("ffmpegthumbnailer"),
        [&](const QString &picture) {
            return QStringList{QStringLiteral("-i"), path,
                               QStringLiteral("-o"), picture + QStringLiteral(".png"),
                               QStringLiteral("-s"), QString::number(side)};
        },
        stop);
}

} // namespace

QString DesktopThumbnailer::standardCacheFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/thumbnails");
}

QImage DesktopThumbnailer::picture(const QString &path, int side, std::stop_token stop)
{
    if (stop.stop_requested() || !QFileInfo(path).isFile())
        return {};
    if (const QImage known = m_cache.find(path, side); !known.isNull())
        return fitted(known, side);

    const int size = ThumbnailCache::sizeFor(side);
    QImage made;
    switch (FileCategories::of(QUrl::fromLocalFile(path), false)) {
    case FileCategory::image:
        return imageOf(path, side, stop);
    case FileCategory::pdf:
        made = pageOf(path, size, stop);
        break;
    case FileCategory::video:
        made = frameOf(path, size, stop);
        break;
    default:
        break;
    }
    if (made.isNull())
        return m_cache.find(path, 0);
    m_cache.keep(path, made, size);
    return fitted(made, side);
}

} // namespace velmo
