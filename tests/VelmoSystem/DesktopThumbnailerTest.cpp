#include "VelmoSystem/Linux/Desktop/DesktopThumbnailer.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QtEndian>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace velmo {
namespace {

class DesktopThumbnailerTest : public testing::Test {
protected:
    QSize sizeOf(const QString &name, int side, std::stop_token stop = {})
    {
        return thumbnailer.picture(folder.path(name), side, std::move(stop)).size();
    }

    const QSize none{0, 0};
    TemporaryFolder folder;
    DesktopThumbnailer thumbnailer{folder.path(u"cache"_qs)};
};

/// What only says that it is a picture of that size.
QByteArray pngHeader(quint32 side)
{
    QByteArray header("\0\0\0\rIHDR12345678\1\0\0\0\0", 21);
    qToBigEndian(side, header.data() + 8);
    qToBigEndian(side, header.data() + 12);
    quint32 crc = ~0U;
    for (const char byte : header.mid(4)) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0);
    }
    QByteArray sum(4, '\0');
    qToBigEndian(~crc, sum.data());
    return "\x89PNG\r\n\x1a\n" + header + sum;
}

long peakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST_F(DesktopThumbnailerTest, FitsImagesIntoTheSquareAndEnlargesNone)
{
    QImage(400, 100, QImage::Format_RGB32).save(folder.path(u"wide.png"_qs));
    QImage(8, 4, QImage::Format_RGB32).save(folder.path(u"small.png"_qs));
    folder.write(u"huge.png"_qs, pngHeader(60'000));
    folder.write(u"text.png"_qs, "no picture");
    EXPECT_EQ(sizeOf(u"wide.png"_qs, 64), QSize(64, 16));
    EXPECT_EQ(sizeOf(u"small.png"_qs, 64), QSize(8, 4));
    EXPECT_EQ(sizeOf(u"text.png"_qs, 64), none);
    EXPECT_EQ(sizeOf(u"missing.png"_qs, 64), none);
    const long before = peakKilobytes();
    EXPECT_EQ(sizeOf(u"huge.png"_qs, 64), none);
    EXPECT_LT(peakKilobytes() - before, 50'000);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(sizeOf(u"wide.png"_qs, 64, stop.get_token()), none);
}

TEST_F(DesktopThumbnailerTest, DrawsTheFirstPageOfAPdfOnceForAsLongAsItStaysTheSame)
{
    const QString name = u"uma página; 100% (1).pdf"_qs;
    folder.write(name, "%PDF-1.1\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj "
                       "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj "
                       "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 600]>>endobj\n"
                       "trailer<</Root 1 0 R>>");
    EXPECT_EQ(sizeOf(name, 100), QSize(50, 100));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    EXPECT_EQ(sizeOf(name, 100), QSize(50, 100));
    QFile file(folder.path(name));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000), QFileDevice::FileModificationTime);
    EXPECT_EQ(sizeOf(name, 100), none);
    qputenv("PATH", path);
}

TEST_F(DesktopThumbnailerTest, TakesWhatOtherApplicationsHaveLeftInTheCache)
{
    folder.write(u"ç;a.bin"_qs, "?");
    const QString path = folder.path(u"ç;a.bin"_qs);
    const QByteArray uri = "file://" + folder.path().toLatin1() + "/%C3%A7%3Ba.bin";
    QImage picture(200, 200, QImage::Format_RGB32);
    picture.setText(u"Thumb::URI"_qs, QString::fromLatin1(uri));
    picture.setText(u"Thumb::MTime"_qs,
                    QString::number(QFileInfo(path).lastModified().toSecsSinceEpoch()));
    const QString place = u"cache/large"_qs;
    QDir(folder.path()).mkpath(place);
    const auto name = QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex();
    ASSERT_TRUE(picture.save(folder.path(u"%1/%2.png"_qs.arg(place, QString::fromLatin1(name)))));
    EXPECT_EQ(thumbnailer.picture(path, 100, {}).size(), QSize(100, 100));
}

} // namespace
} // namespace velmo
