#include "VelmoCore/Shelf/ShelfStore.h"

#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <set>
#include <sys/stat.h>

namespace velmo {

namespace {

constexpr qsizetype longestName = 80;
constexpr Seconds day = 86'400s;

QString label()
{
    return QStringLiteral("Mesa");
}

QString standardized(const QString &path)
{
    return QDir::cleanPath(path);
}

QString standardized(const QUrl &url)
{
    return standardized(url.toLocalFile());
}

bool isInside(const QString &path, const std::optional<QString> &folder)
{
    return folder && path.startsWith(standardized(*folder) + u'/');
}

/// Whether anything stands there, a dangling link too. What can't be asked counts as standing: its
/// record is all that tells where it is.
bool stands(const QString &path)
{
    struct stat entry = {};
    return ::lstat(QFile::encodeName(path).constData(), &entry) == 0 ||
           (errno != ENOENT && errno != ENOTDIR);
}

const ShelfItem::File *fileOf(const ShelfItem &item)
{
    return std::get_if<ShelfItem::File>(&item.content.value);
}

ShelfItem::File *fileOf(ShelfItem &item)
{
    return std::get_if<ShelfItem::File>(&item.content.value);
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

QUrl inFolder(const QString &folder, const QString &name)
{
    return QUrl::fromLocalFile(QDir(folder).filePath(name));
}

} // namespace

ShelfStore::ShelfStore(const Places &places, const std::optional<DataCipher> &cipher,
                       Scheduler &scheduler)
    : trash([](const QUrl &file) {
          errno = 0;
          if (!QFile::moveToTrash(file.toLocalFile()))
              throw FileError(file.toLocalFile(), errno != 0 ? errno : EIO);
      }),
      m_places(places), m_scheduler(scheduler)
{
    if (!places.directory)
        return;
    m_store.emplace(QDir(*places.directory).filePath(QStringLiteral("shelf.json")), cipher);
    const LoadResult<Snapshot> result = m_store->load(scheduler.now());
    if (auto snapshot = result.value())
        m_items = std::move(snapshot->items);
    m_loadIssue = result.issue(label());
    removeDuplicateFiles();
}

std::vector<ShelfItem> ShelfStore::items(const QString &query,
                                         const std::optional<QString> &group) const
{
    const QString wanted = QLocale().toLower(query.trimmed());
    const auto holds = [&](const QString &text) {
        return QLocale().toLower(text).contains(wanted);
    };
    std::vector<ShelfItem> found;
    for (const ShelfItem &item : m_items) {
        if ((!group || item.group == group) &&
            (holds(item.name) || (item.group && holds(*item.group))))
            found.push_back(item);
    }
    return found;
}

std::vector<QString> ShelfStore::groups() const
{
    std::set<QString> names;
    for (const ShelfItem &item : m_items) {
        if (item.group)
            names.insert(*item.group);
    }
    return {names.begin(), names.end()};
}

void ShelfStore::dismissIssues()
{
    m_loadIssue.reset();
    m_lastSaveError.reset();
    m_lastReturnFailure.reset();
    Q_EMIT issuesChanged();
}

std::optional<QString> ShelfStore::copiesDirectory() const
{
    if (!m_places.directory)
        return std::nullopt;
    return QDir(*m_places.directory).filePath(QStringLiteral("Copies"));
}

std::optional<QString> ShelfStore::mesaDirectory() const
{
    if (m_places.notchFolder)
        return m_places.notchFolder;
    const auto copies = copiesDirectory();
    return copies ? std::optional(*copies + QStringLiteral("/Mesa")) : std::nullopt;
}

std::optional<QString> ShelfStore::newCopyFolder() const
{
    const auto copies = copiesDirectory();
    return copies ? std::optional(*copies + u'/' + uuidText(makeUuid())) : std::nullopt;
}

bool ShelfStore::isInNotch(const QUrl &url) const
{
    const QString path = standardized(url);
    return isInside(path, mesaDirectory()) || isInside(path, copiesDirectory());
}

std::optional<QUrl> ShelfStore::resolve(const ShelfItem &item) const
{
    const auto *file = fileOf(item);
    if (!file || !QFileInfo::exists(file->path))
        return std::nullopt;
    return QUrl::fromLocalFile(file->path);
}

QString ShelfStore::returnFolder(const ShelfItem &item) const
{
    return item.originalFolder && QFileInfo(*item.originalFolder).isDir() ? *item.originalFolder
                                                                          : m_places.downloads;
}

void ShelfStore::addReferences(const std::vector<QUrl> &urls, const std::optional<QString> &group)
{
    bool hasAdded = false;
    for (const QUrl &url : urls) {
        if (isListed(url))
            continue;
        insert({.content = {ShelfItem::File{standardized(url), {}, ShelfStorage::reference}},
                .name = url.fileName(),
                .group = group});
        hasAdded = true;
    }
    if (hasAdded)
        changed();
}

void ShelfStore::addCopy(const QUrl &copy, const QString &originalName,
                         const std::optional<QString> &group)
{
    insert({.content = {ShelfItem::File{copy.toLocalFile(), {}, ShelfStorage::copy}},
            .name = originalName,
            .group = group});
    changed();
}

void ShelfStore::addLink(const QUrl &url, const std::optional<QString> &group)
{
    insert({.content = {ShelfItem::Link{url}},
            .name = url.host().isEmpty() ? url.toString() : url.host(),
            .group = group});
    changed();
}

void ShelfStore::addText(const QString &text, const std::optional<QString> &group)
{
    const QStringList lines =
        text.split(QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts);
    const auto named =
        std::ranges::find_if(lines, [](const QString &line) { return !line.trimmed().isEmpty(); });
    insert({.content = {ShelfItem::Text{text}},
            .name = Text::prefix(named == lines.end() ? text : *named, longestName),
            .group = group});
    changed();
}

QUrl ShelfStore::placeFor(const QUrl &url) const
{
    const auto mesa = mesaDirectory();
    if (!mesa)
        throw FileError(QString(), ENOENT);
    AtomicFile::makeDirectory(*mesa);
    return inFolder(*mesa, QFileInfo(standardized(url)).fileName());
}

QUrl ShelfStore::moveIn(const QUrl &url, const std::optional<QString> &group)
{
    const QUrl target = FileTransfer::moveUnique(url, placeFor(url));
    addMoved(target, url, group);
    return target;
}

std::optional<QUrl> ShelfStore::moveInAtOnce(const QUrl &url)
{
    const auto target = FileTransfer::renameUnique(url, placeFor(url));
    if (target)
        addMoved(*target, url);
    return target;
}

void ShelfStore::addMoved(const QUrl &moved, const QUrl &original,
                          const std::optional<QString> &group)
{
    const QFileInfo source(standardized(original));
    insert({.content = {ShelfItem::File{moved.toLocalFile(), {}, ShelfStorage::moved}},
            .name = source.fileName(),
            .group = group,
            .originalFolder = source.path()});
    changed();
}

QUrl ShelfStore::copyIn(const QUrl &url)
{
    const QUrl place = placeFor(url);
    const QUrl target = FileTransfer::copyUnique(url, place);
    addCopy(target, place.fileName());
    return target;
}

void ShelfStore::adoptOutputs(const std::vector<QUrl> &urls)
{
    bool hasAdded = false;
    for (const QUrl &url : urls) {
        if (!isInNotch(url) || !QFileInfo::exists(url.toLocalFile()) || isListed(url))
            continue;
        insert({.content = {ShelfItem::File{standardized(url), {}, ShelfStorage::moved}},
                .name = url.fileName()});
        hasAdded = true;
    }
    if (hasAdded)
        changed();
}

void ShelfStore::togglePin(const Uuid &id)
{
    const auto item = std::ranges::find(m_items, id, &ShelfItem::id);
    if (item == m_items.end())
        return;
    item->isPinned = !item->isPinned;
    changed();
}

void ShelfStore::setGroup(const QString &name, const IDs &ids)
{
    const QString trimmed = name.trimmed();
    for (ShelfItem &item : m_items) {
        if (std::ranges::find(ids, item.id) != ids.end())
            item.group = trimmed.isEmpty() ? std::nullopt : std::optional(trimmed);
    }
    changed();
}

void ShelfStore::setFile(const Uuid &id, const QUrl &url)
{
    const auto item = std::ranges::find(m_items, id, &ShelfItem::id);
    if (item == m_items.end() || !fileOf(*item))
        return;
    fileOf(*item)->path = url.toLocalFile();
    item->name = url.fileName();
    changed();
}

void ShelfStore::setName(const Uuid &id, const QString &name)
{
    const auto item = std::ranges::find(m_items, id, &ShelfItem::id);
    if (item == m_items.end() || name.trimmed().isEmpty())
        return;
    item->name = name.trimmed();
    changed();
}

void ShelfStore::remove(const IDs &ids)
{
    std::set<Uuid> failures;
    for (const ShelfItem &item : m_items) {
        if (std::ranges::find(ids, item.id) == ids.end())
            continue;
        deleteManagedCopy(item);
        if (!returnMovedFile(item))
            failures.insert(item.id);
    }
    std::erase_if(m_items, [&](const ShelfItem &item) {
        return std::ranges::find(ids, item.id) != ids.end() && !failures.contains(item.id);
    });
    if (!failures.empty()) {
        m_lastReturnFailure = int(failures.size());
        Q_EMIT issuesChanged();
    }
    changed();
}

int ShelfStore::autoClean(int olderThanDays, Date now)
{
    if (olderThanDays < 1)
        return 0;
    const Date cutOff = now - olderThanDays * day;
    IDs ids;
    for (const ShelfItem &item : m_items) {
        const auto *file = fileOf(item);
        if (!item.isPinned && item.added < cutOff &&
            !(file && file->storage == ShelfStorage::moved))
            ids.push_back(item.id);
    }
    if (!ids.empty())
        remove(ids);
    return int(ids.size());
}

void ShelfStore::forgetMissingFiles()
{
    const auto isMissing = [this](const ShelfItem &item) {
        const auto *file = fileOf(item);
        if (!file || file->storage == ShelfStorage::reference || stands(file->path))
            return false;
        removeEmptyCopyFolder(item);
        return true;
    };
    if (std::erase_if(m_items, isMissing) > 0)
        changed();
}

int ShelfStore::removeDuplicateFiles()
{
    std::set<QString> paths;
    const auto dropped = std::erase_if(m_items, [&](const ShelfItem &item) {
        const auto *file = fileOf(item);
        return file && !paths.insert(standardized(file->path)).second;
    });
    if (dropped > 0)
        changed();
    return int(dropped);
}

int ShelfStore::migrateIntoNotchFolder()
{
    const auto copies = copiesDirectory();
    if (!m_places.notchFolder || !copies)
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

bool ShelfStore::isListed(const QUrl &url) const
{
    const QString path = standardized(url);
    return std::ranges::any_of(m_items, [&](const ShelfItem &item) {
        const auto *file = fileOf(item);
        return file && standardized(file->path) == path;
    });
}

void ShelfStore::insert(ShelfItem item)
{
    item.id = makeUuid();
    item.added = m_scheduler.now();
    m_items.insert(m_items.begin(), std::move(item));
}

void ShelfStore::changed()
{
    save();
    Q_EMIT itemsChanged();
}

void ShelfStore::save()
{
    if (!m_store)
        return;
    std::optional<QString> issue;
    try {
        m_store->save({m_items});
    } catch (const LocalizedError &error) {
        qCWarning(Log::storage).noquote() << "Falha ao salvar a prateleira:" << error.description();
        issue = JSONFile::saveIssue(error, label(), m_loadIssue);
    }
    if (issue == m_lastSaveError)
        return;
    m_lastSaveError = issue;
    Q_EMIT issuesChanged();
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

bool ShelfStore::returnMovedFile(const ShelfItem &item)
{
    const auto *file = fileOf(item);
    if (!file || file->storage != ShelfStorage::moved || !stands(file->path)) {
        removeEmptyCopyFolder(item);
        return true;
    }
    try {
        const QString folder = returnFolder(item);
        AtomicFile::makeDirectory(folder);
        FileTransfer::moveUnique(QUrl::fromLocalFile(file->path),
                                 inFolder(folder, QFileInfo(file->path).fileName()));
    } catch (const LocalizedError &error) {
        qCWarning(Log::storage).noquote() << QStringLiteral("Não foi possível devolver %1: %2")
                                                 .arg(item.name, error.description());
        return false;
    }
    removeEmptyCopyFolder(item);
    return true;
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
