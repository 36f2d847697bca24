#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>

#include <cstdio>

/// Another application's side of the clipboard: `ClipboardPeer offer text|files|image|secret FILE`
/// has what the file holds, or the file itself, and lists each type that is asked for in
/// FILE.asked; `ClipboardPeer read text|files|image` prints what is there.
class Offer : public QMimeData {
public:
    explicit Offer(const QString &file) : m_asked(file + QStringLiteral(".asked")) {}

protected:
    QVariant retrieveData(const QString &type, QMetaType preferred) const override
    {
        if (m_asked.open(QIODevice::Append))
            m_asked.write(type.toUtf8() + '\n');
        m_asked.close();
        return QMimeData::retrieveData(type, preferred);
    }

private:
    mutable QFile m_asked;
};

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QString kind = application.arguments().value(2);
    if (application.arguments().value(1) == u"read") {
        const QMimeData &data = *QGuiApplication::clipboard()->mimeData();
        if (kind == u"image")
            std::printf("%d\n", qvariant_cast<QImage>(data.imageData()).width());
        else
            std::puts(
                qPrintable(kind == u"files" ? data.urls().value(0).toLocalFile() : data.text()));
        return 0;
    }
    QFile file(application.arguments().value(3));
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    auto *const offer = new Offer(file.fileName());
    if (kind == u"files")
        offer->setUrls({QUrl::fromLocalFile(file.fileName())});
    else if (kind == u"image")
        offer->setImageData(QImage::fromData(file.readAll()));
    else
        offer->setText(QString::fromUtf8(file.readAll()));
    if (kind == u"secret")
        offer->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
    QGuiApplication::clipboard()->setMimeData(offer);
    return QGuiApplication::exec();
}
