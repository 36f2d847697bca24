#pragma once

#include "VelmoCore/Shelf/ShelfItem.h"
#include "VelmoCore/Storage/StateFile.h"

#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// What the user keeps in the notch, and the folder "No Notch" with the files that were moved in.
/// Saves at once: a file that has moved must not be ahead of its record. Main thread only.
class ShelfStore : public QObject {
    Q_OBJECT

public:
    struct Snapshot {
        std::vector<ShelfItem> items;
        bool operator==(const Snapshot &) const = default;
    };
    struct Places {
        /// For "shelf.json" and "Copies"; without it nothing is kept on disk.
        std::optional<QString> directory;
        /// The user's own folder for files moved in; without it one beside the copies.
        std::optional<QString> notchFolder;
        QString downloads; ///< where a file goes whose original folder is gone
    };
    using IDs = std::vector<Uuid>;
    /// A file that is to leave the shelf's folder for another file system.
    struct Departure {
        Uuid item;
        QUrl from;
        QUrl home; ///< unless something of that name stands there
    };

    /// Loads at once, or when the key comes; never fails.
    ShelfStore(const Places &places, const DataFiles &files, Scheduler &scheduler);

    /// Newest first.
    const std::vector<ShelfItem> &items() const { return m_items; }
    std::vector<ShelfItem> items(const QString &query, const std::optional<QString> &group) const;
    /// The distinct names, sorted.
    std::vector<QString> groups() const;

    const std::optional<QString> &loadIssue() const { return m_file.loadIssue(); }
    const std::optional<QString> &lastSaveError() const { return m_file.lastSaveError(); }
    /// How many moved files could not go back.
    std::optional<int> lastReturnFailure() const { return m_lastReturnFailure; }
    void dismissIssues();

    std::optional<QString> copiesDirectory() const;
    std::optional<QString> mesaDirectory() const;
    std::optional<QString> newCopyFolder() const;
    bool isInNotch(const QUrl &url) const;
    /// The file of an item where it stands; nothing for links, texts and files that are gone.
    std::optional<QUrl> resolve(const ShelfItem &item) const;
    QString returnFolder(const ShelfItem &item) const;

    void addReferences(const std::vector<QUrl> &urls,
                       const std::optional<QString> &group = std::nullopt);
    void addCopy(const QUrl &copy, const QString &originalName,
                 const std::optional<QString> &group = std::nullopt);
    void addLink(const QUrl &url, const std::optional<QString> &group = std::nullopt);
    void addText(const QString &text, const std::optional<QString> &group = std::nullopt);
    /// Throw `FileError`; then no item is made and the file stands where it was. They take as long
    /// as a copy does where the file is on another file system; what may be long goes another way,
    /// by `moveInAtOnce`, or by `expect`, a job and `settle`.
    QUrl moveIn(const QUrl &url, const std::optional<QString> &group = std::nullopt);
    QUrl copyIn(const QUrl &url);
    /// Nothing, and nothing has happened, where `moveIn` would have to copy. Throws `FileError`.
    std::optional<QUrl> moveInAtOnce(const QUrl &url);
    /// Records that `original` is on its way into our folder, and gives the item, whose path is a
    /// free place for it. It joins `items` when it has settled; if Orvane ends before, it is listed
    /// at the next start, or forgotten where nothing came. Throws `FileError`.
    ShelfItem expect(const QUrl &original, ShelfStorage storage);
    /// How many files are expected that don't stand in our folder yet.
    int arrivingCount() const;
    /// The end of a transfer by `expect` or `removeAtOnce`: the file stands at `place` in our
    /// folder, or not there.
    void settle(const Uuid &id, const std::optional<QUrl> &place);
    /// Lists files that a tool made in our folders.
    void adoptOutputs(const std::vector<QUrl> &urls);

    void togglePin(const Uuid &id);
    void setGroup(const QString &name, const IDs &ids);
    /// The item's file has another name or place now.
    void setFile(const Uuid &id, const QUrl &url);
    /// What the item is called; an empty name changes nothing.
    void setName(const Uuid &id, const QString &name);
    /// Copies go to the trash, moved files back; one that can't go back stays. Takes as long as a
    /// copy does where a file's home is on another file system.
    void remove(const IDs &ids);
    /// Does what `remove` does without copying. What it gives has left `items`, but not its place:
    /// a job moves it, and then it has to `settle`.
    std::vector<Departure> removeAtOnce(const IDs &ids);
    /// Tells the user that so many moved files could not go back.
    void reportReturnFailures(int count);
    /// Removes what is older, but nothing pinned and no moved file. Gives how many.
    int autoClean(int olderThanDays, Date now);
    void forgetMissingFiles();
    int removeDuplicateFiles();
    /// Brings files of earlier versions into `notchFolder`. Gives how many. Without the records of
    /// where they came from none.
    int migrateIntoNotchFolder();

    /// Throws `FileError`; the desktop's trash unless replaced.
    std::function<void(const QUrl &)> trash;

Q_SIGNALS:
    void itemsChanged();
    void issuesChanged();
    /// The items of earlier runs have come late.
    void loaded();

private:
    struct Removal {
        std::vector<Departure> distant;
        int failures = 0;
    };

    bool isListed(const QUrl &url) const;
    QUrl placeFor(const QUrl &url) const;
    void insert(ShelfItem item);
    std::optional<QString> inDirectory(const QString &name) const;
    Snapshot snapshot() const;
    void changed();
    Removal beginRemoval(const IDs &ids);
    void deleteManagedCopy(const ShelfItem &item);
    std::optional<Departure> returnMovedFile(const ShelfItem &item) const;
    void removeEmptyCopyFolder(const ShelfItem &item) const;

    Places m_places;
    Scheduler &m_scheduler;
    StateFile<Snapshot> m_file;
    std::vector<ShelfItem> m_items;
    std::vector<ShelfItem> m_underway; ///< recorded, but in no list until they settle
    std::optional<int> m_lastReturnFailure;
};
BOOST_DESCRIBE_STRUCT(ShelfStore::Snapshot, (), (items))

} // namespace velmo
