#include "VelmoSystem/Shelf/ShelfMover.h"

#include "VelmoCore/Files/FailedFiles.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Shelf/ShelfArrivals.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <ranges>

namespace velmo {

namespace {

using FileNaming::nameOf;

/// No more are reported at once, so that the main thread is never blocked for long.
constexpr std::size_t mostAtOnce = 200;
constexpr Seconds longestSilence = 0.1s;
/// An event that names more files helps nobody.
constexpr std::size_t mostNamed = 50;

QString returnedTitle(const std::vector<QUrl> &made)
{
    if (made.size() != 1)
        return QStringLiteral("%1 devolvidos").arg(Words::items(made.size()));
    const QUrl folder = made.front().adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    return QStringLiteral("Devolvido à pasta “") + QDir(folder.toLocalFile()).dirName() + u'”';
}

QString keptTitle(std::size_t count)
{
    return Words::count(count, u"Guardado na Mesa", u"%1 itens na Mesa");
}

QString source()
{
    return QStringLiteral("shelf");
}

/// As `ShelfStore::isInNotch`, for thousands of files at once.
class NotchFolders {
public:
    explicit NotchFolders(const ShelfStore &shelf)
    {
        for (const auto &folder : {shelf.mesaDirectory(), shelf.copiesDirectory()}) {
            if (folder)
                m_folders.append(QDir::cleanPath(*folder) + u'/');
        }
    }

    bool contain(const QString &path) const
    {
        return std::ranges::any_of(m_folders,
                                   [&](const QString &folder) { return path.startsWith(folder); });
    }

private:
    QStringList m_folders;
};

/// One file that a job carries, and where it came to stand.
struct Carried {
    Uuid item;
    QUrl from;
    QUrl place;             ///< where it is to go
    std::optional<QUrl> to; ///< nothing while it stands where it stood
};

} // namespace

struct ShelfMover::Labels {
    QString title;
    QString symbol;
    QString failure;
};

struct ShelfMover::Undoing {
    std::vector<DropUndo::File> files; ///< as they came
    std::size_t place = 0;             ///< of the first that is on the shelf still
    Transfer transfer;
};

ShelfMover::Labels ShelfMover::labelsOf(Kind kind)
{
    if (kind == Kind::moveIn)
        return {QStringLiteral("Mover para o notch"), QStringLiteral("tray.and.arrow.down"),
                QStringLiteral("Não foi possível mover")};
    return {QStringLiteral("Devolver à pasta de origem"), QStringLiteral("tray.and.arrow.up"),
            QStringLiteral("Não foi possível devolver")};
}

/// What the main thread does with what a job reports.
class ShelfMover::Ledger {
public:
    Ledger(ShelfStore &shelf, DropUndo &undo, const Transfer &transfer)
        : m_shelf(&shelf), m_undo(&undo), m_transfer(transfer)
    {
    }

    void record(const std::vector<ShelfItem> &items, const ShelfStore::Recorded &recorded)
    {
        if (m_shelf)
            m_shelf->recordArrivals(items, recorded);
    }

    void report(const std::vector<Carried> &files)
    {
        if (!m_shelf)
            return;
        std::vector<ShelfStore::TransferEnd> ends;
        std::vector<Move> moves;
        for (const Carried &file : files) {
            // The shelf keeps what came in and, on the way home, what could not leave.
            const auto stays = file.to ? std::nullopt : std::optional(file.from);
            ends.push_back({file.item, isHomeward() ? stays : file.to});
            if (!file.to) {
                ++m_failures;
                continue;
            }
            moves.push_back({file.from, *file.to});
            m_arrived.push_back({file.item, file.from});
        }
        m_shelf->completeTransfers(ends);
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

    /// So many files never arrived.
    void fail(std::size_t count) { m_failures += int(count); }

private:
    bool isHomeward() const { return m_transfer.kind == Kind::moveHome; }

    const QPointer<ShelfStore> m_shelf;
    const QPointer<DropUndo> m_undo;
    const Transfer m_transfer;
    std::vector<DropUndo::File> m_arrived;
    int m_failures = 0;
};

/// Carries the files, on a job's thread.
class ShelfMover::Carrier {
public:
    Carrier(const ShelfMover &mover, const Transfer &transfer)
        : m_scheduler(mover.m_scheduler), m_kind(transfer.kind), m_arriving(transfer.arriving),
          m_leaving(transfer.leaving), m_folder(mover.m_shelf.mesaDirectory()),
          m_ledger(std::make_shared<Ledger>(mover.m_shelf, mover.m_undo, transfer))
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
                    report(files[i]);
                break;
            }
            report(files[i]);
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
    /// Throws if none of the files can be moved.
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
                m_arriving, *m_folder, ShelfStorage::moved, m_scheduler.now(), stop);
            for (std::size_t i = 0; i < items.size(); ++i)
                files.push_back(
                    {items[i].id,
                     m_arriving[i],
                     QUrl::fromLocalFile(std::get<ShelfItem::File>(items[i].content.value).path),
                     {}});
            record(items, stop);
            return files;
        } catch (...) {
            // The main thread may still be recording the items; these posts come after that.
            for (const Carried &file : files)
                report(file);
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
            ledger.record(items, [answer](const std::exception_ptr &failure) {
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
        try {
            progress(0);
            if (m_kind == Kind::moveHome) // the folder may not exist
                AtomicFile::makeDirectory(
                    file.place.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash)
                        .toLocalFile());
            file.to = FileTransfer::moveUnique(file.from, file.place, stop, progress);
            m_made.push_back(*file.to);
            m_moved.push_back(file.from);
        } catch (const Cancelled &) {
            throw;
        } catch (const std::exception &error) {
            m_failed.add(file.from, error);
        }
    }

    void report(const Carried &file)
    {
        m_unreported.push_back(file);
        if (m_unreported.size() >= mostAtOnce ||
            m_scheduler.elapsed() - m_reportedAt >= longestSilence)
            flush();
    }

    void flush()
    {
        m_reportedAt = m_scheduler.elapsed();
        if (!m_unreported.empty())
            post([files = std::exchange(m_unreported, {})](Ledger &ledger) {
                ledger.report(files);
            });
    }

    void post(std::function<void(Ledger &)> body)
    {
        m_scheduler.post([ledger = m_ledger, body = std::move(body)] { body(*ledger); });
    }

    JobOutcome outcome(const QString &title)
    {
        const std::size_t count = m_made.size();
        JobOutcome outcome{.message = m_kind == Kind::moveIn ? title : returnedTitle(m_made),
                           .detail = {}};
        if (m_kind == Kind::moveIn && count > 1)
            outcome.detail = Words::items(count);
        if (m_failed.count() > 0) {
            outcome.message = labelsOf(m_kind).failure;
            outcome.detail = m_failed.text();
            outcome.style = FeedbackStyle::error;
        }
        if (m_made.size() > mostNamed)
            m_made.resize(mostNamed);
        outcome.outputURLs = m_made;
        return outcome;
    }

    Scheduler &m_scheduler;
    const Kind m_kind;
    const std::vector<QUrl> m_arriving;
    const std::vector<Leaving> m_leaving;
    const std::optional<QString> m_folder;
    const std::shared_ptr<Ledger> m_ledger;
    std::vector<Carried> m_unreported;
    Seconds m_reportedAt{};    ///< by the scheduler's elapsed time
    std::vector<QUrl> m_moved; ///< from where
    std::vector<QUrl> m_made;  ///< where these stand now
    FailedFiles m_failed;
};

ShelfMover::ShelfMover(ShelfStore &shelf, DropUndo &undo, JobCenter &jobs, ActivityCenter &activity,
                       Scheduler &scheduler)
    : m_shelf(shelf), m_undo(undo), m_jobs(jobs), m_activity(activity), m_scheduler(scheduler)
{
}

std::optional<QString> ShelfMover::moveIn(const std::vector<DroppedItem> &items, const Moved &moved,
                                          const Finished &finished)
{
    Transfer transfer{.kind = Kind::moveIn, .moved = moved, .finished = finished};
    const NotchFolders notch(m_shelf);
    std::vector<QUrl> present;
    for (const QUrl &file : addTheRest(items)) {
        const QString path = QDir::cleanPath(file.toLocalFile());
        const bool isBundle = QFileInfo(path).suffix().compare(u"app", Qt::CaseInsensitive) == 0;
        if (notch.contain(path))
            present.push_back(file);
        else if (!isBundle)
            transfer.arriving.push_back(file);
    }
    m_shelf.adoptOutputs(present);
    return transfer.arriving.empty() ? std::nullopt : std::optional(start(transfer));
}

std::optional<QString> ShelfMover::keep(const std::vector<DroppedItem> &items, const Moved &moved,
                                        const Finished &finished)
{
    auto job = moveIn(items, moved, finished);
    if (!job) // else its end is reported
        m_activity.post(
            ActivityEvent::make(m_scheduler.now(), QStringLiteral("tray.and.arrow.down"),
                                keptTitle(items.size()), FeedbackStyle::success, source()));
    return job;
}

std::optional<QString> ShelfMover::remove(const std::vector<Uuid> &items)
{
    Transfer transfer{.kind = Kind::moveHome};
    for (const auto &[item, from, home] : m_shelf.removeAtOnce(items))
        transfer.leaving.push_back({item, from, home});
    return transfer.leaving.empty() ? std::nullopt : std::optional(start(transfer));
}

void ShelfMover::undoDrop(const Moved &moved, const Finished &finished)
{
    const auto undoing = std::make_shared<Undoing>(
        Undoing{.files = m_undo.take(),
                .transfer = {.kind = Kind::moveHome, .moved = moved, .finished = finished}});
    departNext(undoing);
}

/// Takes some more off the shelf and sends them home after the last; the user goes on meanwhile.
void ShelfMover::departNext(const std::shared_ptr<Undoing> &undoing)
{
    const std::vector<DropUndo::File> &files = undoing->files;
    const std::size_t end = std::min(files.size(), undoing->place + mostAtOnce);
    std::map<Uuid, QUrl> homes;
    std::vector<Uuid> items;
    for (std::size_t i = undoing->place; i < end; ++i) {
        homes.emplace(files[i].item, files[i].original);
        items.push_back(files[i].item);
    }
    const auto departures = m_shelf.depart(items);
    // The shelf has the newest first: they go as they came, which is how `moved` looks for them.
    for (const auto &[item, from, home] : departures | std::views::reverse)
        undoing->transfer.leaving.push_back({item, from, homes.at(item)});
    undoing->place = end;
    if (end < files.size())
        m_scheduler.post([this, shelf = QPointer(&m_shelf), undoing] {
            if (shelf) // which goes after this object
                departNext(undoing);
        });
    else if (!undoing->transfer.leaving.empty())
        start(undoing->transfer);
}

/// Lists links and texts, and gives the files.
std::vector<QUrl> ShelfMover::addTheRest(const std::vector<DroppedItem> &items)
{
    std::vector<QUrl> files;
    for (const DroppedItem &item : items) {
        std::visit(overloaded{
                       [&](const DroppedItem::File &file) { files.push_back(file.value); },
                       [&](const DroppedItem::Link &link) { m_shelf.addLink(link.value); },
                       [&](const DroppedItem::Text &text) { m_shelf.addText(text.value); },
                   },
                   item.content);
    }
    return files;
}

QString ShelfMover::start(const Transfer &transfer)
{
    const Labels labels = labelsOf(transfer.kind);
    const auto run = [carrier = std::make_shared<Carrier>(*this, transfer),
                      failure = labels.failure](JobProgress &progress,
                                                const std::stop_token &stop) {
        try {
            return carrier->run(progress, stop);
        } catch (const Cancelled &) {
            throw;
        } catch (const LocalizedError &error) { // of all of them: a title of its own, not the job's
            return JobOutcome{.message = failure,
                              .detail = error.description(),
                              .outputURLs = {},
                              .style = FeedbackStyle::error};
        }
    };
    return m_jobs.run(labels.title, labels.symbol, source(), run);
}

} // namespace velmo
