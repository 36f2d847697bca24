#include "VelmoCore/Clipboard/ClipItem.h"

#include "VelmoCore/Clipboard/ClipboardClassifier.h"
#include "VelmoCore/Foundation/Text.h"

#include <QCryptographicHash>
#include <QStringList>

#include <array>

namespace velmo {

namespace {

struct Looks {
    QStringView title;
    QStringView word;
    QStringView symbol;
};

constexpr std::array looks{
    Looks{u"Textos", u"texto", u"text.alignleft"}, Looks{u"Links", u"link", u"link"},
    Looks{u"Cores", u"cor", u"paintpalette"}, Looks{u"Imagens", u"imagem", u"photo"},
    Looks{u"Arquivos", u"arquivo", u"doc"}};

const Looks &looksOf(ClipKind kind)
{
    return looks.at(static_cast<std::size_t>(kind));
}

QString sha256(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

ClipItem item(ClipKind kind, const QString &signature, const ClipSource &source, Date now)
{
    return {.id = makeUuid(),
            .kind = kind,
            .sourceAppName = source.appName,
            .sourceBundleID = source.bundleID,
            .date = now,
            .signature = signature};
}

QString shortened(const QString &text)
{
    if (text.size() <= ClipItems::longestText)
        return text;
    QString bounded = text.first(std::min(text.size(), ClipItems::mostUnits));
    if (bounded.back().isHighSurrogate())
        bounded.chop(1);
    return Text::prefix(bounded, ClipItems::longestText);
}

} // namespace

QString ClipKinds::title(ClipKind kind)
{
    return looksOf(kind).title.toString();
}

QString ClipKinds::word(ClipKind kind)
{
    return looksOf(kind).word.toString();
}

QString ClipKinds::symbol(ClipKind kind)
{
    return looksOf(kind).symbol.toString();
}

QString ClipItem::searchableText() const
{
    QStringList words;
    if (text)
        words.append(*text);
    else if (fileURLs) {
        for (const QUrl &url : *fileURLs)
            words.append(url.fileName());
    }
    if (sourceAppName)
        words.append(*sourceAppName);
    return words.join(u' ');
}

std::optional<ClipItem> ClipItems::fromText(QString text, const ClipSource &source, Date now)
{
    text = shortened(text);
    if (!text.isValidUtf16())
        text = QString::fromUtf8(text.toUtf8());
    if (QStringView(text).trimmed().isEmpty())
        return std::nullopt;
    ClipItem made = item(ClipboardClassifier::kind(text),
                         QStringLiteral("t:") + sha256(text.toUtf8()), source, now);
    made.text = std::move(text);
    return made;
}

std::optional<ClipItem> ClipItems::fromFiles(const std::vector<QUrl> &files,
                                             const ClipSource &source, Date now)
{
    if (files.empty())
        return std::nullopt;
    QStringList paths;
    for (const QUrl &file : files)
        paths.append(file.toLocalFile());
    ClipItem made = item(ClipKind::files, QStringLiteral("f:") + paths.join(u'|'), source, now);
    made.fileURLs = files;
    return made;
}

ClipItem ClipItems::fromImage(const QString &file, const QByteArray &png, int width, int height,
                              const ClipSource &source, Date now)
{
    ClipItem made = item(ClipKind::image, QStringLiteral("i:") + sha256(png), source, now);
    made.imageFile = file;
    made.imageWidth = width;
    made.imageHeight = height;
    return made;
}

} // namespace velmo
