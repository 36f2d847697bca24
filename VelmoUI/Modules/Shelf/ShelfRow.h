#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoCore/Shelf/ShelfItem.h"

#include <boost/describe.hpp>

namespace velmo {

/// An item of the shelf as a tile shows it.
struct ShelfRow {
    QString id;
    QString symbol; ///< of a link or a text; empty for a file, which has a picture
    QString title;
    QString text;    ///< how a text begins, else empty
    QString picture; ///< where the image of a file comes from, else empty
    bool isPinned = false;
    bool isSelected = false;
    QString spoken; ///< for screen readers

    bool operator==(const ShelfRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(ShelfRow, (),
                      (id, symbol, title, text, picture, isPinned, isSelected, spoken))

namespace ShelfRows {

/// Asks the file system nothing: a shelf may have thousands.
ShelfRow make(const ShelfItem &item, bool isSelected = false);

/// "Documento PDF · 1,2 MB", "Arquivo não encontrado", a link's address or the length of a text.
QString detail(const ShelfItem &item);

/// The same in a word or two: "1,2 MB", "Pasta", "Não encontrado".
QString briefDetail(const ShelfItem &item);

/// "2 itens a caminho"; empty for none.
QString arriving(int count);

/// What actions work on and applications are given.
DroppedItem dropped(const ShelfItem &item);

} // namespace ShelfRows
} // namespace velmo
