#include "VelmoUI/Modules/Shelf/ShelfRow.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/FileProcessing/FileSummary.h"
#include "VelmoUI/Design/ThumbnailProvider.h"

#include <QFileInfo>

namespace velmo {

namespace {

/// As much of a text as a tile can show.
constexpr qsizetype longestText = 200;

struct Looks {
    QString kind; ///< as a screen reader says it
    QString symbol;
    QString text;
    QString picture;
};

Looks looks(const ShelfItem &item)
{
    return std::visit(overloaded{
                          [](const ShelfItem::File &file) {
                              return Looks{QStringLiteral("arquivo"),
                                           {},
                                           {},
                                           ThumbnailProvider::urlFor(file.path)};
                          },
                          [](const ShelfItem::Link &) {
                              return Looks{QStringLiteral("link"), QStringLiteral("link"), {}, {}};
                          },
                          [](const ShelfItem::Text &text) {
                              return Looks{QStringLiteral("texto"),
                                           QStringLiteral("text.alignleft"),
                                           text.value.trimmed().left(longestText),
                                           {}};
                          },
                      },
                      item.content.value);
}

} // namespace

ShelfRow ShelfRows::make(const ShelfItem &item, bool isSelected)
{
    const Looks looks = velmo::looks(item);
    QString spoken = QStringLiteral("%1, %2").arg(item.name, looks.kind);
    if (item.isPinned)
        spoken += QStringLiteral(", fixado");
    return {uuidText(item.id), looks.symbol,  item.name,  looks.text,
            looks.picture,     item.isPinned, isSelected, spoken};
}

QString ShelfRows::detail(const ShelfItem &item)
{
    return std::visit(overloaded{
                          [](const ShelfItem::File &file) {
                              return FileSummary::make(QUrl::fromLocalFile(file.path)).detail();
                          },
                          [](const ShelfItem::Link &link) { return link.value.toDisplayString(); },
                          [](const ShelfItem::Text &text) {
                              return Words::count(text.value.size(), u"1 caractere",
                                                  u"%1 caracteres");
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
    return info.isDir() ? QStringLiteral("Pasta") : Words::size(info.size());
}

QString ShelfRows::arriving(int arriving)
{
    return arriving == 0 ? QString()
                         : Words::count(arriving, u"1 item a caminho", u"%1 itens a caminho");
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
