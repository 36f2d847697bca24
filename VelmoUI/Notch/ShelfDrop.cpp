#include "VelmoUI/Notch/ShelfDrop.h"

#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoUI/App/AppServices.h"

#include <QFileInfo>
#include <QPointer>

namespace velmo {

namespace {

QString source()
{
    return QStringLiteral("shelf");
}

QString failureTitle(bool isMove)
{
    return isMove ? QStringLiteral("Não foi possível mover")
                  : QStringLiteral("Não foi possível copiar");
}

struct Transfer {
    QUrl from;
    QUrl place;
};

QString nameOf(const QUrl &file)
{
    return file.adjusted(QUrl::StripTrailingSlash).fileName();
}

QString keptTitle(std::size_t count)
{
    return count == 1 ? QStringLiteral("Guardado na Mesa")
                      : QStringLiteral("%1 itens na Mesa").arg(count);
}

void post(AppServices &services, FeedbackStyle style, const QString &title,
          const std::optional<QString> &detail = std::nullopt)
{
    services.activity.post(ActivityEvent::make(services.platform.scheduler.now(),
                                               style == FeedbackStyle::error
                                                   ? QStringLiteral("exclamationmark.triangle.fill")
                                                   : QStringLiteral("tray.and.arrow.down"),
                                               title, style, source(), detail));
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

/// A file that fails doesn't keep the others from coming.
JobOutcome transferAll(const std::vector<Transfer> &transfers, bool isMove,
                       const ShelfDrop::Moved &arrived, JobProgress &progress,
                       const std::stop_token &stop)
{
    const auto transferOne = isMove ? FileTransfer::moveUnique : FileTransfer::copyUnique;
    QStringList failed;
    std::vector<QUrl> outputs;
    for (std::size_t i = 0; i < transfers.size(); ++i) {
        const auto &[from, place] = transfers[i];
        const QString name = nameOf(from);
        try {
            outputs.push_back(transferOne(from, place, stop, [&](double share) {
                progress.update((double(i) + share) / double(transfers.size()), name);
            }));
            arrived(from, outputs.back());
        } catch (const Cancelled &) {
            throw;
        } catch (const LocalizedError &) {
            failed.append(name);
        }
    }
    if (failed.isEmpty())
        return {.message = keptTitle(outputs.size()), .detail = {}, .outputURLs = outputs};
    return {.message = failureTitle(isMove),
            .detail = failed.join(QStringLiteral(", ")),
            .outputURLs = outputs,
            .style = FeedbackStyle::error};
}

void startJob(AppServices &services, const std::vector<Transfer> &transfers, bool isMove,
              const ShelfDrop::Moved &moved)
{
    const auto record = [shelf = QPointer(&services.shelf), isMove, moved](const QUrl &from,
                                                                           const QUrl &to) {
        if (!shelf)
            return;
        if (isMove)
            shelf->addMoved(to, from);
        else
            shelf->addCopy(to, nameOf(from));
        moved(from, to);
    };
    const auto arrived = [record, &scheduler = services.platform.scheduler](const QUrl &from,
                                                                            const QUrl &to) {
        scheduler.post([record, from, to] { record(from, to); });
    };
    services.jobs.run(
        isMove ? QStringLiteral("Mover para o notch") : QStringLiteral("Copiar para o notch"),
        QStringLiteral("tray.and.arrow.down"), source(),
        [transfers, isMove, arrived](JobProgress &progress, const std::stop_token &stop) {
            return transferAll(transfers, isMove, arrived, progress, stop);
        });
}

/// Whether all that is to come is there already. Those that fail at once are told.
bool bringIn(AppServices &services, const std::vector<QUrl> &files, bool isMove,
             const ShelfDrop::Moved &moved)
{
    QStringList failed;
    std::vector<Transfer> distant;
    for (const QUrl &file : files) {
        if (isMove && isBundle(file))
            continue;
        if (services.shelf.isInNotch(file)) {
            services.shelf.adoptOutputs({file});
            continue;
        }
        try {
            const auto target = isMove ? services.shelf.moveInAtOnce(file) : std::nullopt;
            if (target)
                moved(file, *target);
            else
                distant.push_back({file, services.shelf.placeFor(file)});
        } catch (const LocalizedError &) {
            failed.append(nameOf(file));
        }
    }
    if (!failed.isEmpty())
        post(services, FeedbackStyle::error, failureTitle(isMove),
             failed.join(QStringLiteral(", ")));
    if (!distant.empty())
        startJob(services, distant, isMove, moved);
    return failed.isEmpty() && distant.empty();
}

} // namespace

void ShelfDrop::moveIn(AppServices &services, const std::vector<DroppedItem> &items,
                       const Moved &moved)
{
    bringIn(services, keepTheRest(services, items), true, moved);
}

void ShelfDrop::keep(AppServices &services, const std::vector<DroppedItem> &items,
                     ShelfStorage storage, const Moved &moved)
{
    const std::vector<QUrl> files = keepTheRest(services, items);
    bool isDone = true;
    if (storage == ShelfStorage::reference)
        services.shelf.addReferences(files);
    else
        isDone = bringIn(services, files, storage == ShelfStorage::moved, moved);
    if (isDone)
        post(services, FeedbackStyle::success, keptTitle(items.size()));
}

} // namespace velmo
