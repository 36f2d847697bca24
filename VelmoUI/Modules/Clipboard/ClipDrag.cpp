#include "VelmoUI/Modules/Clipboard/ClipDrag.h"

namespace velmo {

namespace {

class ImageData : public QMimeData {
public:
    ImageData(ClipImageWriter images, QString name)
        : m_images(std::move(images)), m_name(std::move(name))
    {
    }

    QStringList formats() const override { return QMimeData::formats() << pngType(); }
    bool hasFormat(const QString &type) const override { return formats().contains(type); }

protected:
    QVariant retrieveData(const QString &type, QMetaType wanted) const override
    {
        return type == pngType() ? m_images.read(m_name).value_or(QByteArray())
                                 : QMimeData::retrieveData(type, wanted);
    }

private:
    static QString pngType() { return QStringLiteral("image/png"); }

    const ClipImageWriter m_images;
    const QString m_name;
};

} // namespace

std::unique_ptr<QMimeData> ClipDrag::mimeData(const ClipItem &item, const ClipImageWriter &images)
{
    auto data = item.imageFile ? std::make_unique<ImageData>(images, *item.imageFile)
                               : std::make_unique<QMimeData>();
    if (item.text)
        data->setText(*item.text);
    if (item.kind == ClipKind::link && item.text)
        data->setUrls({QUrl(item.text->trimmed())});
    if (item.fileURLs)
        data->setUrls({item.fileURLs->begin(), item.fileURLs->end()});
    data->setData(idType.toString(), uuidText(item.id).toUtf8());
    return data;
}

} // namespace velmo
