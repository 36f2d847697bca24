#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"

#include <QByteArray>

#include <vector>

namespace velmo::DropReader {

/// What a drop holds, as its source gave it; nothing where it gave none.
struct Contents {
    QByteArray urls;        ///< "text/uri-list"
    QByteArray mozillaURLs; ///< "text/x-moz-url", where that has none
    QString text;           ///< unless the others are long

    /// Whether reading it takes longer than the main thread has.
    bool isLong() const { return urls.size() > 16'384; }
};

/// Files first, then links, both in the order of the source and each once; if there are neither,
/// the text, as a link if it is one web address and nothing else. For any thread.
std::vector<DroppedItem> items(const Contents &contents);

} // namespace velmo::DropReader
