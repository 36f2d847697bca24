#include "VelmoUI/Modules/Shelf/ShelfOpening.h"

#include "VelmoUI/Modules/Shelf/ShelfRow.h"

namespace velmo {

QString ShelfOpening::open(const std::vector<ShelfItem> &items, const ShelfServices &services,
                           PanelPort &panel)
{
    const QString source = QStringLiteral("shelf");
    std::vector<DroppedItem> texts;
    std::vector<DroppedItem> targets;
    for (const ShelfItem &item : items) {
        const bool isFile = std::holds_alternative<ShelfItem::File>(item.content.value);
        if (isFile && !services.shelf.resolve(item))
            return ShelfRows::detail(item);
        const bool isText = std::holds_alternative<ShelfItem::Text>(item.content.value);
        (isText ? texts : targets).push_back(ShelfRows::dropped(item));
    }
    QString notice;
    try {
        if (const auto copied = services.actions.run(QStringLiteral("content.copy"), texts, source))
            notice = copied->message;
        for (const DroppedItem &target : targets) // the action takes one
            services.actions.run(QStringLiteral("files.open"), {target}, source);
        if (!targets.empty())
            panel.close();
    } catch (const LocalizedError &error) {
        return error.description();
    }
    return notice;
}

} // namespace velmo
