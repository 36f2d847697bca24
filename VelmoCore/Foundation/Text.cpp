#include "VelmoCore/Foundation/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace velmo::Text {

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
    folded.removeIf([](QChar character) { return character.isMark(); });
    // QString folds one character to one; by way of upper case "ß" becomes "ss".
    return folded.toUpper().toCaseFolded();
}

} // namespace velmo::Text
