#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

// Every matcher below is one fixed regular expression, without its backtracking.

namespace velmo::MailParser {

namespace {

/// The letter in lower case. Two letters beyond ASCII are those of an element's name in any case.
char16_t lowered(QChar c)
{
    constexpr char16_t longS = 0x017f;
    constexpr char16_t kelvin = 0x212a;
    const char16_t unit = c.unicode();
    if (unit < 0x80)
        return unit >= u'A' && unit <= u'Z' ? char16_t(unit | 0x20) : unit;
    return unit == longS ? u's' : unit == kelvin ? u'k' : unit;
}

bool hasName(QStringView text, qsizetype at, QStringView name)
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
bool isWordEnd(QStringView text, qsizetype at)
{
    if (at == text.size())
        return true;
    char32_t c = text[at].unicode();
    if (QChar::isHighSurrogate(c) && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        c = QChar::surrogateToUcs4(text[at], text[at + 1]);
    return c != u'_' && !QChar::isLetterOrNumber(c);
}

qsizetype skipSpace(QStringView text, qsizetype at)
{
    while (at < text.size() && text[at].isSpace())
        ++at;
    return at;
}

bool isAt(QStringView text, qsizetype at, char16_t c)
{
    return at < text.size() && text[at] == c;
}

/// The end of `</name\s*>` at this place, or -1.
qsizetype closingTagEnd(QStringView text, qsizetype at, QStringView name)
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

auto aheadOf(QStringView text, QStringView wanted)
{
    return Ahead([text, wanted](qsizetype place) -> std::optional<Range> {
        const qsizetype start = text.indexOf(wanted, place);
        return start < 0 ? std::nullopt : std::optional(Range{start, start + wanted.size()});
    });
}

auto aheadOfTagEnd(QStringView text)
{
    return Ahead([text](qsizetype place) -> std::optional<Range> {
        const qsizetype start = text.indexOf(u'>', place);
        return start < 0 ? std::nullopt : std::optional(Range{start, start + 1});
    });
}

auto aheadOfClosingTag(QStringView text, QStringView name)
{
    return Ahead([text, name](qsizetype place) -> std::optional<Range> {
        for (qsizetype start = text.indexOf(u"</", place); start >= 0;
             start = text.indexOf(u"</", start + 1)) {
            const qsizetype end = closingTagEnd(text, start, name);
            if (end >= 0)
                return Range{start, end};
        }
        return std::nullopt;
    });
}

/// Replaces each match. `endOfMatch` gives the end of the match at a "<", or -1.
template <typename EndOfMatch>
QString replaceTags(QStringView text, QChar replacement, EndOfMatch endOfMatch)
{
    QString replaced;
    replaced.reserve(text.size());
    qsizetype copied = 0;
    qsizetype next = 0;
    for (qsizetype tag = text.indexOf(u'<'); tag >= 0; tag = text.indexOf(u'<', next)) {
        const qsizetype end = endOfMatch(tag);
        next = tag + 1;
        if (end >= 0) {
            replaced += text.sliced(copied, tag - copied);
            replaced += replacement;
            copied = next = end;
        }
    }
    replaced += text.sliced(copied);
    return replaced;
}

/// Takes out <(head|style|script|title)\b[^>]*>.*?</\1\s*>|<!--.*?-->
QString withoutHidden(QStringView html)
{
    auto commentEnd = aheadOf(html, u"-->");
    auto tagEnd = aheadOfTagEnd(html);
    const std::array<QStringView, 4> names = {u"head", u"style", u"script", u"title"};
    std::array closings = {aheadOfClosingTag(html, names[0]), aheadOfClosingTag(html, names[1]),
                           aheadOfClosingTag(html, names[2]), aheadOfClosingTag(html, names[3])};
    const auto hiddenEnd = [&](qsizetype tag) -> qsizetype {
        if (html.sliced(tag).startsWith(u"<!--")) {
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
    };
    return replaceTags(html, u' ', hiddenEnd);
}

/// Breaks the line at <br\s*/?>|</(p|div|tr|li|h[1-6]|table|blockquote)\s*>
QString withLineBreaks(QStringView html)
{
    constexpr std::array<QStringView, 12> blocks = {u"p",     u"div", u"tr", u"li",
                                                    u"table", u"h1",  u"h2", u"h3",
                                                    u"h4",    u"h5",  u"h6", u"blockquote"};
    return replaceTags(html, u'\n', [&](qsizetype tag) -> qsizetype {
        if (hasName(html, tag + 1, u"br")) {
            qsizetype end = skipSpace(html, tag + 3);
            end += isAt(html, end, u'/') ? 1 : 0;
            return isAt(html, end, u'>') ? end + 1 : -1;
        }
        if (!isAt(html, tag + 1, u'/'))
            return -1;
        for (const QStringView block : blocks) {
            const qsizetype end = closingTagEnd(html, tag, block);
            if (end >= 0)
                return end;
        }
        return -1;
    });
}

/// Takes out <[^>]+>
QString withoutTags(QStringView html)
{
    auto tagEnd = aheadOfTagEnd(html);
    return replaceTags(html, u' ', [&](qsizetype tag) -> qsizetype {
        const auto &end = tagEnd.from(tag + 1);
        return end && end->start > tag + 1 ? end->end : -1;
    });
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

/// Without invisible characters and empty lines, words one space apart. A line ends with LF or
/// CR LF.
QString tidied(const QString &text)
{
    QString tidy(text.size(), Qt::Uninitialized);
    QChar *const begin = tidy.data();
    QChar *out = begin;
    QChar separator;
    for (const QChar *in = text.cbegin(); in != text.cend(); ++in) {
        const QChar c = *in;
        if (c == u'\n') {
            separator = c;
        } else if (c == u' ' || c == u'\t') {
            separator = separator == u'\n' ? separator : QChar(u' ');
        } else if (!isInvisible(c)) {
            if (c == u'\r') {
                const QChar *next = std::find_if_not(in + 1, text.cend(), isInvisible);
                if (next != text.cend() && *next == u'\n')
                    continue;
            }
            if (!separator.isNull() && out != begin)
                *out++ = separator;
            separator = QChar();
            *out++ = c;
        }
    }
    tidy.truncate(out - begin);
    return tidy;
}

struct Entity {
    QStringView token;
    QStringView text;
};
constexpr std::array<Entity, 22> entities = {
    {{u"&nbsp;", u" "},        {u"&amp;", u"&"},        {u"&lt;", u"<"},
     {u"&gt;", u">"},          {u"&quot;", u"\""},      {u"&#39;", u"'"},
     {u"&apos;", u"'"},        {u"&zwnj;", u""},        {u"&zwj;", u""},
     {u"&shy;", u""},          {u"&ndash;", u"\u2013"}, {u"&mdash;", u"\u2014"},
     {u"&hellip;", u"\u2026"}, {u"&rsquo;", u"\u2019"}, {u"&lsquo;", u"\u2018"},
     {u"&ldquo;", u"\u201c"},  {u"&rdquo;", u"\u201d"}, {u"&copy;", u"\u00a9"},
     {u"&reg;", u"\u00ae"},    {u"&trade;", u"\u2122"}, {u"&bull;", u"\u2022"},
     {u"&middot;", u"\u00b7"}}};

/// What an entity, from its "&" to its ";", stands for.
std::optional<QString> meaning(QStringView token)
{
    for (const Entity &entity : entities) {
        if (entity.token.size() == token.size() && hasName(token, 0, entity.token))
            return entity.text.toString();
    }
    if (!token.startsWith(u"&#"))
        return std::nullopt;
    const bool isHex = token.size() > 2 && lowered(token[2]) == u'x';
    const QStringView digits = token.sliced(isHex ? 3 : 2).chopped(1);
    const auto isDigit = [&](QChar c) {
        const char16_t lower = lowered(c);
        return (lower >= u'0' && lower <= u'9') || (isHex && lower >= u'a' && lower <= u'f');
    };
    bool isNumber = std::all_of(digits.begin(), digits.end(), isDigit);
    const uint scalar = isNumber ? digits.toUInt(&isNumber, isHex ? 16 : 10) : 0;
    if (!isNumber || scalar > QChar::LastValidCodePoint || QChar::isSurrogate(scalar))
        return std::nullopt;
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(&scalar), 1);
}

constexpr int longestEntity = 12; ///< characters

/// Whether this is a character of its own, whatever such characters stand beside it.
bool isSimple(QStringView text, qsizetype at)
{
    constexpr char16_t firstMark = 0x0300;
    return at >= text.size() || text[at].unicode() < firstMark;
}

/// The ";" that ends the entity at an "&", or -1.
qsizetype entityEnd(QStringView text, qsizetype mark)
{
    qsizetype at = mark;
    for (int count = 0; count < longestEntity && at < text.size(); ++count) {
        if (!isSimple(text, at + 1))
            break;
        if (text[at] == u';')
            return at;
        at += text[at] == u'\r' && isAt(text, at + 1, u'\n') ? 2 : 1;
        if (count + 1 == longestEntity || at == text.size())
            return -1;
    }
    // Characters may be of any length: read more until the last one is seen to the end.
    for (qsizetype length = 64;; length *= 2) {
        const QStringView near = text.sliced(mark).first(std::min(length, text.size() - mark));
        const bool isAll = mark + near.size() == text.size();
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, near.data(), near.size());
        qsizetype start = 0;
        for (int count = 0; count < longestEntity; ++count) {
            const qsizetype end = finder.toNextBoundary();
            if (end == near.size() && !isAll)
                break;
            const bool isUnit = end - start == 1;
            if (isUnit && near[start] == u';')
                return mark + start;
            if (end == near.size() || (count == 0 && !isUnit) || count + 1 == longestEntity)
                return -1;
            start = end;
        }
    }
}

/// One <a> with its address.
struct Anchor {
    qsizetype start; ///< of "href"
    Range address;
    Range content;
    qsizetype end;
};

/// The next match of href\s*=\s*["']([^"']+)["'][^>]*>(.*?)</a\s*>
auto aheadOfAnchor(QStringView html)
{
    const auto isQuote = [](QChar c) { return c == u'"' || c == u'\''; };
    auto quote = Ahead([html, isQuote](qsizetype place) -> std::optional<Range> {
        const auto *found = std::find_if(html.begin() + place, html.end(), isQuote);
        const qsizetype start = found - html.begin();
        return found == html.end() ? std::nullopt : std::optional(Range{start, start + 1});
    });
    return Ahead([html, isQuote, quote, tagEnd = aheadOfTagEnd(html),
                  closing = aheadOfClosingTag(html, u"a")](
                     qsizetype place) mutable -> std::optional<Anchor> {
        for (qsizetype start = place; start < html.size(); ++start) {
            if (!hasName(html, start, u"href"))
                continue;
            const qsizetype equals = skipSpace(html, start + 4);
            if (!isAt(html, equals, u'='))
                continue;
            const qsizetype opened = skipSpace(html, equals + 1);
            if (opened == html.size() || !isQuote(html[opened]))
                continue;
            const auto &quoted = quote.from(opened + 1);
            if (quoted && quoted->start == opened + 1)
                continue;
            const auto &tag = quoted ? tagEnd.from(quoted->end) : std::nullopt;
            const auto &close = tag ? closing.from(tag->end) : std::nullopt;
            if (!close)
                return std::nullopt; // nor does it for those behind this one
            return Anchor{start, {opened + 1, quoted->start}, {tag->end, close->start}, close->end};
        }
        return std::nullopt;
    });
}

std::optional<QUrl> webAddress(const QString &text)
{
    const QUrl url(text);
    const QString scheme = url.scheme().toLower();
    const bool isWeb = scheme == u"https" || scheme == u"http";
    return url.isValid() && isWeb ? std::optional(url) : std::nullopt;
}

QStringView slice(QStringView text, Range range)
{
    return text.sliced(range.start, range.end - range.start);
}

/// The end of https?://[^\s<>"')\]]+ at this place, or -1.
qsizetype bareAddressEnd(QStringView text, qsizetype at)
{
    const QStringView rest = text.sliced(at);
    const qsizetype prefix = rest.startsWith(u"https://")  ? 8
                             : rest.startsWith(u"http://") ? 7
                                                           : -1;
    if (prefix < 0)
        return -1;
    const auto *end = std::find_if(rest.begin() + prefix, rest.end(), [](QChar c) {
        return c.isSpace() || QStringView(u"<>\"')]").contains(c);
    });
    return end == rest.begin() + prefix ? -1 : at + (end - rest.begin());
}

} // namespace

QString htmlToText(const QString &html)
{
    return tidied(decodeEntities(withoutTags(withLineBreaks(withoutHidden(html)))));
}

QString decodeEntities(const QString &text)
{
    qsizetype mark = text.indexOf(u'&');
    if (mark < 0)
        return text;
    QString decoded;
    decoded.reserve(text.size());
    qsizetype copied = 0;
    while (mark >= 0) {
        const qsizetype end = entityEnd(text, mark);
        const QStringView token = QStringView(text).sliced(mark, end < 0 ? 1 : end + 1 - mark);
        decoded += QStringView(text).sliced(copied, mark - copied);
        decoded += end < 0 ? token.toString() : meaning(token).value_or(token.toString());
        copied = mark + token.size();
        mark = text.indexOf(u'&', copied);
    }
    decoded += QStringView(text).sliced(copied);
    return decoded;
}

std::vector<MailLink> linksInHTML(const QString &html)
{
    const QStringView text = html;
    auto anchors = aheadOfAnchor(text);
    auto tagEnd = aheadOfTagEnd(text);
    std::vector<MailLink> links;
    qsizetype next = 0;
    for (qsizetype tag = text.indexOf(u'<'); tag >= 0; tag = text.indexOf(u'<', next)) {
        next = tag + 1;
        if (!hasName(text, tag + 1, u"a") || !isWordEnd(text, tag + 2))
            continue;
        const auto &anchor = anchors.from(tag + 2);
        if (!anchor)
            break;
        if (tagEnd.from(tag + 2)->start < anchor->start)
            continue;
        const QString address = decodeEntities(slice(text, anchor->address).toString());
        if (const auto url = webAddress(trimmedBlanks(address).toString()))
            links.push_back({htmlToText(slice(text, anchor->content).toString()), *url});
        next = anchor->end;
    }
    return links;
}

std::vector<MailLink> linksInText(const QString &text)
{
    constexpr qsizetype contextLength = 60;
    std::vector<MailLink> links;
    qsizetype next = 0;
    for (qsizetype start = text.indexOf(u"http"); start >= 0; start = text.indexOf(u"http", next)) {
        qsizetype end = bareAddressEnd(text, start);
        next = end < 0 ? start + 1 : end;
        if (end < 0)
            continue;
        while (QStringView(u".,;:").contains(text[end - 1]))
            --end;
        const qsizetype context = std::max<qsizetype>(0, start - contextLength);
        if (const auto url = webAddress(text.sliced(start, end - start)))
            links.push_back({text.sliced(context, start - context), *url});
    }
    return links;
}

} // namespace velmo::MailParser
