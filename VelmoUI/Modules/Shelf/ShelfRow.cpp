#include "VelmoUI/Modules/Shelf/ShelfRow.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoSystem/FileProcessing/FileSummary.h"
#include "VelmoSystem/Storage/StorageInspector.h"
#include "VelmoUI/Design/ThumbnailProvider.h"

#include <QFileInfo>
#include <QLocale>

namespace velmo {

namespace {

/// As much of a text as a tile can show.
constexpr qsizetype longestText = 200;

struct Looks {
    const char16_t *kind;
    QString title;
    QString text;
    QString picture;
};

Looks looks(const ShelfItem &item)
{
    return std::visit(
        overloaded{
            [](const ShelfItem::File &file) {
                return Looks{u"file", QStringLiteral("arquivo"), QFileInfo(file.path).suffix(),
                             ThumbnailProvider::urlFor(file.path)};
            },
            [](const ShelfItem::Link &link) {
                return Looks{u"link", QStringLiteral("link"), link.value.toDisplayString(), {}};
            },
            [](const ShelfItem::Text &text) {
                return Looks{
                    u"text", QStringLiteral("texto"), text.value.trimmed().left(longestText), {}};
            },
        },
        item.content.value);
}

} // namespace

ShelfRow ShelfRows::make(const ShelfItem &item, bool isSelected)
{
    const Looks looks = velmo::looks(item);
    QString spoken = QStringLiteral("%1, %2").arg(item.name, looks.title);
    if (item.isPinned)
        spoken += QStringLiteral(", fixado");
    return {uuidText(item.id), QString::fromUtf16(looks.kind),
            item.name,         looks.text,
            looks.picture,     item.isPinned,
            isSelected,        spoken};
}

QString ShelfRows::detail(const ShelfItem &item)
{
    return std::visit(overloaded{
                          [](const ShelfItem::File &file) {
                              return FileSummary::make(QUrl::fromLocalFile(file.path)).detail();
                          },
                          [](const ShelfItem::Link &link) { return link.value.toDisplayString(); },
                          [](const ShelfItem::Text &text) {
                              return text.value.size() == 1
                                         ? QStringLiteral("1 caractere")
                                         : QStringLiteral("%L1 caracteres").arg(text.value.size());
                          },
                      },
                      item.content.value);
}

QString ShelfRows::briefDetail(const ShelfItem &item)
{
    const auto *file = std::get_if<ShelfItem::File>(&item.content.value);
    if (!file)
        return detail(item);
    const QFileInfo info(file->path);
    if (!info.exists())
        return QStringLiteral("Não encontrado");
    return info.isDir() ? QStringLiteral("Pasta") : StorageInspector::format(info.size());
}

QString ShelfRows::count(std::size_t count, const char16_t *one, const char16_t *more)
{
    return count == 1 ? QString::fromUtf16(one)
                      : QString::fromUtf16(more).arg(QLocale().toString(qulonglong(count)));
}

QString ShelfRows::arriving(int arriving)
{
    return arriving == 0 ? QString()
                         : count(std::size_t(arriving), u"1 item a caminho", u"%1 itens a caminho");
}

DroppedItem ShelfRows::dropped(const ShelfItem &item)
{
    return std::visit(
        overloaded{
            [](const ShelfItem::File &file) {
                return DroppedItem{DroppedItem::File{QUrl::fromLocalFile(file.path)}};
            },
            [](const ShelfItem::Link &link) { return DroppedItem{DroppedItem::Link{link.value}}; },
            [](const ShelfItem::Text &text) { return DroppedItem{DroppedItem::Text{text.value}}; },
        },
        item.content.value);
}

} // namespace velmo
