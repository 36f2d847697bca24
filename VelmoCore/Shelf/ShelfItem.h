#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoCore/Shelf/ShelfStorage.h"

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <variant>

namespace velmo {

/// A file on the shelf.
struct ShelfFile {
    static constexpr const char *caseName = "file";

    QString path;
    std::optional<QByteArray> bookmark; ///< of other systems; kept, never made here
    ShelfStorage storage = ShelfStorage::reference;

    bool operator==(const ShelfFile &) const = default;
};
BOOST_DESCRIBE_STRUCT(ShelfFile, (), (path, bookmark, storage))

/// One thing that the user keeps in the notch.
struct ShelfItem {
    using File = ShelfFile;
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
    struct Content {
        std::variant<File, Link, Text> value;
        bool operator==(const Content &) const = default;
    };

    Uuid id;
    Content content;
    QString name;
    std::optional<QString> group;
    Date added;
    bool isPinned = false;
    std::optional<QString> originalFolder; ///< where a moved file came from

    bool operator==(const ShelfItem &) const = default;
};
BOOST_DESCRIBE_STRUCT(ShelfItem::Link, (), (value))
BOOST_DESCRIBE_STRUCT(ShelfItem::Text, (), (value))
BOOST_DESCRIBE_STRUCT(ShelfItem::Content, (), (value))
BOOST_DESCRIBE_STRUCT(ShelfItem, (), (id, content, name, group, added, isPinned, originalFolder))

} // namespace velmo
