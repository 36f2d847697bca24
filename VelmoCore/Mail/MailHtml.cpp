#include "VelmoCore/Mail/MailMatching.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <algorithm>
#include <array>

namespace velmo::MailParser {

namespace {

auto aheadOf(QStringView text, QStringView wanted)
{
    return Ahead([text, wanted](qsizetype place) -> std::optional<Range> {
        const qsizetype start = text.indexOf(wanted, place);
        return start < 0 ? std::nullopt : std::optional(Range{start, start + wanted.size()});
    });
}

/// Replaces each match. `endOfMatch` gives the end of the match at a "<", or -1.
template <typename EndOfMatch>
void replaceTags(QString &text, QStringView replacement, EndOfMatch endOfMatch)
{
    Rewriting rewriting(text);
    qsizetype next = 0;
    const auto findNext = [&] { return findTag(text, next, u'!', u'h', u's', u't', u'\u017f'); };
    for (qsizetype tag = findNext(); tag >= 0; tag = findNext()) {
        const qsizetype end = endOfMatch(tag);
        next = end < 0 ? tag + 1 : end;
        if (end >= 0)
            rewriting.replace(tag, end, replacement);
    }
    rewriting.finish();
}

/// Takes out <(head|style|script|title)\b[^>]*>.*?</\1\s*>|<!--.*?-->
void removeHidden(QString &text)
{
    const QStringView html = text;
    auto commentEnd = aheadOf(html, u"-->");
    auto tagEnd = aheadOfTagEnd(html);
    constexpr std::array<QStringView, 4> names = {u"head", u"style", u"script", u"title"};
    std::array closings = {aheadOfClosingTag(html, names[0]), aheadOfClosingTag(html, names[1]),
                           aheadOfClosingTag(html, names[2]), aheadOfClosingTag(html, names[3])};
    replaceTags(text, u" ", [&](qsizetype tag) -> qsizetype {
        if (hasName(html, tag + 1, u"!--")) {
            const auto &end = commentEnd.from(tag + 4);
            return end ? end->end : -1;
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            const qsizetype nameEnd = tag + 1 + names[i].size();
            if (!hasName(html, tag + 1, names[i]) || !isWordEnd(html, nameEnd))
                continue;
            const auto &opened = tagEnd.from(nameEnd);
            const auto &closed = opened ? closings[i].from(opened->end) : std::nullopt;
            return closed ? closed->end : -1;
        }
        return -1;
    });
}

/// The end of </(p|div|tr|li|h[1-6]|table|blockquote)\s*> at this place, or -1.
qsizetype blockEnd(QStringView html, qsizetype tag)
{
    constexpr std::array<QStringView, 12> blocks = {u"p",     u"div", u"tr", u"li",
                                                    u"table", u"h1",  u"h2", u"h3",
                                                    u"h4",    u"h5",  u"h6", u"blockquote"};
    constexpr qsizetype longestName = 10;
    const QStringView rest = html.sliced(tag + 2);
    qsizetype length = 0;
    while (length < rest.size() && length <= longestName && rest[length] != u'>' &&
           !rest[length].isSpace())
        ++length;
    for (const QStringView block : blocks) {
        if (block.size() == length && hasName(rest, 0, block))
            return closingTagEnd(html, tag, block);
    }
    return -1;
}

/// The end of <br\s*/?> or of the end of a block at this place, or -1.
qsizetype lineBreakEnd(QStringView html, qsizetype tag)
{
    if (isAt(html, tag + 1, u'/'))
        return blockEnd(html, tag);
    if (!hasName(html, tag + 1, u"br"))
        return -1;
    qsizetype end = skipSpace(html, tag + 3);
    end += isAt(html, end, u'/') ? 1 : 0;
    return isAt(html, end, u'>') ? end + 1 : -1;
}

/// Where the next ">" outside line breaks is, or -1.
qsizetype tagEndAmongBreaks(QStringView html, qsizetype from)
{
    qsizetype at = find(html, from, u'<', u'>');
    while (at >= 0 && html[at] == u'<') {
        const qsizetype breakEnd = lineBreakEnd(html, at);
        at = find(html, breakEnd < 0 ? at + 1 : breakEnd, u'<', u'>');
    }
    return at;
}

/// Breaks lines where HTML does, then takes out <[^>]+>
void removeTags(QString &text)
{
    const QStringView html = text;
    Ahead tagEnd([html](qsizetype place) -> std::optional<Range> {
        const qsizetype start = tagEndAmongBreaks(html, place);
        return start < 0 ? std::nullopt : std::optional(Range{start, start + 1});
    });
    Rewriting rewriting(text);
    qsizetype next = 0;
    for (qsizetype tag = find(html, 0, u'<'); tag >= 0; tag = find(html, next, u'<')) {
        const qsizetype breakEnd = lineBreakEnd(html, tag);
        const auto &end = breakEnd < 0 ? tagEnd.from(tag + 1) : std::nullopt;
        next = tag + 1;
        if (breakEnd >= 0)
            rewriting.replace(tag, next = breakEnd, u"\n");
        else if (end && end->start > tag + 1)
            rewriting.replace(tag, next = end->end, u" ");
    }
    rewriting.finish();
}

bool isInvisible(QChar c)
{
    switch (c.unicode()) {
    case 0x00ad: // soft hyphen
    case 0x034f: // combining grapheme joiner
    case 0x200b: // zero width space
    case 0x200c: // zero width non-joiner
    case 0x200d: // zero width joiner
    case 0xfeff: // zero width no-break space
        return true;
    default:
        return false;
    }
}

/// Visible, as far as one look tells.
bool isPlain(QChar c)
{
    constexpr char16_t softHyphen = 0x00ad;
    constexpr char16_t firstMark = 0x0300;
    return c > u' ' && c < firstMark && c != softHyphen;
}

/// The end of the words from here on that stand one space apart.
const QChar *endOfWords(const QChar *at, const QChar *end)
{
    while (at != end && (isPlain(*at) || (*at == u' ' && at + 1 != end && isPlain(at[1]))))
        ++at;
    return at;
}

/// Takes out invisible characters and empty lines, and puts words one space apart. A line ends
/// with LF or CR LF.
void tidy(QString &text)
{
    QChar *const begin = text.data();
    const QChar *const end = begin + text.size();
    QChar *out = begin;
    QChar separator;
    const auto write = [&](const QChar *from, const QChar *to) {
        if (!separator.isNull() && out != begin)
            *out++ = separator;
        separator = QChar();
        out = std::copy(from, to, out);
    };
    for (const QChar *in = begin; in != end;) {
        const QChar *start = in;
        const QChar c = *in++;
        if (isPlain(c)) {
            in = endOfWords(in, end);
            write(start, in);
        } else if (c == u'\n' || (separator.isNull() && (c == u' ' || c == u'\t'))) {
            separator = c == u'\n' ? c : QChar(u' ');
        } else if (c == u'\r') {
            const QChar *next = std::find_if_not(in, end, isInvisible);
            if (next == end || *next != u'\n')
                write(start, in);
        } else if (c != u' ' && c != u'\t' && !isInvisible(c)) {
            write(start, in);
        }
    }
    text.truncate(out - begin);
}

} // namespace

QString htmlToText(QString html)
{
    html.detach(); // every step looks ahead in the text that it writes over
    removeHidden(html);
    removeTags(html);
    resolveEntities(html);
    tidy(html);
    return html;
}

} // namespace velmo::MailParser
