#include "VelmoCore/Foundation/Text.h"

#include "VelmoCore/Foundation/CodePoint.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace velmo::Text {

namespace {

void removeMarks(QString &text)
{
    QChar *out = text.data();
    const QStringView all = text;
    qsizetype length = 0;
    for (qsizetype at = 0; at < all.size(); at += length) {
        const char32_t character = codePointAt(all, at);
        length = lengthOf(character);
        if (!QChar::isMark(character))
            out = std::copy_n(all.begin() + at, length, out);
    }
    text.truncate(out - text.constData());
}

} // namespace

qsizetype characterCount(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (finder.toNextBoundary() > 0)
        ++count;
    return count;
}

QString prefix(const QString &text, qsizetype count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    while (count-- > 0 && end < text.size())
        end = finder.toNextBoundary();
    return text.first(end);
}

QString folded(const QString &text)
{
    // The time of QString::normalized grows with the square of a text's length, hence the pieces.
    // All that it orders among each other, over a piece's end as well, are marks, which go.
    constexpr qsizetype pieceLength = 64;
    QString folded;
    folded.reserve(text.size());
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = std::min(start + pieceLength, text.size());
        if (text[end - 1].isHighSurrogate())
            end = std::min(end + 1, text.size());
        folded += text.sliced(start, end - start).normalized(QString::NormalizationForm_KD);
        start = end;
    }
    removeMarks(folded);
    // QString folds one character to one; by way of upper case "ß" becomes "ss".
    return folded.toUpper().toCaseFolded();
}

} // namespace velmo::Text
