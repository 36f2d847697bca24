#pragma once

#include "VelmoCore/Shelf/ShelfItem.h"
#include "VelmoCore/Storage/StateFile.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <optional>
#include <thread>
#include <vector>

namespace velmo {

/// What the user keeps in the notch, and the folder "No Notch" with the files that were moved in.
/// Saves at once, on another thread, and again after a while where that fails. A file comes in only
/// when its record is on disk. Main thread only.
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
    /// Hears on the main thread that a record is on disk, or why it can't be.
    using Recorded = StateSaving::Done;
    /// The end of a transfer: the item's file stands at `place` in our folder, or not there.
    struct TransferEnd {
        Uuid item;
        std::optional<QUrl> place;
    };
    /// How many moved files `removeAtOnce` takes home itself.
    static constexpr std::size_t mostAtOnce = 16;
    /// How long after a failed save the next one is tried.
    static constexpr Seconds retryDelay = 30s;
    /// A file that is to leave the shelf's folder.
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
    /// Throw `FileError`, and what keeps the record from being saved; then no item is made and the
    /// file stands where it was. They take as long as a copy does where the file is on another file
    /// system: what may be long goes by `recordArrivals`, a job and `completeTransfers`.
    QUrl moveIn(const QUrl &url, const std::optional<QString> &group = std::nullopt);
    QUrl copyIn(const QUrl &url);
    /// Records that these, made by `ShelfArrivals`, are on their way into our folder. They join
    /// `items` when they have arrived; if Orvane ends before, those that have come are listed at
    /// the next start and the others forgotten. What can't be recorded doesn't come.
    void recordArrivals(std::vector<ShelfItem> arrivals, Recorded recorded);
    /// How many files are on their way in.
    int arrivingCount() const;
    /// Ends transfers by `recordArrivals`, `removeAtOnce` or `depart`.
    void completeTransfers(const std::vector<TransferEnd> &ends);
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
    /// Does what `remove` does as far as it takes no time. What it gives has left `items`, but not
    /// its place: a job moves it, and then it has to `completeTransfers`.
    std::vector<Departure> removeAtOnce(const IDs &ids);
    /// The same for moved files, none of which it takes home itself.
    std::vector<Departure> depart(const IDs &ids);
    /// Reports to the user that so many moved files could not go back.
    void reportReturnFailures(int count);
    /// Removes what is older, but nothing pinned and no moved file. Gives how many.
    int autoClean(int olderThanDays, Date now);
    void forgetMissingFiles();
    /// The same, but for what has gone away from the main thread.
    void lookForMissingFiles();
    int removeDuplicateFiles();
    /// Moves files of earlier versions into `notchFolder`. Gives how many. Without the records of
    /// where they came from none.
    int migrateIntoNotchFolder();
    /// Saves at once, and returns when all of it is on disk.
    void flush() { m_file.flush(); }

    /// Throws `FileError`; the desktop's trash unless replaced.
    std::function<void(const QUrl &)> trash;

Q_SIGNALS:
    void itemsChanged();
    void issuesChanged();
    /// The items of earlier runs have come late.
    void loaded();

private:
    struct Underway {
        ShelfItem item;
        bool isArriving;
    };
    struct Removal {
        std::vector<Departure> distant;
        int failures = 0;
    };

    QSet<QString> listedPaths() const;
    QUrl bringIn(const QUrl &url, ShelfStorage storage, const std::optional<QString> &group);
    void insert(ShelfItem item);
    std::optional<QString> inDirectory(const QString &name) const;
    Snapshot snapshot() const;
    void changed();
    void save();
    /// Whether it is a file of ours, so that without the file there is nothing to keep.
    static bool isOurs(const ShelfItem &item);
    void forgetFound(const QSet<QString> &missing);
    void forget(const std::function<bool(const QString &path)> &isGone);
    Removal beginRemoval(const IDs &ids, std::size_t mostMoves);
    void deleteManagedCopy(const ShelfItem &item);
    std::optional<Departure> returnMovedFile(const ShelfItem &item, const QString &folder,
                                             bool mayMove) const;
    void removeEmptyCopyFolder(const ShelfItem &item) const;

    Places m_places;
    Scheduler &m_scheduler;
    StateFile<Snapshot> m_file;
    std::vector<ShelfItem> m_items;
    std::vector<Underway> m_underway; ///< recorded, but in no list until they have arrived
    std::optional<int> m_lastReturnFailure;
    ScheduledTask m_retry;
    bool m_isLooking = false; ///< for missing files
    bool m_looksAgain = false;
    std::jthread m_looking;
};
BOOST_DESCRIBE_STRUCT(ShelfStore::Snapshot, (), (items))

} // namespace velmo
