#include "VelmoCore/Mail/MailMatching.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <algorithm>
#include <array>

namespace velmo::MailParser {

namespace {

/// Puts a space in the place of each <(head|style|script|title)\b[^>]*>.*?</\1\s*>|<!--.*?-->
QString withoutHidden(QStringView html)
{
    Ahead commentEnd = aheadOf(html, u"-->");
    Ahead tagEnd = aheadOf(html, u">");
    constexpr std::array<QStringView, 4> names = {u"head", u"style", u"script", u"title"};
    std::array closings = {aheadOfClosingTag(html, names[0]), aheadOfClosingTag(html, names[1]),
                           aheadOfClosingTag(html, names[2]), aheadOfClosingTag(html, names[3])};
    const auto matchAt = [&](qsizetype tag) -> std::optional<Range> {
        if (hasName(html, tag + 1, u"!--"))
            return commentEnd.from(tag + 4);
        const char16_t letter = tag + 1 < html.size() ? lowered(html[tag + 1]) : u'\0';
        for (std::size_t i = 0; i < names.size(); ++i) {
            const qsizetype nameEnd = tag + 1 + names[i].size();
            if (names[i].front() != letter || !hasName(html, tag + 1, names[i]) ||
                !isWordEnd(html, nameEnd))
                continue;
            const auto &opened = tagEnd.from(nameEnd);
            return opened ? closings[i].from(opened->end) : std::nullopt;
        }
        return std::nullopt;
    };
    Rewriting rewriting(html);
    qsizetype next = 0;
    for (qsizetype tag = html.indexOf(u'<'); tag >= 0; tag = html.indexOf(u'<', next)) {
        const auto close = matchAt(tag);
        next = close ? close->end : tag + 1;
        if (close)
            rewriting.replace({tag, next}, u" ");
    }
    return rewriting.finish();
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

/// The next ">" outside line breaks.
std::optional<Range> tagEndAmongBreaks(QStringView html, qsizetype from)
{
    for (qsizetype at = from; at < html.size();) {
        if (html[at] == u'>')
            return Range{at, at + 1};
        const qsizetype breakEnd = html[at] == u'<' ? lineBreakEnd(html, at) : -1;
        at = breakEnd < 0 ? at + 1 : breakEnd;
    }
    return std::nullopt;
}

/// Breaks lines where HTML does, and puts a space in the place of each other <[^>]+>
QString withoutTags(QStringView html)
{
    Ahead tagEnd([html](qsizetype place) { return tagEndAmongBreaks(html, place); });
    QString text(html.size(), Qt::Uninitialized);
    auto out = text.begin();
    for (qsizetype at = 0; at < html.size();) {
        const bool isTag = html[at] == u'<';
        const qsizetype breakEnd = isTag ? lineBreakEnd(html, at) : -1;
        const auto &end = isTag && breakEnd < 0 ? tagEnd.from(at + 1) : std::nullopt;
        if (breakEnd >= 0) {
            *out++ = u'\n';
            at = breakEnd;
        } else if (end && end->start > at + 1) {
            *out++ = u' ';
            at = end->end;
        } else {
            *out++ = html[at++];
        }
    }
    text.truncate(out - text.cbegin());
    return text;
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

/// One of a word's characters, as most are.
bool isPlain(QChar c)
{
    return c > u' ' && c < QChar(QChar::SoftHyphen);
}

/// Whether a LF comes behind a CR, with nothing that is seen between them.
bool isLineEnd(QStringView text, qsizetype at)
{
    if (text[at] != u'\r')
        return false;
    const auto *next = std::find_if_not(text.begin() + at + 1, text.end(), isInvisible);
    return next != text.end() && *next == u'\n';
}

/// Without invisible characters and empty lines, its words one space apart. A line ends with LF or
/// CR LF.
QString tidied(QStringView text)
{
    QString tidied(text.size(), Qt::Uninitialized);
    auto out = tidied.begin();
    QChar gap; // ahead of the next word
    for (qsizetype at = 0; at < text.size();) {
        const QChar c = text[at];
        if (c == u'\n' || c == u' ' || c == u'\t') {
            gap = c == u'\n' || gap == u'\n' ? u'\n' : u' ';
            ++at;
        } else if (isInvisible(c) || isLineEnd(text, at)) {
            ++at;
        } else {
            if (!gap.isNull() && out != tidied.cbegin())
                *out++ = gap;
            gap = QChar();
            do
                *out++ = text[at++];
            while (at < text.size() && isPlain(text[at]));
        }
    }
    tidied.truncate(out - tidied.cbegin());
    return tidied;
}

} // namespace

QString htmlToText(const QString &html)
{
    const bool hasTags = html.contains(u'<'); // most texts of links have none
    return tidied(decodeEntities(hasTags ? withoutTags(withoutHidden(html)) : html));
}

} // namespace velmo::MailParser
