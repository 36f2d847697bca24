#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Shelf/ShelfPaths.h"
#include "VelmoCore/Shelf/ShelfStore.h"

#include <set>

namespace velmo {

using namespace ShelfPaths;

namespace {

/// The item of `moved`, which came from `original`.
ShelfItem movedItem(const QUrl &moved, const QUrl &original,
                    const std::optional<QString> &group = std::nullopt)
{
    return {.content = {ShelfItem::File{moved.toLocalFile(), {}, ShelfStorage::moved}},
            .name = nameOf(original),
            .group = group,
            .originalFolder = QFileInfo(standardized(original)).path()};
}

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

QUrl ShelfStore::placeFor(const QUrl &url) const
{
    const auto mesa = mesaDirectory();
    if (!mesa)
        throw FileError(QString(), ENOENT);
    AtomicFile::makeDirectory(*mesa);
    return FileNaming::uniqueURL(inFolder(*mesa, nameOf(url)), [this](const QUrl &place) {
        const QString path = place.toLocalFile();
        return FileNaming::exists(place) ||
               std::ranges::any_of(
                   m_underway, [&](const ShelfItem &item) { return fileOf(item)->path == path; });
    });
}

QUrl ShelfStore::moveIn(const QUrl &url, const std::optional<QString> &group)
{
    const QUrl target = FileTransfer::moveUnique(url, placeFor(url));
    insert(movedItem(target, url, group));
    changed();
    return target;
}

std::optional<QUrl> ShelfStore::moveInAtOnce(const QUrl &url)
{
    const auto target = FileTransfer::renameUnique(url, placeFor(url));
    if (target) {
        insert(movedItem(*target, url));
        changed();
    }
    return target;
}

ShelfItem ShelfStore::expect(const QUrl &original, ShelfStorage storage)
{
    ShelfItem item = movedItem(placeFor(original), original);
    if (storage == ShelfStorage::copy) {
        fileOf(item)->storage = storage;
        item.originalFolder.reset();
    }
    item.id = makeUuid();
    item.added = m_scheduler.now();
    m_underway.push_back(item);
    changed();
    return item;
}

int ShelfStore::arrivingCount() const
{
    return int(std::ranges::count_if(
        m_underway, [](const ShelfItem &item) { return !stands(fileOf(item)->path); }));
}

void ShelfStore::settle(const Uuid &id, const std::optional<QUrl> &place)
{
    const auto found = std::ranges::find(m_underway, id, &ShelfItem::id);
    if (found == m_underway.end())
        return;
    ShelfItem item = std::move(*found);
    m_underway.erase(found);
    if (place) {
        fileOf(item)->path = place->toLocalFile();
        insertByDate(m_items, std::move(item));
    } else {
        removeEmptyCopyFolder(item);
    }
    changed();
}

QUrl ShelfStore::copyIn(const QUrl &url)
{
    const QUrl target = FileTransfer::copyUnique(url, placeFor(url));
    addCopy(target, nameOf(url));
    return target;
}

void ShelfStore::remove(const IDs &ids)
{
    auto [distant, failures] = beginRemoval(ids);
    for (const Departure &departure : distant) {
        std::optional<QUrl> stays;
        try {
            FileTransfer::moveUnique(departure.from, departure.home);
        } catch (const LocalizedError &error) {
            logFailedReturn(departure.from.fileName(), error);
            stays = departure.from;
            ++failures;
        }
        settle(departure.item, stays);
    }
    reportReturnFailures(failures);
}

std::vector<ShelfStore::Departure> ShelfStore::removeAtOnce(const IDs &ids)
{
    const Removal removal = beginRemoval(ids);
    reportReturnFailures(removal.failures);
    return removal.distant;
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

ShelfStore::Removal ShelfStore::beginRemoval(const IDs &ids)
{
    Removal removal;
    std::set<Uuid> failures;
    for (const ShelfItem &item : m_items) {
        if (std::ranges::find(ids, item.id) == ids.end())
            continue;
        deleteManagedCopy(item);
        try {
            if (const auto departure = returnMovedFile(item)) {
                removal.distant.push_back(*departure);
                m_underway.push_back(item);
            }
        } catch (const LocalizedError &error) {
            logFailedReturn(item.name, error);
            failures.insert(item.id);
        }
    }
    std::erase_if(m_items, [&](const ShelfItem &item) {
        return std::ranges::find(ids, item.id) != ids.end() && !failures.contains(item.id);
    });
    removal.failures = int(failures.size());
    changed();
    return removal;
}

/// Gives what would have to be copied. Throws `FileError`.
std::optional<ShelfStore::Departure> ShelfStore::returnMovedFile(const ShelfItem &item) const
{
    const auto *file = fileOf(item);
    if (file && file->storage == ShelfStorage::moved && stands(file->path)) {
        const QUrl from = QUrl::fromLocalFile(file->path);
        const QString folder = returnFolder(item);
        AtomicFile::makeDirectory(folder);
        const QUrl home = inFolder(folder, from.fileName());
        if (!FileTransfer::renameUnique(from, home))
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
