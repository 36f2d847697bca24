#include "VelmoUI/Modules/Clipboard/ClipRow.h"

#include "VelmoCore/Clipboard/ClipboardClassifier.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoUI/Design/ThumbnailProvider.h"
#include "VelmoUI/Modules/Clipboard/ClipImageProvider.h"

#include <QColor>
#include <QStringList>

namespace velmo {

namespace {

/// As much of a text as a tile can show, and as much as a line can.
constexpr qsizetype longestText = 320;
constexpr qsizetype longestLine = 80;
constexpr std::size_t mostNames = 8;

QString begin(const ClipItem &item)
{
    const QString text = item.text.value_or(QString());
    return QStringView(text).trimmed().left(longestText).toString();
}

void describeLink(ClipRow &row, const ClipItem &item)
{
    const QUrl url(item.text.value_or(QString()).trimmed());
    row.title = url.host();
    if (row.title.startsWith(u"www."))
        row.title.remove(0, 4);
    row.text = url.toDisplayString(QUrl::RemoveScheme | QUrl::RemoveAuthority).left(longestText);
    if (row.text == u"/")
        row.text.clear();
}

void describeColor(ClipRow &row, const ClipItem &item)
{
    row.title = begin(item);
    if (const auto color = ClipboardClassifier::hexColor(row.title))
        row.swatch = QColor::fromRgbF(float(color->red), float(color->green), float(color->blue),
                                      float(color->alpha))
                         .name(QColor::HexArgb);
}

void describeImage(ClipRow &row, const ClipItem &item)
{
    if (item.imageWidth && item.imageHeight)
        row.title = QStringLiteral("%1 × %2").arg(*item.imageWidth).arg(*item.imageHeight);
    if (item.imageFile)
        row.picture = ClipImageProvider::urlFor(*item.imageFile);
}

void describeFiles(ClipRow &row, const ClipItem &item)
{
    const auto files = item.fileURLs.value_or(std::vector<QUrl>());
    if (files.empty())
        return;
    row.picture = ThumbnailProvider::urlFor(files.front().toLocalFile());
    row.title = files.size() == 1 ? FileNaming::nameOf(files.front())
                                  : QStringLiteral("%1 arquivos").arg(Words::number(files.size()));
    QStringList names;
    for (std::size_t i = 0; files.size() > 1 && i < std::min(files.size(), mostNames); ++i)
        names.append(FileNaming::nameOf(files[i]));
    row.text = names.join(QStringLiteral(", "));
}

QString spoken(const ClipRow &row, ClipKind kind)
{
    QStringList parts{row.title, ClipKinds::word(kind), (row.origin + u' ' + row.age).trimmed()};
    if (row.isPinned)
        parts.append(QStringLiteral("fixado"));
    if (row.isFavorite)
        parts.append(QStringLiteral("favorito"));
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

} // namespace

ClipRow ClipRows::make(const ClipItem &item, Date now)
{
    ClipRow row{.id = uuidText(item.id),
                .isLink = item.kind == ClipKind::link,
                .isImage = item.kind == ClipKind::image,
                .isPinned = item.isPinned,
                .isFavorite = item.isFavorite,
                .isCollected = !item.collectionIDs.empty()};
    switch (item.kind) {
    case ClipKind::text:
        row.text = begin(item);
        row.title = row.text.simplified().left(longestLine);
        break;
    case ClipKind::link:
        describeLink(row, item);
        break;
    case ClipKind::color:
        describeColor(row, item);
        break;
    case ClipKind::image:
        describeImage(row, item);
        break;
    case ClipKind::files:
        describeFiles(row, item);
        break;
    }
    row.origin = item.sourceAppName.value_or(QString());
    const QString age = Words::age(item.date, now);
    row.age = row.origin.isEmpty() ? age : QStringLiteral("· %1").arg(age);
    row.spoken = velmo::spoken(row, item.kind);
    return row;
}

} // namespace velmo
