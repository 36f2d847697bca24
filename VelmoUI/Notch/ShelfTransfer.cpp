#include "VelmoUI/Notch/ShelfTransfer.h"

#include "VelmoCore/Files/FailedFiles.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Shelf/ShelfArrivals.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoUI/App/AppServices.h"

#include <QDir>
#include <QPointer>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>

namespace velmo {

namespace {

using FileNaming::nameOf;
using Kind = ShelfTransfer::Kind;

/// No more are told of at once, so that the main thread is never held up.
constexpr std::size_t mostAtOnce = 200;
constexpr Seconds longestSilence = 0.1s;
/// An event that names more files helps nobody.
constexpr std::size_t mostTold = 50;

struct Words {
    QString title;
    QString symbol;
    QString failure;
};

Words wordsOf(Kind kind)
{
    const QString inward = QStringLiteral("tray.and.arrow.down");
    switch (kind) {
    case Kind::moveIn:
        return {QStringLiteral("Mover para o notch"), inward,
                QStringLiteral("Não foi possível mover")};
    case Kind::copyIn:
        return {QStringLiteral("Copiar para o notch"), inward,
                QStringLiteral("Não foi possível copiar")};
    case Kind::moveHome:
        return {QStringLiteral("Devolver à pasta de origem"), QStringLiteral("tray.and.arrow.up"),
                QStringLiteral("Não foi possível devolver")};
    }
    Q_UNREACHABLE();
}

QString returnedTitle(const std::vector<QUrl> &made)
{
    if (made.size() != 1)
        return QStringLiteral("%L1 itens devolvidos").arg(made.size());
    const QUrl folder = made.front().adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    return QStringLiteral("Devolvido à pasta “") + QDir(folder.toLocalFile()).dirName() + u'”';
}

/// One file that a job carries, and where it came to stand.
struct Carried {
    Uuid item;
    QUrl from;
    QUrl place;             ///< where it is to go
    std::optional<QUrl> to; ///< nothing while it stands where it stood
};

/// What the main thread does with what a job tells it.
class Ledger {
public:
    Ledger(AppServices &services, const ShelfTransfer &transfer)
        : m_shelf(&services.shelf), m_undo(&services.dropUndo), m_transfer(transfer)
    {
    }

    void expect(const std::vector<ShelfItem> &items, const ShelfStore::Recorded &recorded)
    {
        if (m_shelf)
            m_shelf->expect(items, recorded);
    }

    void settle(const std::vector<Carried> &files)
    {
        if (!m_shelf)
            return;
        std::vector<ShelfStore::Settlement> ends;
        std::vector<ShelfTransfer::Move> moves;
        for (const Carried &file : files) {
            // In our folder is what has come in, and what hasn't left.
            const auto stays = file.to ? std::nullopt : std::optional(file.from);
            ends.push_back({file.item, isHomeward() ? stays : file.to});
            if (!file.to) {
                ++m_failures;
                continue;
            }
            moves.push_back({file.from, *file.to});
            m_arrived.push_back({file.item, file.from});
        }
        m_shelf->settle(ends);
        m_transfer.moved(moves);
    }

    void finish(bool wasCancelled, const QString &title)
    {
        if (m_undo && m_transfer.kind == Kind::moveIn && !m_arrived.empty())
            m_undo->offer(std::move(m_arrived), title);
        if (m_shelf && isHomeward() && !wasCancelled)
            m_shelf->reportReturnFailures(m_failures);
        m_transfer.finished(m_failures == 0);
    }

    /// Nothing of these has come.
    void fail(std::size_t count) { m_failures += int(count); }

private:
    bool isHomeward() const { return m_transfer.kind == Kind::moveHome; }

    const QPointer<ShelfStore> m_shelf;
    const QPointer<DropUndo> m_undo;
    const ShelfTransfer m_transfer;
    std::vector<DropUndo::File> m_arrived;
    int m_failures = 0;
};

/// Carries the files, on a job's thread.
class Carrier {
public:
    Carrier(AppServices &services, const ShelfTransfer &transfer)
        : m_scheduler(services.platform.scheduler), m_kind(transfer.kind),
          m_arriving(transfer.arriving), m_leaving(transfer.leaving),
          m_folder(services.shelf.mesaDirectory()),
          m_ledger(std::make_shared<Ledger>(services, transfer))
    {
    }

    JobOutcome run(JobProgress &progress, const std::stop_token &stop)
    {
        std::vector<Carried> files = prepared(stop);
        bool wasCancelled = false;
        for (std::size_t i = 0; i < files.size(); ++i) {
            try {
                carry(files[i], stop, [&](double share) {
                    progress.update((double(i) + share) / double(files.size()),
                                    nameOf(files[i].from));
                });
            } catch (const Cancelled &) {
                wasCancelled = true;
                for (; i < files.size(); ++i)
                    tell(files[i]);
                break;
            }
            tell(files[i]);
        }
        flush();
        const QString title =
            m_moved.empty() || m_kind != Kind::moveIn ? QString() : movedFromTitle(m_moved);
        post([wasCancelled, title](Ledger &ledger) { ledger.finish(wasCancelled, title); });
        if (wasCancelled)
            throw Cancelled();
        return outcome(title);
    }

private:
    /// Throws what keeps all of them from moving.
    std::vector<Carried> prepared(const std::stop_token &stop)
    {
        std::vector<Carried> files;
        if (m_kind == Kind::moveHome) {
            for (const auto &[item, from, to] : m_leaving)
                files.push_back({item, from, to, {}});
            return files;
        }
        try {
            if (!m_folder)
                throw FileError(QString(), ENOENT);
            const std::vector<ShelfItem> items = ShelfArrivals::plan(
                m_arriving, *m_folder,
                m_kind == Kind::moveIn ? ShelfStorage::moved : ShelfStorage::copy,
                m_scheduler.now(), stop);
            for (std::size_t i = 0; i < items.size(); ++i)
                files.push_back(
                    {items[i].id,
                     m_arriving[i],
                     QUrl::fromLocalFile(std::get<ShelfItem::File>(items[i].content.value).path),
                     {}});
            record(items, stop);
            return files;
        } catch (...) {
            // After what the main thread has been asked for, which may be on its way still.
            for (const Carried &file : files)
                tell(file);
            flush();
            post([count = m_arriving.size() - files.size()](Ledger &ledger) {
                ledger.fail(count);
                ledger.finish(false, {});
            });
            throw;
        }
    }

    /// Waits until the shelf has these on disk. Throws why it can't have them, and `Cancelled`.
    void record(const std::vector<ShelfItem> &items, const std::stop_token &stop)
    {
        struct Answer {
            std::mutex mutex; ///< guards the others
            std::condition_variable_any given;
            bool isGiven = false;
            std::exception_ptr failure;
        };
        const auto answer = std::make_shared<Answer>();
        post([items, answer](Ledger &ledger) {
            ledger.expect(items, [answer](const std::exception_ptr &failure) {
                const std::lock_guard lock(answer->mutex);
                answer->isGiven = true;
                answer->failure = failure;
                answer->given.notify_all();
            });
        });
        std::unique_lock lock(answer->mutex);
        if (!answer->given.wait(lock, stop, [&] { return answer->isGiven; }))
            throw Cancelled();
        try {
            if (answer->failure)
                std::rethrow_exception(answer->failure);
        } catch (const LocalizedError &error) {
            throw LocalizedError(QStringLiteral("A prateleira não pôde ser salva: ") +
                                 error.description());
        }
    }

    /// Throws `Cancelled` only.
    void carry(Carried &file, const std::stop_token &stop, const FileTransfer::Progress &progress)
    {
        const auto transfer =
            m_kind == Kind::copyIn ? FileTransfer::copyUnique : FileTransfer::moveUnique;
        try {
            progress(0);
            if (m_kind == Kind::moveHome) // it may have gone, or never have been
                AtomicFile::makeDirectory(
                    file.place.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash)
                        .toLocalFile());
            file.to = transfer(file.from, file.place, stop, progress);
            m_made.push_back(*file.to);
            m_moved.push_back(file.from);
        } catch (const Cancelled &) {
            throw;
        } catch (const std::exception &error) {
            m_failed.add(file.from, error);
        }
    }

    void tell(const Carried &file)
    {
        m_untold.push_back(file);
        if (m_untold.size() >= mostAtOnce || m_scheduler.elapsed() - m_toldAt >= longestSilence)
            flush();
    }

    void flush()
    {
        m_toldAt = m_scheduler.elapsed();
        if (!m_untold.empty())
            post([files = std::exchange(m_untold, {})](Ledger &ledger) { ledger.settle(files); });
    }

    void post(std::function<void(Ledger &)> body)
    {
        m_scheduler.post([ledger = m_ledger, body = std::move(body)] { body(*ledger); });
    }

    JobOutcome outcome(const QString &title)
    {
        const std::size_t count = m_made.size();
        JobOutcome outcome{.message = m_kind == Kind::moveIn   ? title
                                      : m_kind == Kind::copyIn ? keptTitle(count)
                                                               : returnedTitle(m_made),
                           .detail = {}};
        if (m_kind == Kind::moveIn && count > 1)
            outcome.detail = movedDetail(count);
        if (m_failed.count() > 0) {
            outcome.message = wordsOf(m_kind).failure;
            outcome.detail = m_failed.text();
            outcome.style = FeedbackStyle::error;
        }
        if (m_made.size() > mostTold)
            m_made.resize(mostTold);
        outcome.outputURLs = m_made;
        return outcome;
    }

    Scheduler &m_scheduler;
    const Kind m_kind;
    const std::vector<QUrl> m_arriving;
    const std::vector<ShelfTransfer::Leaving> m_leaving;
    const std::optional<QString> m_folder;
    const std::shared_ptr<Ledger> m_ledger;
    std::vector<Carried> m_untold;
    Seconds m_toldAt{};        ///< by the scheduler's elapsed time
    std::vector<QUrl> m_moved; ///< from where
    std::vector<QUrl> m_made;  ///< where these stand now
    FailedFiles m_failed;
};

/// A failure of all of them has a title of its own, not the job's.
JobOutcome orTold(Kind kind, const std::function<JobOutcome()> &run)
{
    try {
        return run();
    } catch (const Cancelled &) {
        throw;
    } catch (const LocalizedError &error) {
        return {.message = wordsOf(kind).failure,
                .detail = error.description(),
                .outputURLs = {},
                .style = FeedbackStyle::error};
    }
}

} // namespace

QString keptTitle(std::size_t count)
{
    return count == 1 ? QStringLiteral("Guardado na Mesa")
                      : QStringLiteral("%L1 itens na Mesa").arg(count);
}

QString ShelfTransfer::start(AppServices &services) const
{
    const Words words = wordsOf(kind);
    return services.jobs.run(words.title, words.symbol, QStringLiteral("shelf"),
                             [carrier = std::make_shared<Carrier>(services, *this),
                              kind = kind](JobProgress &progress, const std::stop_token &stop) {
                                 return orTold(kind, [&] { return carrier->run(progress, stop); });
                             });
}

std::optional<QString> takeOffShelf(AppServices &services, const std::vector<Uuid> &items)
{
    ShelfTransfer transfer{.kind = Kind::moveHome};
    for (const auto &[item, from, home] : services.shelf.removeAtOnce(items))
        transfer.leaving.push_back({item, from, home});
    return transfer.leaving.empty() ? std::nullopt : std::optional(transfer.start(services));
}

void undoDrop(AppServices &services, const ShelfTransfer::Moved &moved,
              const ShelfTransfer::Finished &finished)
{
    std::map<Uuid, QUrl> homes;
    std::vector<Uuid> items;
    for (const auto &[item, original] : services.dropUndo.take()) {
        homes.emplace(item, original);
        items.push_back(item);
    }
    ShelfTransfer transfer{.kind = Kind::moveHome, .moved = moved, .finished = finished};
    for (const auto &[item, from, home] : services.shelf.depart(items))
        transfer.leaving.push_back({item, from, homes.at(item)});
    // The shelf has the newest first: they go as they came, which is how `moved` looks for them.
    std::ranges::reverse(transfer.leaving);
    if (!transfer.leaving.empty())
        transfer.start(services);
}

} // namespace velmo
