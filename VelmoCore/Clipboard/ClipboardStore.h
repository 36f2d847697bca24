#pragma once

#include "VelmoCore/Clipboard/ClipImageWriter.h"
#include "VelmoCore/Clipboard/ClipItem.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Storage/StateFile.h"

#include <QHash>
#include <QObject>
#include <QThreadPool>

#include <functional>

namespace velmo {

/// The history of what the user copied, with pins, favourites and collections. Main thread only;
/// its files are written and removed on other threads.
class ClipboardStore : public QObject {
    Q_OBJECT

public:
    struct Snapshot {
        std::vector<ClipItem> items;
        std::vector<ClipCollection> collections;

        bool operator==(const Snapshot &) const = default;
    };

    static constexpr int defaultMaxItems = 200;
    static constexpr int defaultRetentionDays = 30;

    /// Loads "clipboard.json" of `directory` at once, or when the key comes; never fails. Without a
    /// directory nothing is kept on disk.
    ClipboardStore(const std::optional<QString> &directory, const DataFiles &files,
                   Scheduler &scheduler);
    /// Waits for what is being written. What waits for its moment isn't: that is for `flush`.
    ~ClipboardStore() override;

    /// Newest first.
    const std::vector<ClipItem> &items() const { return m_items; }
    /// Those that hold `query` in any case, pinned ones first. Nothing given means no condition.
    std::vector<ClipItem> items(const QString &query, std::optional<ClipKind> kind = std::nullopt,
                                const std::optional<Uuid> &collection = std::nullopt,
                                bool favoritesOnly = false) const;
    std::optional<ClipItem> item(const Uuid &id) const;
    const std::vector<ClipCollection> &collections() const { return m_collections; }

    const std::optional<QString> &loadIssue() const { return m_file.loadIssue(); }
    const std::optional<QString> &lastSaveError() const { return m_file.lastSaveError(); }
    void dismissIssues() { m_file.dismissIssues(); }

    /// An item of the same content rises to the front and keeps its id, pin, favourite and
    /// collections; the new one's image file is removed then.
    void add(const ClipItem &item);
    /// The user copied it back.
    void touch(const Uuid &id);
    void remove(const Uuid &id);
    void togglePin(const Uuid &id);
    void toggleFavorite(const Uuid &id);
    void toggle(const Uuid &itemID, const Uuid &collectionID);
    /// Removes all items, or those that nothing keeps. Collections stay.
    void clear(bool includingKept);

    /// Nothing for a blank name.
    std::optional<ClipCollection> createCollection(const QString &name);
    /// A blank name changes nothing.
    void renameCollection(const Uuid &id, const QString &name);
    /// Its items stay while they are young and few enough, or kept otherwise.
    void deleteCollection(const Uuid &id);

    int maxItems() const { return m_maxItems; }
    int retentionDays() const { return m_retentionDays; }
    /// How many items stay that nothing keeps, and for how many days. Below 1 counts as 1. Takes
    /// effect at the next `enforceLimits`.
    void setLimits(int maxItems, int retentionDays);
    void enforceLimits(Date now);

    std::optional<QString> imagesDirectory() const { return m_images.directory; }
    std::optional<QUrl> imageURL(const ClipItem &item) const;
    /// Reads on this thread; `imageWriter().read` may do so on any other.
    std::optional<QByteArray> imageData(const ClipItem &item) const;
    /// Gives the file's name. Throws as `ClipImageWriter::store`.
    QString storeImage(const QByteArray &data) const { return m_images.store(data); }
    const ClipImageWriter &imageWriter() const { return m_images; }
    /// Seals the images that an earlier version left in plain.
    void encryptLegacyImages();

    /// Returns when all of it is on disk.
    void flush();

Q_SIGNALS:
    void itemsChanged();
    void collectionsChanged();
    void issuesChanged();
    /// The history of earlier runs has come late. It may be beyond the limits.
    void loaded();

private:
    using Items = std::vector<ClipItem>;
    using FoldedTexts = QHash<Uuid, QString>;

    void adopt(Snapshot kept);
    /// Brings the item to the front.
    void place(const ClipItem &item);
    Items::iterator find(const Uuid &id);
    void change(const Uuid &id, const std::function<void(ClipItem &)> &change);
    void raise(Items::iterator item);
    bool dropIf(const std::function<bool(const ClipItem &)> &mustGo);
    bool dropBeyondLimits(Date now);
    void removeImage(const ClipItem &item);
    void changed();
    const QString &folded(const ClipItem &item) const;
    void foldInBackground();

    Scheduler &m_scheduler;
    StateFile<Snapshot> m_file;
    ClipImageWriter m_images;
    Items m_items;
    std::vector<ClipCollection> m_collections;
    int m_maxItems = defaultMaxItems;
    int m_retentionDays = defaultRetentionDays;
    /// What a search compares with, by item.
    mutable FoldedTexts m_folded;
    QThreadPool m_worker; ///< one thread, so that image files change in order
};
BOOST_DESCRIBE_STRUCT(ClipboardStore::Snapshot, (), (items, collections))

} // namespace velmo
