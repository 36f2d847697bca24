#include "VelmoCore/Shelf/ShelfStore.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Shelf/ShelfPaths.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QLocale>
#include <QPointer>
#include <QRegularExpression>

#include <set>

namespace velmo {

using namespace ShelfPaths;

namespace {

constexpr qsizetype longestName = 80;
constexpr Seconds day = 86'400s;

/// Nothing of it is seen: a mark of the byte order isn't, either.
bool isBlank(const QString &line)
{
    return std::ranges::all_of(line, [](QChar c) {
        return c.isSpace() || c.category() == QChar::Other_Format ||
               c.category() == QChar::Other_Control;
    });
}

} // namespace

ShelfStore::ShelfStore(const Places &places, const DataFiles &files, Scheduler &scheduler)
    : trash([](const QUrl &file) {
          errno = 0;
          if (!QFile::moveToTrash(file.toLocalFile()))
              throw FileError(file.toLocalFile(), errno != 0 ? errno : EIO);
      }),
      m_places(places), m_scheduler(scheduler),
      m_file(
          inDirectory(QStringLiteral("shelf.json")), files, scheduler,
          {QStringLiteral("Mesa"), QStringLiteral("a prateleira")}, [this] { return snapshot(); },
          [this] { Q_EMIT issuesChanged(); })
{
    m_file.load([this](Snapshot kept) {
        m_items.insert(m_items.end(), std::make_move_iterator(kept.items.begin()),
                       std::make_move_iterator(kept.items.end()));
        removeDuplicateFiles();
        Q_EMIT itemsChanged();
        Q_EMIT loaded();
    });
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
    m_lastReturnFailure.reset();
    m_file.dismissIssues();
}

std::optional<QString> ShelfStore::copiesDirectory() const
{
    return inDirectory(QStringLiteral("Copies"));
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
    QSet<QString> listed = listedPaths();
    for (const QUrl &url : urls) {
        const QString path = standardized(url);
        if (listed.contains(path))
            continue;
        listed.insert(path);
        insert({.content = {ShelfItem::File{path, {}, ShelfStorage::reference}},
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
    const QStringList lines = text.split(QRegularExpression(QStringLiteral("\\R+")));
    const auto named = std::ranges::find_if_not(lines, isBlank);
    insert({.content = {ShelfItem::Text{text}},
            .name = Text::prefix(named == lines.end() ? text : *named, longestName),
            .group = group});
    changed();
}

void ShelfStore::adoptOutputs(const std::vector<QUrl> &urls)
{
    bool hasAdded = false;
    std::optional<QSet<QString>> listed;
    for (const QUrl &url : urls) {
        const QString path = standardized(url);
        if (!isInNotch(url))
            continue;
        if (!listed)
            listed = listedPaths();
        if (listed->contains(path) || !QFileInfo::exists(path))
            continue;
        listed->insert(path);
        insert(
            {.content = {ShelfItem::File{path, {}, ShelfStorage::moved}}, .name = url.fileName()});
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

bool ShelfStore::isOurs(const ShelfItem &item)
{
    const auto *file = fileOf(item);
    return file && file->storage != ShelfStorage::reference;
}

void ShelfStore::forgetMissingFiles()
{
    forget([](const QString &path) { return !stands(path); });
}

void ShelfStore::lookForMissingFiles()
{
    m_looksAgain = m_isLooking;
    QStringList paths;
    for (const ShelfItem &item : m_items) {
        if (isOurs(item))
            paths.append(fileOf(item)->path);
    }
    if (m_isLooking || paths.isEmpty())
        return;
    m_isLooking = true;
    m_looking = std::jthread(
        [self = QPointer(this), paths, &scheduler = m_scheduler](const std::stop_token &stop) {
            QSet<QString> missing;
            for (const QString &path : paths) {
                if (stop.stop_requested())
                    return;
                if (!stands(path))
                    missing.insert(path);
            }
            scheduler.post([self, missing] {
                if (self)
                    self->forgetFound(missing);
            });
        });
}

void ShelfStore::forgetFound(const QSet<QString> &missing)
{
    m_isLooking = false;
    forget([&](const QString &path) {
        return missing.contains(path) && !stands(path); // it may have come back
    });
    if (m_looksAgain)
        lookForMissingFiles();
}

void ShelfStore::forget(const std::function<bool(const QString &path)> &isGone)
{
    const auto dropped = std::erase_if(m_items, [&](const ShelfItem &item) {
        if (!isOurs(item) || !isGone(fileOf(item)->path))
            return false;
        removeEmptyCopyFolder(item);
        return true;
    });
    if (dropped > 0)
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

QSet<QString> ShelfStore::listedPaths() const
{
    QSet<QString> paths;
    for (const ShelfItem &item : m_items) {
        if (const auto *file = fileOf(item))
            paths.insert(standardized(file->path));
    }
    return paths;
}

void ShelfStore::insert(ShelfItem item)
{
    item.id = makeUuid();
    item.added = m_scheduler.now();
    m_items.insert(m_items.begin(), std::move(item));
}

std::optional<QString> ShelfStore::inDirectory(const QString &name) const
{
    return m_places.directory ? std::optional(QDir(*m_places.directory).filePath(name))
                              : std::nullopt;
}

ShelfStore::Snapshot ShelfStore::snapshot() const
{
    std::vector<ShelfItem> underway;
    underway.reserve(m_underway.size());
    for (const Underway &one : m_underway)
        underway.push_back(one.item);
    return {merged(std::move(underway), m_items)};
}

void ShelfStore::changed()
{
    save();
    Q_EMIT itemsChanged();
}

void ShelfStore::save()
{
    m_retry.cancel();
    m_file.save([this](const std::exception_ptr &failure) {
        if (failure)
            m_retry = m_scheduler.after(retryDelay, [this] { save(); });
    });
}

} // namespace velmo
