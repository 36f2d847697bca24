#pragma once

#include "VelmoCore/Foundation/CodePoint.h"

#include <QString>

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

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

/// Where `matches` gives true for a character and the one behind it, or -1: it is asked for eight
/// places at once, and for those at the text's end, where U+0000 is behind the last, one by one.
template <typename Matches>
qsizetype findWhere(QStringView text, qsizetype from, Matches matches)
{
    static_assert(std::endian::native == std::endian::little); // a block's first unit is lowest
    using Block = std::uint16_t __attribute__((vector_size(16)));
    using Halves = std::uint64_t __attribute__((vector_size(16)));
    constexpr qsizetype blockLength = 8;
    const char16_t *units = text.utf16();
    for (; from + blockLength < text.size(); from += blockLength) {
        Block block;
        Block behind;
        std::memcpy(&block, units + from, sizeof(block));
        std::memcpy(&behind, units + from + 1, sizeof(behind));
        const auto hits = std::bit_cast<Halves>(matches(block, behind));
        if (hits[0] != 0)
            return from + std::countr_zero(hits[0]) / 16;
        if (hits[1] != 0)
            return from + blockLength / 2 + std::countr_zero(hits[1]) / 16;
    }
    for (; from < text.size(); ++from) {
        const char16_t behind = from + 1 < text.size() ? units[from + 1] : u'\0';
        if (matches(std::uint16_t(units[from]), std::uint16_t(behind)))
            return from;
    }
    return -1;
}

/// Where one of the characters comes next, or -1. Quicker than Qt's search where it is never far.
template <std::same_as<char16_t>... Characters>
qsizetype find(QStringView text, qsizetype from, Characters... wanted)
{
    return findWhere(text, from,
                     [=](auto unit, auto) { return ((unit == std::uint16_t(wanted)) | ...); });
}

/// Where a "<" with one of the letters behind it, in either case, comes next, or -1.
template <std::same_as<char16_t>... Letters>
qsizetype findTag(QStringView text, qsizetype from, Letters... letters)
{
    return findWhere(text, from, [=](auto unit, auto behind) {
        constexpr std::uint16_t caseBit = 0x20;
        return (unit == std::uint16_t(u'<')) &
               (((behind | caseBit) == std::uint16_t(letters)) | ...);
    });
}

struct Range {
    qsizetype start;
    qsizetype end;
};

/// Where something comes next, asked from ever later places: what was found holds until it is
/// passed, so that each place is read once.
template <typename Find>
class Ahead {
public:
    explicit Ahead(Find find) : m_find(find) {}

    /// Absent if it doesn't come any more.
    const auto &from(qsizetype place)
    {
        if (!m_isAsked || (m_next && m_next->start < place))
            m_next = m_find(place);
        m_isAsked = true;
        return m_next;
    }

private:
    Find m_find;
    std::invoke_result_t<Find, qsizetype> m_next;
    bool m_isAsked = false;
};

inline auto aheadOfTagEnd(QStringView text)
{
    return Ahead([text](qsizetype place) -> std::optional<Range> {
        const qsizetype start = find(text, place, u'>');
        return start < 0 ? std::nullopt : std::optional(Range{start, start + 1});
    });
}

inline auto aheadOfClosingTag(QStringView text, QStringView name)
{
    return Ahead([text, name](qsizetype place) -> std::optional<Range> {
        for (qsizetype start = find(text, place, u'<'); start >= 0;
             start = find(text, start + 1, u'<')) {
            const qsizetype end = closingTagEnd(text, start, name);
            if (end >= 0)
                return Range{start, end};
        }
        return std::nullopt;
    });
}

/// Writes what is left of a text over the text itself, never ahead of what is still to be read.
class Rewriting {
public:
    explicit Rewriting(QString &text) : m_text(text), m_out(text.data()), m_kept(m_out) {}

    /// Puts `replacement`, which isn't longer, in the place of a match.
    void replace(qsizetype start, qsizetype end, QStringView replacement)
    {
        keep(m_text.constData() + start);
        m_out = std::copy(replacement.begin(), replacement.end(), m_out);
        m_kept = m_text.constData() + end;
    }

    void finish()
    {
        keep(m_text.cend());
        m_text.truncate(m_out - m_text.constData());
    }

private:
    void keep(const QChar *end)
    {
        m_out = m_out == m_kept ? m_out + (end - m_kept) : std::copy(m_kept, end, m_out);
    }

    QString &m_text;
    QChar *m_out;
    const QChar *m_kept;
};

} // namespace velmo::MailParser
