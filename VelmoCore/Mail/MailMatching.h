#pragma once

#include "VelmoCore/Foundation/CodePoint.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

/// What the matchers of HTML are made of. Each is one fixed regular expression without its
/// backtracking, so that hostile text is read once as well.
namespace velmo::MailParser {

/// The letter in lower case. Two letters beyond ASCII are those of an element's name in any case.
inline char16_t lowered(QChar c)
{
    constexpr char16_t longS = 0x017f;
    constexpr char16_t kelvin = 0x212a;
    const char16_t unit = c.unicode();
    if (unit < 0x80)
        return unit >= u'A' && unit <= u'Z' ? char16_t(unit | 0x20) : unit;
    return unit == longS ? u's' : unit == kelvin ? u'k' : unit;
}

inline bool hasName(QStringView text, qsizetype at, QStringView name)
{
    if (text.size() - at < name.size())
        return false;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (lowered(text[at + i]) != name[i])
            return false;
    }
    return true;
}

/// Whether no letter, number or "_" comes next.
inline bool isWordEnd(QStringView text, qsizetype at)
{
    const char32_t c = codePointAt(text, at);
    return c != u'_' && !QChar::isLetterOrNumber(c);
}

inline qsizetype skipSpace(QStringView text, qsizetype at)
{
    while (at < text.size() && text[at].isSpace())
        ++at;
    return at;
}

inline bool isAt(QStringView text, qsizetype at, char16_t c)
{
    return at < text.size() && text[at] == c;
}

/// The end of `</name\s*>` at this place, or -1.
inline qsizetype closingTagEnd(QStringView text, qsizetype at, QStringView name)
{
    if (!isAt(text, at, u'<') || !isAt(text, at + 1, u'/') || !hasName(text, at + 2, name))
        return -1;
    const qsizetype end = skipSpace(text, at + 2 + name.size());
    return isAt(text, end, u'>') ? end + 1 : -1;
}

struct Range {
    qsizetype start;
    qsizetype end;
};

/// Where something comes next, asked from ever later places: what was found holds until it is
/// passed, so that each place is read once.
class Ahead {
public:
    using Find = std::function<std::optional<Range>(qsizetype place)>;

    explicit Ahead(Find find) : m_find(std::move(find)) {}

    /// Absent if it doesn't come any more.
    const std::optional<Range> &from(qsizetype place)
    {
        if (!m_isAsked || (m_next && m_next->start < place))
            m_next = m_find(place);
        m_isAsked = true;
        return m_next;
    }

private:
    Find m_find;
    std::optional<Range> m_next;
    bool m_isAsked = false;
};

inline Ahead aheadOf(QStringView text, QStringView wanted)
{
    return Ahead([text, wanted](qsizetype place) -> std::optional<Range> {
        const qsizetype start = text.indexOf(wanted, place);
        return start < 0 ? std::nullopt : std::optional(Range{start, start + wanted.size()});
    });
}

inline Ahead aheadOfClosingTag(QStringView text, QStringView name)
{
    return Ahead([text, name](qsizetype place) -> std::optional<Range> {
        for (qsizetype start = text.indexOf(u'<', place); start >= 0;
             start = text.indexOf(u'<', start + 1)) {
            const qsizetype end = closingTagEnd(text, start, name);
            if (end >= 0)
                return Range{start, end};
        }
        return std::nullopt;
    });
}

/// Copies a text with other texts, none of them longer, in the place of its matches.
class Rewriting {
public:
    explicit Rewriting(QStringView text)
        : m_text(text), m_result(text.size(), Qt::Uninitialized), m_out(m_result.begin())
    {
    }

    /// The match is behind the last one.
    void replace(Range match, QStringView replacement)
    {
        m_out = std::copy(m_text.begin() + m_copied, m_text.begin() + match.start, m_out);
        m_out = std::copy(replacement.begin(), replacement.end(), m_out);
        m_copied = match.end;
    }

    /// With what stands behind the last match.
    QString finish()
    {
        m_out = std::copy(m_text.begin() + m_copied, m_text.end(), m_out);
        m_result.truncate(m_out - m_result.cbegin());
        return std::move(m_result);
    }

private:
    QStringView m_text;
    QString m_result;
    QString::iterator m_out;
    qsizetype m_copied = 0;
};

} // namespace velmo::MailParser
