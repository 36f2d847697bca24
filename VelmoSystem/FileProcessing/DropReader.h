#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"

#include <QByteArray>

#include <vector>

class QMimeData;

namespace velmo::DropReader {

/// What a drop holds, as its source gave it.
struct Contents {
    QByteArray urls;        ///< "text/uri-list"
    QByteArray mozillaURLs; ///< "text/x-moz-url", where that has none
    QString text;

    /// Whether reading it takes longer than the main thread has.
    bool isLong() const { return urls.size() > 16'384; }
};

Contents read(const QMimeData &data);

/// Files first, then links, both in the order of the source and each once; if there are neither,
/// the text, as a link if it is one web address and nothing else. For any thread.
std::vector<DroppedItem> items(const Contents &contents);

} // namespace velmo::DropReader
