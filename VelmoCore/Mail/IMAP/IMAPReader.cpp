#include "VelmoCore/Mail/IMAP/IMAPReader.h"

#include <algorithm>

namespace velmo {

namespace {

/// The bytes that a line announces at its end, as in "{310}" or "{310+}".
std::optional<qsizetype> literalLength(QByteArrayView line)
{
    if (line.endsWith('\n'))
        line.chop(1);
    if (line.endsWith('\r'))
        line.chop(1);
    const qsizetype opening = line.lastIndexOf('{');
    if (!line.endsWith('}') || opening < 0)
        return std::nullopt;
    QByteArray count = line.sliced(opening + 1, line.size() - opening - 2).toByteArray();
    count.replace('+', "");
    if (count.isEmpty() || std::ranges::any_of(count, [](char c) { return c < '0' || c > '9'; }))
        return std::nullopt;
    bool fits = false;
    const qlonglong length = count.toLongLong(&fits);
    return fits ? length : IMAPReader::longestResponse + 1;
}

} // namespace

std::optional<QByteArray> IMAPReader::next()
{
    while (m_searched <= m_buffer.size()) {
        const qsizetype lineFeed = m_buffer.indexOf('\n', m_searched);
        const qsizetype end = lineFeed < 0 ? m_buffer.size() : lineFeed + 1;
        if (end - m_line > longestLine)
            throw TooLong(QStringLiteral("a linha é longa demais"));
        if (lineFeed < 0) {
            m_searched = end;
            return std::nullopt;
        }
        const auto literal = literalLength(QByteArrayView(m_buffer).sliced(m_line, end - m_line));
        if (!literal) {
            QByteArray response = m_buffer.first(end);
            m_buffer.remove(0, end);
            m_line = m_searched = 0;
            if (m_buffer.isEmpty())
                m_buffer.clear(); // with the space that a longer one took
            return response;
        }
        if (*literal > longestResponse - end)
            throw TooLong(QStringLiteral("a resposta é longa demais"));
        m_line = m_searched = end + *literal;
    }
    return std::nullopt; // within a literal
}

} // namespace velmo
