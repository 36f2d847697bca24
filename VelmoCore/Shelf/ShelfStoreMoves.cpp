#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Shelf/ShelfArrivals.h"
#include "VelmoCore/Shelf/ShelfPaths.h"
#include "VelmoCore/Shelf/ShelfStore.h"

#include <map>
#include <set>

namespace velmo {

using namespace ShelfPaths;

namespace {

/// Until then more files may arrive.
constexpr Seconds batchDelay = 0.5s;

/// What a file manager leaves in folders doesn't count.
bool holdsNothing(const QString &folder)
{
    const QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden |
                                                     QDir::System | QDir::NoDotAndDotDot);
    return std::ranges::all_of(names, [](const QString &name) { return name == u".DS_Store"; });
}

void removeIfEmpty(const QString &folder)
{
    if (!QFileInfo(folder).isDir() || !holdsNothing(folder))
        return;
    QFile::remove(folder + QStringLiteral("/.DS_Store"));
    QDir().rmdir(folder);
}

void logFailedReturn(const QString &name, const LocalizedError &error)
{
    qCWarning(Log::storage).noquote()
        << QStringLiteral("Não foi possível devolver %1: %2").arg(name, error.description());
}

} // namespace

QUrl ShelfStore::moveIn(const QUrl &url, const std::optional<QString> &group)
{
    return bringIn(url, ShelfStorage::moved, group);
}

QUrl ShelfStore::copyIn(const QUrl &url)
{
    return bringIn(url, ShelfStorage::copy, std::nullopt);
}

QUrl ShelfStore::bringIn(const QUrl &url, ShelfStorage storage, const std::optional<QString> &group)
{
    const auto mesa = mesaDirectory();
    if (!mesa)
        throw FileError(QString(), ENOENT);
    ShelfItem item = ShelfArrivals::plan({url}, *mesa, storage, m_scheduler.now()).front();
    item.group = group;
    const QUrl place = QUrl::fromLocalFile(fileOf(item)->path);
    std::exception_ptr failure;
    recordArrivals({item}, [&](const std::exception_ptr &reason) { failure = reason; });
    m_file.finishSaving();
    if (failure)
        std::rethrow_exception(failure);
    try {
        const QUrl target = storage == ShelfStorage::moved ? FileTransfer::moveUnique(url, place)
                                                           : FileTransfer::copyUnique(url, place);
        completeTransfers({{item.id, target}});
        return target;
    } catch (const LocalizedError &) {
        completeTransfers({{item.id, std::nullopt}});
        throw;
    }
}

void ShelfStore::recordArrivals(std::vector<ShelfItem> arrivals, Recorded recorded)
{
    QSet<QString> given; // to other transfers, since the disk was asked
    for (const Underway &one : m_underway)
        given.insert(fileOf(one.item)->path);
    IDs ids;
    for (ShelfItem &item : arrivals) {
        QString &path = fileOf(item)->path;
        if (given.contains(path)) {
            path = FileNaming::uniqueURL(QUrl::fromLocalFile(path), [&](const QUrl &place) {
                       return given.contains(place.toLocalFile()) || FileNaming::exists(place);
                   }).toLocalFile();
            given.insert(path);
        }
        ids.push_back(item.id);
        m_underway.push_back({std::move(item), true});
    }
    m_file.save([this, ids = std::move(ids),
                 recorded = std::move(recorded)](const std::exception_ptr &failure) {
        if (failure) {
            const std::set<Uuid> dropped(ids.begin(), ids.end());
            std::erase_if(m_underway,
                          [&](const Underway &one) { return dropped.contains(one.item.id); });
            m_retry = m_scheduler.after(retryDelay, [this] { save(); });
            Q_EMIT itemsChanged();
        }
        recorded(failure);
    });
    Q_EMIT itemsChanged();
}

int ShelfStore::arrivingCount() const
{
    return int(std::ranges::count(m_underway, true, &Underway::isArriving));
}

void ShelfStore::completeTransfers(const std::vector<TransferEnd> &ends)
{
    std::map<Uuid, std::optional<QUrl>> places;
    for (const TransferEnd &end : ends)
        places.emplace(end.item, end.place);
    std::vector<Underway> rest;
    std::vector<ShelfItem> staying;
    bool isElsewhere = false;
    for (Underway &one : m_underway) {
        const auto end = places.find(one.item.id);
        if (end == places.end()) {
            rest.push_back(std::move(one));
        } else if (const std::optional<QUrl> &place = end->second) {
            QString &path = fileOf(one.item)->path;
            isElsewhere |= std::exchange(path, place->toLocalFile()) != path;
            staying.push_back(std::move(one.item));
        } else {
            removeEmptyCopyFolder(one.item);
        }
    }
    if (rest.size() == m_underway.size())
        return;
    m_underway = std::move(rest);
    m_items = merged(std::move(staying), std::move(m_items));
    if (isElsewhere || m_underway.empty())
        save();
    else // what is on disk is as good until the last of them
        m_file.saveAfter(batchDelay);
    Q_EMIT itemsChanged();
}

void ShelfStore::remove(const IDs &ids)
{
    auto [distant, failures] = beginRemoval(ids, ids.size());
    for (const Departure &departure : distant) {
        std::optional<QUrl> stays;
        try {
            FileTransfer::moveUnique(departure.from, departure.home);
        } catch (const LocalizedError &error) {
            logFailedReturn(departure.from.fileName(), error);
            stays = departure.from;
            ++failures;
        }
        completeTransfers({{departure.item, stays}});
    }
    reportReturnFailures(failures);
}

std::vector<ShelfStore::Departure> ShelfStore::removeAtOnce(const IDs &ids)
{
    const Removal removal = beginRemoval(ids, mostAtOnce);
    reportReturnFailures(removal.failures);
    return removal.distant;
}

std::vector<ShelfStore::Departure> ShelfStore::depart(const IDs &ids)
{
    return beginRemoval(ids, 0).distant;
}

void ShelfStore::reportReturnFailures(int count)
{
    if (count == 0)
        return;
    m_lastReturnFailure = count;
    Q_EMIT issuesChanged();
}

int ShelfStore::migrateIntoNotchFolder()
{
    const auto copies = copiesDirectory();
    if (!m_places.notchFolder || !copies || !m_file.isOpen())
        return 0;
    int count = 0;
    const auto moveOver = [&](const QString &path) -> std::optional<QUrl> {
        try {
            AtomicFile::makeDirectory(*m_places.notchFolder);
            const QUrl moved = FileTransfer::moveUnique(
                QUrl::fromLocalFile(path),
                inFolder(*m_places.notchFolder, QFileInfo(path).fileName()));
            ++count;
            return moved;
        } catch (const LocalizedError &error) {
            qCWarning(Log::storage).noquote() << "Migração da Mesa:" << error.description();
            return std::nullopt;
        }
    };
    for (ShelfItem &item : m_items) {
        auto *file = fileOf(item);
        if (!file || file->storage == ShelfStorage::reference ||
            !isInside(standardized(file->path), copies) || !stands(file->path))
            continue;
        if (const auto moved = moveOver(file->path))
            file->path = moved->toLocalFile();
    }
    const auto folders = QDir(*copies).entryInfoList(QDir::Dirs | QDir::Hidden |
                                                     QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders) {
        const auto entries = QDir(folder.filePath())
                                 .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : entries) {
            if (entry.fileName() == u".DS_Store")
                continue;
            if (const auto moved = moveOver(entry.filePath()))
                insert({.content = {ShelfItem::File{moved->toLocalFile(), {}, ShelfStorage::moved}},
                        .name = moved->fileName()});
        }
        removeIfEmpty(folder.filePath());
    }
    if (count > 0) {
        removeDuplicateFiles();
        changed();
    }
    return count;
}

void ShelfStore::deleteManagedCopy(const ShelfItem &item)
{
    const auto *file = fileOf(item);
    if (!file || file->storage != ShelfStorage::copy || !stands(file->path))
        return;
    try {
        trash(QUrl::fromLocalFile(file->path));
    } catch (const LocalizedError &error) {
        qCWarning(Log::storage).noquote()
            << QStringLiteral("Não foi possível mandar para o Lixo %1: %2")
                   .arg(item.name, error.description());
        return;
    }
    const QString folder = QFileInfo(file->path).path();
    if (isInside(standardized(folder), mesaDirectory()))
        removeIfEmpty(folder);
}

ShelfStore::Removal ShelfStore::beginRemoval(const IDs &ids, std::size_t mostMoves)
{
    Removal removal;
    std::set<Uuid> leaving(ids.begin(), ids.end());
    std::map<std::optional<QString>, QString> homes; // a folder is asked for once
    std::size_t moves = 0;
    for (const ShelfItem &item : m_items) {
        if (!leaving.contains(item.id))
            continue;
        deleteManagedCopy(item);
        try {
            const auto known = homes.find(item.originalFolder);
            const QString &home =
                known == homes.end()
                    ? homes.emplace(item.originalFolder, returnFolder(item)).first->second
                    : known->second;
            if (const auto departure = returnMovedFile(item, home, moves++ < mostMoves)) {
                removal.distant.push_back(*departure);
                m_underway.push_back({item, false});
            }
        } catch (const LocalizedError &error) {
            logFailedReturn(item.name, error);
            leaving.erase(item.id);
            ++removal.failures;
        }
    }
    std::erase_if(m_items, [&](const ShelfItem &item) { return leaving.contains(item.id); });
    changed();
    return removal;
}

/// Gives what would have to be copied, and what may not move now. Throws `FileError`.
std::optional<ShelfStore::Departure>
ShelfStore::returnMovedFile(const ShelfItem &item, const QString &folder, bool mayMove) const
{
    const auto *file = fileOf(item);
    if (file && file->storage == ShelfStorage::moved && stands(file->path)) {
        const QUrl from = QUrl::fromLocalFile(file->path);
        const QUrl home = inFolder(folder, from.fileName());
        if (mayMove)
            AtomicFile::makeDirectory(folder);
        if (!mayMove || !FileTransfer::renameUnique(from, home))
            return Departure{item.id, from, home};
    }
    removeEmptyCopyFolder(item);
    return std::nullopt;
}

void ShelfStore::removeEmptyCopyFolder(const ShelfItem &item) const
{
    const auto *file = fileOf(item);
    const auto mesa = mesaDirectory();
    if (!file || file->storage != ShelfStorage::moved || !mesa)
        return;
    const QString folder = QFileInfo(standardized(file->path)).path();
    if (folder != standardized(*mesa) && isInNotch(QUrl::fromLocalFile(file->path)))
        QDir().rmdir(folder); // does nothing unless it is empty
}

} // namespace velmo
