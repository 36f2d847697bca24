#include "VelmoCore/Mail/MailParser.h"

#include "tests/support/Printers.h"

#include <QRegularExpression>
#include <QStringList>

#include <gmock/gmock.h>

#include <random>

namespace velmo {
namespace {

using testing::ElementsAre;

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

QRegularExpression pattern(const char *text, QRegularExpression::PatternOptions options = {})
{
    return QRegularExpression(utf8(text), options | QRegularExpression::UseUnicodePropertiesOption);
}

QRegularExpression htmlPattern(const char *text)
{
    return pattern(text, QRegularExpression::CaseInsensitiveOption |
                             QRegularExpression::DotMatchesEverythingOption);
}

/// The same reading by patterns.
QString textByPatterns(QString html)
{
    static const auto hidden =
        htmlPattern(R"(<(head|style|script|title)\b[^>]*>.*?</\1\s*>|<!--.*?-->)");
    static const auto breaks =
        htmlPattern(R"(<br\s*/?>|</(p|div|tr|li|h[1-6]|table|blockquote)\s*>)");
    static const auto tags = htmlPattern("<[^>]+>");
    html.replace(hidden, u" "_qs).replace(breaks, u"\n"_qs).replace(tags, u" "_qs);
    html = MailParser::decodeEntities(html);
    html.remove(pattern("[\u200b\u200c\u200d\u034f\u00ad\ufeff]")).replace(u"\r\n"_qs, u"\n"_qs);
    QStringList lines;
    for (const QString &line : html.split(u'\n')) {
        const auto words = line.split(pattern("[ \t]"), Qt::SkipEmptyParts);
        if (!words.isEmpty())
            lines += words.join(u' ');
    }
    return lines.join(u'\n');
}

std::vector<MailLink> linksByPattern(const QString &html)
{
    static const auto anchors =
        htmlPattern(R"re(<a\b[^>]*?href\s*=\s*["']([^"']+)["'][^>]*>(.*?)</a\s*>)re");
    std::vector<MailLink> links;
    for (auto found = anchors.globalMatch(html); found.hasNext();) {
        const auto match = found.next();
        const QUrl url(MailParser::decodeEntities(match.captured(1)).trimmed());
        if (url.isValid() && url.scheme() == u"http")
            links.push_back({textByPatterns(match.captured(2)), url});
    }
    return links;
}

std::vector<MailLink> bareLinksByPattern(const QString &text)
{
    static const auto addresses = pattern(R"re(https?://[^\s<>"')\]]+)re");
    std::vector<MailLink> links;
    for (auto found = addresses.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        const QUrl url(match.captured().remove(pattern("[.,;:]+$")));
        const auto start = match.capturedStart();
        if (url.isValid())
            links.push_back({text.first(start).last(std::min<qsizetype>(60, start)), url});
    }
    return links;
}

QString randomText(std::mt19937 &random)
{
    static const QStringList pieces =
        utf8(
            "<~>~/~ ~\n~\r~\t~\"~'~=~a~_~é~\u0301~ſ~\u212a~😀~\u00a0~<a ~</a~</A "
            ">~href~HREF=~http:x~"
            "http://~h2~https://~<head~</head~style~<ſtYLE>~</style>~<!--~-->~<br~</p>~"
            "</blocKquote~</div ~&amp;~&#65;~&~;~\u200b~=?~?~?Q?~?=~utf-8~?B?~YQ==~=?u?Q?a?=~]~)~.~"
            "<a href='http:y'>~</a>~//x.y~/b.~?c=d&~%41~#~[~'>~")
            .split(u'~');
    QString text;
    for (auto count = random() % 30; count > 0; --count)
        text += pieces[qsizetype(random()) % pieces.size()];
    return text;
}

} // namespace

TEST(MailHtml, ReadsAsThePatternsDo)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        const QString text = randomText(random);
        ASSERT_EQ(MailParser::htmlToText(text), textByPatterns(text)) << text.toStdString();
        ASSERT_EQ(MailParser::linksInHTML(text), linksByPattern(text)) << text.toStdString();
        ASSERT_EQ(MailParser::linksInText(text), bareLinksByPattern(text)) << text.toStdString();
    }
}

TEST(MailHtml, ShowsWhatAReaderSees)
{
    const std::pair<const char *, const char *> cases[] = {
        {"<html><head><title>T</title></head><body><p>Oi,\r\n  Ana</p><p>&nbsp;</p>Fim</body>",
         "Oi,\nAna\nFim"},
        {"a<style>p>b{}</STYLE\n>b<!-- c > d -->e<style>f", "a b e f"},
        {"1<br/>2<BR >3<h6>4</h6>5</h7>6", "1\n2\n3 4\n5 6"},
        {"a<br<!-- -->/>b", "a\nb"},
        {"<>&lt;b&gt; a\u00adb\r\u200b\nc\rd", "<><b> ab\nc\rd"},
    };
    for (const auto &[html, text] : cases)
        EXPECT_EQ(MailParser::htmlToText(utf8(html)), utf8(text)) << html;
}

TEST(MailHtml, ResolvesEntities)
{
    const std::pair<const char *, const char *> cases[] = {
        {"&AMP;&#X41;&#65;&foo;&#xD800;&#x110000;", "&AA&foo;&#xD800;&#x110000;"},
        {"a&nbsp;b&zwj;&Trade;&#39;&#x1F600;", "a b™'😀"},
        {"&#+65;&#x;&#;&;&# 65;&#99999999;", "&#+65;&#x;&#;&;&# 65;&#99999999;"},
        {"&#x0000041;|&#x00000041;|&#x000000041;", "A|A|&#x000000041;"},
        {"R&D e outros &lt;", "R&D e outros <"},
        {"&\u0301amp;|&amp;\u0301|&amp;", "&\u0301amp;|&amp;\u0301|&amp;"},
        {"&é\r\n234567890;&lt;|&é\r\n2345678901;&lt;", "&é\r\n234567890;<|&é\r\n2345678901;<"},
        {"&e\u0301e\u0301e\u0301e\u0301 &lt;", "&e\u0301e\u0301e\u0301e\u0301 &lt;"},
        {"&amp", "&amp"},
    };
    for (const auto &[text, decoded] : cases)
        EXPECT_EQ(MailParser::decodeEntities(utf8(text)), utf8(decoded)) << text;
    const QString longCharacter = u"&amp"_qs + QString(5000, QChar(0x301)) + u";"_qs;
    EXPECT_EQ(MailParser::decodeEntities(longCharacter + u"&lt;"_qs), longCharacter + u'<');
}

TEST(MailHtml, FindsLinks)
{
    const QString html =
        utf8("<A class=x data-href = \" HTTPS://x.y/?a&amp;b \" id='>'>Ir <b>já</b></a>"
             "<abbr href='http://no'></a><a href='mailto:a@b'>m</a>"
             "<a href=http://no>n</a><a name='n'><a href='http://z'></a>");
    std::vector<QString> found;
    for (const MailLink &link : MailParser::linksInHTML(html))
        found.push_back(link.text + u' ' + link.url.toString());
    EXPECT_THAT(found, ElementsAre(utf8("'>Ir já https://x.y/?a&b"), utf8(" http://z")));

    const QString text =
        QString(70, u'.') + u"https://a.b/c?d=1;., (http://e]f) HTTP://g http://"_qs;
    const auto links = MailParser::linksInText(text);
    ASSERT_EQ(links.size(), 2U);
    EXPECT_EQ(links[0], (MailLink{QString(60, u'.'), QUrl(u"https://a.b/c?d=1"_qs)}));
}

/// Each would take hours where a matcher goes back.
TEST(MailHtml, ReadsHostileTextInOnePass)
{
    for (const char *piece :
         {"<", "<style>", "<style", "<!--", "</p ", "<a ", "<a href='", "<a href='x'>", "<a href",
          "&", "&\u0301", "&amp\u0301", "http", "=?", "=?u?q?", "\r\u200b"}) {
        const QString text = utf8(piece).repeated(1'000'000 / qsizetype(std::strlen(piece)));
        EXPECT_LE(MailParser::htmlToText(text).size(), text.size());
        EXPECT_TRUE(MailParser::linksInHTML(text).empty());
        EXPECT_TRUE(MailParser::linksInText(text).empty());
        EXPECT_EQ(MailParser::decodeHeader(text), text);
        EXPECT_EQ(MailParser::parse("A: " + text.toUtf8()).text, u"");
    }
    const QByteArray boundary(500'000, 'a');
    const auto mail = MailParser::parse("Content-Type: multipart/mixed; boundary=" + boundary +
                                        "\n\n--" + QByteArray(1'000'000, 'a') + "b");
    EXPECT_EQ(mail.text, u"");
}

} // namespace velmo
