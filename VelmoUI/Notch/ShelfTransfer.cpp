#include "VelmoUI/Notch/ShelfTransfer.h"

#include "VelmoCore/Files/FailedFiles.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoUI/App/AppServices.h"

#include <QDir>
#include <QPointer>

namespace velmo {

namespace {

using FileNaming::nameOf;
using Kind = ShelfTransfer::Kind;
using Settle = std::function<void(const ShelfTransfer::File &, const std::optional<QUrl> &to)>;

struct Words {
    QString title;
    QString symbol;
    QString failure;
    std::function<QString(const std::vector<QUrl> &)> success;
};

QString returnedTitle(const std::vector<QUrl> &made)
{
    if (made.size() != 1)
        return QStringLiteral("%L1 itens devolvidos").arg(made.size());
    const QUrl folder = made.front().adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    return QStringLiteral("Devolvido à pasta “%1”").arg(QDir(folder.toLocalFile()).dirName());
}

Words wordsOf(Kind kind)
{
    const auto kept = [](const std::vector<QUrl> &made) { return keptTitle(made.size()); };
    const QString inward = QStringLiteral("tray.and.arrow.down");
    switch (kind) {
    case Kind::moveIn:
        return {QStringLiteral("Mover para o notch"), inward,
                QStringLiteral("Não foi possível mover"), kept};
    case Kind::copyIn:
        return {QStringLiteral("Copiar para o notch"), inward,
                QStringLiteral("Não foi possível copiar"), kept};
    case Kind::moveHome:
        return {QStringLiteral("Devolver à pasta de origem"), QStringLiteral("tray.and.arrow.up"),
                QStringLiteral("Não foi possível devolver"), returnedTitle};
    }
    Q_UNREACHABLE();
}

/// Tells `settle` of every file, whatever happens, and `report` how many failed.
JobOutcome transferAll(const ShelfTransfer &transfer, const Settle &settle,
                       const std::function<void(int)> &report, JobProgress &progress,
                       const std::stop_token &stop)
{
    const auto transferOne =
        transfer.kind == Kind::copyIn ? FileTransfer::copyUnique : FileTransfer::moveUnique;
    const std::size_t count = transfer.files.size();
    FailedFiles failed;
    std::vector<QUrl> made;
    for (std::size_t i = 0; i < count; ++i) {
        const ShelfTransfer::File &file = transfer.files[i];
        std::optional<QUrl> to;
        try {
            to = transferOne(file.from, file.to, stop, [&](double share) {
                progress.update((double(i) + share) / double(count), nameOf(file.from));
            });
            made.push_back(*to);
        } catch (const Cancelled &) {
            for (; i < count; ++i)
                settle(transfer.files[i], std::nullopt);
            throw;
        } catch (const std::exception &error) {
            failed.add(file.from, error);
        }
        settle(file, to);
    }
    const Words words = wordsOf(transfer.kind);
    if (failed.count() == 0)
        return {.message = words.success(made), .detail = {}, .outputURLs = made};
    report(failed.count());
    return {.message = words.failure,
            .detail = failed.text(),
            .outputURLs = made,
            .style = FeedbackStyle::error};
}

} // namespace

QString keptTitle(std::size_t count)
{
    return count == 1 ? QStringLiteral("Guardado na Mesa")
                      : QStringLiteral("%L1 itens na Mesa").arg(count);
}

QString ShelfTransfer::start(AppServices &services) const
{
    const bool isHomeward = kind == Kind::moveHome;
    const auto settled = [shelf = QPointer(&services.shelf), isHomeward,
                          moved = moved](const File &file, const std::optional<QUrl> &to) {
        if (!shelf)
            return;
        // In our folder is what has come in, and what hasn't left.
        const auto stayed = to ? std::nullopt : std::optional(file.from);
        shelf->settle(file.item, isHomeward ? stayed : to);
        if (to)
            moved(file.from, *to);
    };
    const auto settle = [settled, &scheduler = services.platform.scheduler](const File &file,
                                                                            const auto &to) {
        scheduler.post([settled, file, to] { settled(file, to); });
    };
    const auto report = [shelf = QPointer(&services.shelf), isHomeward,
                         &scheduler = services.platform.scheduler](int failures) {
        scheduler.post([shelf, isHomeward, failures] {
            if (shelf && isHomeward)
                shelf->reportReturnFailures(failures);
        });
    };
    const Words words = wordsOf(kind);
    return services.jobs.run(
        words.title, words.symbol, QStringLiteral("shelf"),
        [transfer = *this, settle, report](JobProgress &progress, const std::stop_token &stop) {
            return transferAll(transfer, settle, report, progress, stop);
        });
}

void takeOffShelf(AppServices &services, const std::vector<Uuid> &items)
{
    ShelfTransfer transfer{.kind = Kind::moveHome};
    for (const auto &[item, from, home] : services.shelf.removeAtOnce(items))
        transfer.files.push_back({item, from, home});
    if (!transfer.files.empty())
        transfer.start(services);
}

} // namespace velmo
