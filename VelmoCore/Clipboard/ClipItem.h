#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QUrl>

#include <optional>
#include <vector>

namespace velmo {

enum class ClipKind { text, link, color, image, files };
BOOST_DESCRIBE_ENUM(ClipKind, text, link, color, image, files)

namespace ClipKinds {

QString title(ClipKind kind); ///< of many: "Textos"
QString word(ClipKind kind);  ///< of one, within a sentence: "texto"
QString symbol(ClipKind kind);

} // namespace ClipKinds

/// The application that a copy came from, as far as it is known.
struct ClipSource {
    std::optional<QString> appName;
    std::optional<QString> bundleID;

    bool operator==(const ClipSource &) const = default;
};

/// One thing that the user copied. Two copies with one `signature` are one item.
struct ClipItem {
    Uuid id;
    ClipKind kind = ClipKind::text;
    std::optional<QString> text;      ///< of texts, links and colours
    std::optional<QString> imageFile; ///< a name in the store's folder of images
    std::optional<int> imageWidth;    ///< pixels
    std::optional<int> imageHeight;   ///< pixels
    std::optional<std::vector<QUrl>> fileURLs;
    std::optional<QString> sourceAppName;
    std::optional<QString> sourceBundleID;
    Date date; ///< of the last copy
    bool isPinned = false;
    bool isFavorite = false;
    std::vector<Uuid> collectionIDs;
    QString signature;

    /// Outlives the limits of count and age.
    bool isKept() const { return isPinned || isFavorite || !collectionIDs.empty(); }
    /// What a search looks at: the text or the files' names, and the application's name.
    QString searchableText() const;

    bool operator==(const ClipItem &) const = default;
};
BOOST_DESCRIBE_STRUCT(ClipItem, (),
                      (id, kind, text, imageFile, imageWidth, imageHeight, fileURLs, sourceAppName,
                       sourceBundleID, date, isPinned, isFavorite, collectionIDs, signature))

/// A named set of items, made by the user.
struct ClipCollection {
    Uuid id;
    QString name;
    Date created;

    bool operator==(const ClipCollection &) const = default;
};
BOOST_DESCRIBE_STRUCT(ClipCollection, (), (id, name, created))

/// Items from what stands on the pasteboard.
namespace ClipItems {

/// Longer texts are cut, in characters as a reader counts them.
constexpr qsizetype longestText = 100'000;
/// The limit in UTF-16 units, for texts that pile marks on few characters.
constexpr qsizetype mostUnits = 4 * longestText;

/// Nothing for a blank text. Lone surrogates, which no file keeps, are replaced.
std::optional<ClipItem> fromText(QString text, const ClipSource &source, Date now);
/// Nothing without files.
std::optional<ClipItem> fromFiles(const std::vector<QUrl> &files, const ClipSource &source,
                                  Date now);
/// An image of `width` by `height` pixels that is kept as `file`; `png` gives its signature.
ClipItem fromImage(const QString &file, const QByteArray &png, int width, int height,
                   const ClipSource &source, Date now);

} // namespace ClipItems
} // namespace velmo
