#include "VelmoCore/Files/PageRanges.h"

#include <QStringList>

#include <algorithm>
#include <optional>

namespace velmo::PageRanges {

namespace {

ParseError invalid(const QString &part)
{
    return ParseError(ParseError::Invalid{part});
}

int number(const QString &piece, const QString &part)
{
    bool isNumber = false;
    const int value = piece.toInt(&isNumber);
    if (!isNumber || piece.startsWith(u'+'))
        throw invalid(part);
    return value;
}

struct Range {
    int first = 1;
    int last = 1;
};

Range parsePart(const QString &part, int pageCount)
{
    QStringList pieces = part.split(u'-');
    for (QString &piece : pieces)
        piece = piece.trimmed();
    if (pieces.size() == 1) {
        const int page = number(pieces[0], part);
        return {page, page};
    }
    if (pieces.size() != 2)
        throw invalid(part);
    const Range range{pieces[0].isEmpty() ? 1 : number(pieces[0], part),
                      pieces[1].isEmpty() ? pageCount : number(pieces[1], part)};
    if (range.last < range.first)
        throw invalid(part);
    return range;
}

} // namespace

ParseError::ParseError(const Value &value)
    : LocalizedError(QStringLiteral("Intervalo inválido")), m_value(value)
{
}

std::vector<int> parse(const QString &text, int pageCount)
{
    std::vector<int> indexes;
    std::vector<bool> isTaken(std::size_t(std::max(pageCount, 0)));
    for (const QString &each : text.split(u',')) {
        const QString part = each.trimmed();
        if (part.isEmpty())
            continue;
        const Range range = parsePart(part, pageCount);
        if (range.first < 1 || range.first > pageCount)
            throw ParseError(ParseError::OutOfBounds{range.first});
        if (range.last > pageCount)
            throw ParseError(ParseError::OutOfBounds{pageCount + 1});
        for (int page = range.first; page <= range.last; ++page) {
            if (!isTaken[std::size_t(page - 1)])
                indexes.push_back(page - 1);
            isTaken[std::size_t(page - 1)] = true;
        }
    }
    if (indexes.empty())
        throw invalid(text);
    return indexes;
}

} // namespace velmo::PageRanges
