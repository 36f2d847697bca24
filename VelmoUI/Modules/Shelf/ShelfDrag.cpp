#include "VelmoUI/Modules/Shelf/ShelfDrag.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include <QStringList>

#include <algorithm>

namespace velmo {

std::unique_ptr<QMimeData> ShelfDrag::mimeData(const std::vector<ShelfItem> &items)
{
    QList<QUrl> urls;
    QStringList texts;
    for (const ShelfItem &item : items) {
        std::visit(
            overloaded{
                [&](const ShelfItem::File &file) { urls.append(QUrl::fromLocalFile(file.path)); },
                [&](const ShelfItem::Link &link) {
                    urls.append(link.value);
                    texts.append(QString::fromUtf8(link.value.toEncoded()));
                },
                [&](const ShelfItem::Text &text) { texts.append(text.value); },
            },
            item.content.value);
    }
    auto data = std::make_unique<QMimeData>();
    if (!urls.isEmpty())
        data->setUrls(urls);
    if (!texts.isEmpty())
        data->setText(texts.join(QLatin1Char('\n')));
    return data;
}

Qt::DropActions ShelfDrag::actions(const std::vector<ShelfItem> &items)
{
    const bool areOurs = std::ranges::all_of(items, [](const ShelfItem &item) {
        const auto *file = std::get_if<ShelfItem::File>(&item.content.value);
        return file && file->storage != ShelfStorage::reference;
    });
    const Qt::DropActions always = Qt::CopyAction | Qt::LinkAction;
    return areOurs ? always | Qt::MoveAction : always;
}

} // namespace velmo
