#include "VelmoCore/Mail/MailMatching.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <algorithm>

namespace velmo::MailParser {

namespace {

bool isQuote(QChar c)
{
    return c == u'"' || c == u'\'';
}

Ahead aheadOfQuote(QStringView html)
{
    return Ahead([html](qsizetype place) -> std::optional<Range> {
        const auto *quote = std::find_if(html.begin() + place, html.end(), isQuote);
        const qsizetype start = quote - html.begin();
        return quote == html.end() ? std::nullopt : std::optional(Range{start, start + 1});
    });
}

/// Gives the matches of <a\b[^>]*?href\s*=\s*["']([^"']+)["'][^>]*>(.*?)</a\s*> in their order.
class Anchors {
public:
    struct Anchor {
        Range address;
        Range content;
    };

    explicit Anchors(QStringView html)
        : m_html(html), m_tagEnd(aheadOf(html, u">")), m_quote(aheadOfQuote(html)),
          m_contentStart(aheadOf(html, u">")), m_closing(aheadOfClosingTag(html, u"a"))
    {
    }

    std::optional<Anchor> next()
    {
        for (qsizetype tag = m_html.indexOf(u'<', m_next); tag >= 0;
             tag = m_html.indexOf(u'<', m_next)) {
            m_next = tag + 1;
            if (!hasName(m_html, tag + 1, u"a") || !isWordEnd(m_html, tag + 2))
                continue;
            const auto &tagEnd = m_tagEnd.from(tag + 2);
            if (!tagEnd)
                break;
            if (const auto address = addressWithin({tag + 2, tagEnd->start}))
                return anchorAt(*address);
        }
        return std::nullopt;
    }

private:
    /// The first place in a tag behind href\s*=\s*["'] where an address stands. Tags are asked for
    /// in their order; as each may hold the next, what was looked at isn't again.
    std::optional<qsizetype> addressWithin(Range tag)
    {
        if (m_address && m_address->start >= tag.start)
            return m_address->end;
        m_address.reset();
        for (m_seen = std::max(m_seen, tag.start); m_seen < tag.end && !m_address; ++m_seen) {
            if (const qsizetype address = addressAt(m_seen); address >= 0)
                m_address = {m_seen, address};
        }
        return m_address ? std::optional(m_address->end) : std::nullopt;
    }

    /// The address that follows on an "href" at this place, or -1.
    qsizetype addressAt(qsizetype at) const
    {
        if (!hasName(m_html, at, u"href"))
            return -1;
        const qsizetype equals = skipSpace(m_html, at + 4);
        if (!isAt(m_html, equals, u'='))
            return -1;
        const qsizetype quote = skipSpace(m_html, equals + 1);
        const bool isThere =
            quote + 1 < m_html.size() && isQuote(m_html[quote]) && !isQuote(m_html[quote + 1]);
        return isThere ? quote + 1 : -1;
    }

    /// Absent if what closes it is missing, as it is then for those behind it.
    std::optional<Anchor> anchorAt(qsizetype address)
    {
        const auto &quote = m_quote.from(address);
        const auto &tag = quote ? m_contentStart.from(quote->end) : std::nullopt;
        const auto &close = tag ? m_closing.from(tag->end) : std::nullopt;
        m_next = close ? close->end : m_html.size();
        if (!close)
            return std::nullopt;
        return Anchor{{address, quote->start}, {tag->end, close->start}};
    }

    QStringView m_html;
    qsizetype m_next = 0;           ///< where to go on
    qsizetype m_seen = 0;           ///< up to where addresses were looked for
    std::optional<Range> m_address; ///< the last found, with its "href"
    Ahead m_tagEnd;                 ///< up to where an address may begin
    Ahead m_quote;
    Ahead m_contentStart; ///< the ">" behind the address, which may hold one
    Ahead m_closing;
};

std::optional<QUrl> webAddress(const QString &text)
{
    QUrl url(text);
    const QString scheme = url.scheme();
    const bool isWeb = scheme == u"https" || scheme == u"http";
    return url.isValid() && isWeb ? std::optional(std::move(url)) : std::nullopt;
}

/// Reads the addresses of a message, many of which are of one site: its name, which takes most of
/// the time, is read once.
class WebAddresses {
public:
    std::optional<QUrl> read(QStringView text)
    {
        const qsizetype siteEnd = endOfSite(text);
        const QStringView site = text.first(siteEnd);
        const QStringView rest = text.sliced(siteEnd);
        if (siteEnd == 0 || !std::all_of(rest.begin(), rest.end(), isPlain))
            return webAddress(text.toString());
        if (site != m_site) {
            m_site = site.toString();
            m_url = webAddress(m_site);
        }
        std::optional<QUrl> url = m_url;
        const qsizetype query = rest.indexOf(u'?');
        if (url)
            url->setPath(rest.first(query < 0 ? rest.size() : query).toString());
        if (url && query >= 0)
            url->setQuery(rest.sliced(query + 1).toString());
        return url;
    }

private:
    /// The end of https?://[^/?#]+ or 0.
    static qsizetype endOfSite(QStringView text)
    {
        const qsizetype host = text.startsWith(u"https://")  ? 8
                               : text.startsWith(u"http://") ? 7
                                                             : 0;
        const auto *end = std::find_if(text.begin() + host, text.end(),
                                       [](QChar c) { return c == u'/' || c == u'?' || c == u'#'; });
        const qsizetype length = end - text.begin();
        return host == 0 || length == host ? 0 : length;
    }

    /// Means itself in a path and in a query.
    static bool isPlain(QChar c)
    {
        switch (c.unicode()) {
        case u'/':
        case u'?':
        case u'=':
        case u'&':
        case u'-':
        case u'_':
        case u'.':
        case u'~':
            return true;
        default:
            return c.unicode() < 0x80 && c.isLetterOrNumber();
        }
    }

    QString m_site;
    std::optional<QUrl> m_url;
};

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
    Anchors anchors(text);
    WebAddresses addresses;
    std::vector<MailLink> links;
    while (const auto anchor = anchors.next()) {
        const QString address = decodeEntities(slice(text, anchor->address).toString());
        if (auto url = addresses.read(trimmedBlanks(address)))
            links.push_back({htmlToText(slice(text, anchor->content).toString()), *std::move(url)});
    }
    return links;
}

std::vector<MailLink> linksInText(const QString &text)
{
    constexpr qsizetype contextLength = 60;
    WebAddresses addresses;
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
        if (auto url = addresses.read(QStringView(text).sliced(start, end - start)))
            links.push_back({text.sliced(context, start - context), *std::move(url)});
    }
    return links;
}

} // namespace velmo::MailParser
