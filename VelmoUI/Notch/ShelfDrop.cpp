#include "VelmoUI/Notch/ShelfDrop.h"

#include "VelmoCore/Files/FailedFiles.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoUI/App/AppServices.h"

#include <QFileInfo>

namespace velmo {

namespace {

using FileNaming::nameOf;

QString source()
{
    return QStringLiteral("shelf");
}

QString failureTitle(bool isMove)
{
    return isMove ? QStringLiteral("Não foi possível mover")
                  : QStringLiteral("Não foi possível copiar");
}

/// Lists links and texts, and gives the files.
std::vector<QUrl> keepTheRest(AppServices &services, const std::vector<DroppedItem> &items)
{
    std::vector<QUrl> files;
    for (const DroppedItem &item : items) {
        std::visit(overloaded{
                       [&](const DroppedItem::File &file) { files.push_back(file.value); },
                       [&](const DroppedItem::Link &link) { services.shelf.addLink(link.value); },
                       [&](const DroppedItem::Text &text) { services.shelf.addText(text.value); },
                   },
                   item.content);
    }
    return files;
}

bool isBundle(const QUrl &file)
{
    return QFileInfo(nameOf(file)).suffix().toLower() == u"app";
}

struct Arrival {
    bool isComplete = true;
    std::optional<QString> job; ///< brings what isn't there yet
};

/// Those that fail at once are told.
Arrival bringIn(AppServices &services, const std::vector<QUrl> &files, bool isMove,
                const ShelfDrop::Moved &moved)
{
    FailedFiles failed;
    ShelfTransfer distant{
        .kind = isMove ? ShelfTransfer::Kind::moveIn : ShelfTransfer::Kind::copyIn, .moved = moved};
    const ShelfStorage storage = isMove ? ShelfStorage::moved : ShelfStorage::copy;
    for (const QUrl &file : files) {
        if (isMove && isBundle(file))
            continue;
        if (services.shelf.isInNotch(file)) {
            services.shelf.adoptOutputs({file});
            continue;
        }
        try {
            const auto target = isMove ? services.shelf.moveInAtOnce(file) : std::nullopt;
            if (target) {
                moved(file, *target);
            } else {
                const ShelfItem item = services.shelf.expect(file, storage);
                const auto &place = std::get<ShelfItem::File>(item.content.value).path;
                distant.files.push_back({item.id, file, QUrl::fromLocalFile(place)});
            }
        } catch (const LocalizedError &error) {
            failed.add(file, error);
        }
    }
    if (failed.count() > 0)
        services.activity.postFailure(failureTitle(isMove), source(), failed.text());
    if (!distant.files.empty())
        return {false, distant.start(services)};
    return {failed.count() == 0, std::nullopt};
}

} // namespace

std::optional<QString> ShelfDrop::moveIn(AppServices &services,
                                         const std::vector<DroppedItem> &items, const Moved &moved)
{
    return bringIn(services, keepTheRest(services, items), true, moved).job;
}

std::optional<QString> ShelfDrop::keep(AppServices &services, const std::vector<DroppedItem> &items,
                                       ShelfStorage storage, const Moved &moved)
{
    const std::vector<QUrl> files = keepTheRest(services, items);
    Arrival arrival;
    if (storage == ShelfStorage::reference)
        services.shelf.addReferences(files);
    else
        arrival = bringIn(services, files, storage == ShelfStorage::moved, moved);
    if (arrival.isComplete)
        services.activity.post(ActivityEvent::make(
            services.platform.scheduler.now(), QStringLiteral("tray.and.arrow.down"),
            keptTitle(items.size()), FeedbackStyle::success, source()));
    return arrival.job;
}

} // namespace velmo
