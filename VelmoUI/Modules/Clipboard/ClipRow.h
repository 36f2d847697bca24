#pragma once

#include "VelmoCore/Clipboard/ClipItem.h"

#include <boost/describe.hpp>

namespace velmo {

/// An item of the clipboard's history as a tile shows it.
struct ClipRow {
    QString id;
    QString title; ///< a link's host, a colour, an image's size, a file's name; a text in one line
    QString text;  ///< how a text begins, the rest of an address, the names of several files
    QString picture; ///< where an image or a file's picture comes from, else empty
    QString swatch;  ///< a colour as QML reads it, else empty
    bool isLink = false;
    bool isImage = false;
    QString origin; ///< the application, empty if it isn't known
    QString age;    ///< "5 min", "· 5 min" after an application
    bool isPinned = false;
    bool isFavorite = false;
    bool isCollected = false;
    QString spoken; ///< for screen readers

    bool operator==(const ClipRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(ClipRow, (),
                      (id, title, text, picture, swatch, isLink, isImage, origin, age, isPinned,
                       isFavorite, isCollected, spoken))

namespace ClipRows {

/// Asks the file system nothing.
ClipRow make(const ClipItem &item, Date now);

} // namespace ClipRows
} // namespace velmo
