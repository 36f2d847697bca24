#include "VelmoSystem/Linux/Desktop/ThumbnailCache.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <QUrl>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

struct Size {
    const char16_t *name;
    int pixels;
};

constexpr std::array sizes = {
    Size{u"normal", 128},
    Size{u"large", 256},
    Size{u"x-large", 512},
    Size{u"xx-large", 1024},
};
constexpr qint64 mostBytes = 16'000'000;

QString uriKey()
{
    return QStringLiteral("Thumb::URI");
}

QString timeKey()
{
    return QStringLiteral("Thumb::MTime");
}

/// As GLib writes it: the name of a picture is made of these very letters.
QString uriOf(const QString &path)
{
    return QStringLiteral("file://") +
           QString::fromLatin1(QUrl::toPercentEncoding(path, "!$&'()*+,/:=@"));
}

QString timeOf(const QString &path)
{
    return QString::number(QFileInfo(path).lastModified().toSecsSinceEpoch());
}

} // namespace

QImage ThumbnailCache::find(const QString &path, int side) const
{
    for (const Size &size : sizes) {
        QFile file(fileFor(path, QString::fromUtf16(size.name)));
        if (size.pixels < side || file.size() > mostBytes || !file.open(QIODevice::ReadOnly))
            continue;
        QImageReader reader(&file, "png");
        if (reader.size().width() > size.pixels || reader.size().height() > size.pixels)
            continue;
        const QImage picture = reader.read();
        if (picture.text(uriKey()) == uriOf(path) && picture.text(timeKey()) == timeOf(path))
            return picture;
    }
    return {};
}

void ThumbnailCache::keep(const QString &path, const QImage &picture, int size) const
{
    const auto *const kept = std::ranges::find(sizes, size, &Size::pixels);
    if (kept == sizes.end() || path.startsWith(m_folder + u'/'))
        return;
    QImage labelled = picture;
    labelled.setText(uriKey(), uriOf(path));
    labelled.setText(timeKey(), timeOf(path));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!labelled.save(&buffer, "png"))
        return;
    try {
        AtomicFile::write(bytes, fileFor(path, QString::fromUtf16(kept->name)));
    } catch (const LocalizedError &error) {
        qCWarning(Log::app).noquote() << "Miniatura não guardada:" << error.description();
    }
}

int ThumbnailCache::sizeFor(int side)
{
    const auto *const fitting =
        std::ranges::find_if(sizes, [side](const Size &size) { return size.pixels >= side; });
    return fitting == sizes.end() ? sizes.back().pixels : fitting->pixels;
}

QString ThumbnailCache::fileFor(const QString &path, const QString &size) const
{
    const auto name =
        QCryptographicHash::hash(uriOf(path).toLatin1(), QCryptographicHash::Md5).toHex();
    return QStringLiteral("%1/%2/%3.png").arg(m_folder, size, QString::fromLatin1(name));
}

} // namespace velmo
