#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QUrl>

#include <variant>
#include <vector>

namespace velmo {

/// One thing in a list that several machines share.
struct ContinuityItem {
    struct Link {
        static constexpr const char *caseName = "link";
        QUrl value;
        bool operator==(const Link &) const = default;
    };
    struct Text {
        static constexpr const char *caseName = "text";
        QString value;
        bool operator==(const Text &) const = default;
    };
    struct File {
        static constexpr const char *caseName = "file";
        QString name;
        qint64 byteCount = 0;
        QString uti;
        bool operator==(const File &) const = default;
    };
    struct Kind {
        std::variant<Link, Text, File> value;
        bool operator==(const Kind &) const = default;
    };

    Uuid id;
    Kind kind;
    QString origin;
    Date created;
    Date modified;
    bool isPinned = false;
    bool isDeleted = false; ///< stays as a tombstone, so that the deletion can travel

    qint64 byteCount() const;

    bool operator==(const ContinuityItem &) const = default;
};
BOOST_DESCRIBE_STRUCT(ContinuityItem::Link, (), (value))
BOOST_DESCRIBE_STRUCT(ContinuityItem::Text, (), (value))
BOOST_DESCRIBE_STRUCT(ContinuityItem::File, (), (name, byteCount, uti))
BOOST_DESCRIBE_STRUCT(ContinuityItem::Kind, (), (value))
BOOST_DESCRIBE_STRUCT(ContinuityItem, (),
                      (id, kind, origin, created, modified, isPinned, isDeleted))

/// The shared list: the last writer of an item wins, a deletion wins a tie.
struct ContinuityLedger {
    std::vector<ContinuityItem> items;
    qint64 storageLimit = 0; ///< bytes

    /// What isn't deleted, newest change first.
    std::vector<ContinuityItem> visible() const;
    qint64 usedBytes() const;

    void merge(const std::vector<ContinuityItem> &incoming, Date now);
    void add(const ContinuityItem &item, Date now);
    void remove(const Uuid &id, Date date);
    /// Deletes the oldest unpinned items until the limit holds or none is left.
    void enforceLimit(Date now);

    bool operator==(const ContinuityLedger &) const = default;
};
BOOST_DESCRIBE_STRUCT(ContinuityLedger, (), (items, storageLimit))

/// How the shared list fares.
struct ContinuityStatus {
    struct Unavailable {
        QString reason;
        bool operator==(const Unavailable &) const = default;
    };
    struct UpToDate {
        Date date;
        bool operator==(const UpToDate &) const = default;
    };
    struct Failed {
        QString message;
        bool operator==(const Failed &) const = default;
    };
    struct Off {
        bool operator==(const Off &) const = default;
    };
    struct Syncing {
        bool operator==(const Syncing &) const = default;
    };
    std::variant<Unavailable, UpToDate, Failed, Off, Syncing> value = Off{};
    bool operator==(const ContinuityStatus &) const = default;
};

} // namespace velmo
