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
    QString folded = text.normalized(QString::NormalizationForm_KD);
    folded.removeIf([](QChar character) { return character.isMark(); });
    // QString folds one character to one; by way of upper case "ß" becomes "ss".
    return folded.toUpper().toCaseFolded();
}

} // namespace velmo::Text
