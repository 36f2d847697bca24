#include "VelmoCore/Mail/MailAddress.h"

#include <QTextBoundaryFinder>

namespace velmo {

QString MailAddress::initials() const
{
    const QString &text = display();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    QString initials;
    int pieces = 0;
    bool isInPiece = false;
    for (qsizetype start = 0, end = 0; pieces < 2 && (end = finder.toNextBoundary()) > start;
         start = end) {
        // A mark belongs to the letter before it.
        const QString character = text.sliced(start, end - start);
        const bool isPart = QChar::isLetterOrNumber(character.toUcs4().constFirst());
        if (isPart && !isInPiece) {
            initials += character.toUpper();
            ++pieces;
        }
        isInPiece = isPart;
    }
    return initials;
}

} // namespace velmo
