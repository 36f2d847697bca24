#include "VelmoCore/Mail/MailMatching.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <algorithm>

namespace velmo::MailParser {

namespace {

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
    const QString scheme = url.scheme();
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

std::vector<MailLink> linksInHTML(const QString &html)
{
    const QStringView text = html;
    auto anchors = aheadOfAnchor(text);
    auto tagEnd = aheadOfTagEnd(text);
    std::vector<MailLink> links;
    qsizetype next = 0;
    for (qsizetype tag = find(text, u'<', 0); tag >= 0; tag = find(text, u'<', next)) {
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
