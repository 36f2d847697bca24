#include "VelmoUI/Modules/Shelf/ShelfOpening.h"

#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/Pasteboard.h"
#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Shelf/ShelfRow.h"

#include <QStringList>

namespace velmo {

QString ShelfOpening::open(const std::vector<ShelfItem> &items, const ModuleContext &context)
{
    AppServices &services = context.services;
    QStringList texts;
    std::vector<QUrl> targets;
    for (const ShelfItem &item : items) {
        if (const auto *text = std::get_if<ShelfItem::Text>(&item.content.value)) {
            texts.append(text->value);
        } else if (const auto *link = std::get_if<ShelfItem::Link>(&item.content.value)) {
            targets.push_back(link->value);
        } else if (const auto file = services.shelf.resolve(item)) {
            targets.push_back(*file);
        } else {
            return ShelfRows::detail(item);
        }
    }
    if (!texts.isEmpty())
        services.platform.pasteboard.writeText(texts.join(QLatin1Char('\n')));
    for (const QUrl &target : targets)
        services.platform.fileViewer.open(target);
    if (!targets.empty())
        context.close();
    return texts.isEmpty() ? QString() : QStringLiteral("Copiado");
}

} // namespace velmo
