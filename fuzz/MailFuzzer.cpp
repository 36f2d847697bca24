#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/MailParser.h"

#include <cstdint>
#include <cstdlib>

namespace velmo {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void checkLinks(const std::vector<MailLink> &links)
{
    for (const MailLink &link : links)
        require(link.url.isValid() && link.url.scheme().startsWith(u"http"));
}

/// What is shown of HTML has neither empty lines nor more than one blank in a row.
void checkHtml(const QString &html)
{
    const QString text = MailParser::htmlToText(html);
    require(text.size() <= html.size());
    for (const QChar before : {QChar(u' '), QChar(u'\n')}) {
        for (const QChar after : {QChar(u' '), QChar(u'\n')})
            require(!text.contains(QString(before) + after));
    }
    checkLinks(MailParser::linksInHTML(html));
}

void checkText(const QString &text)
{
    constexpr int limit = 20;
    require(Text::characterCount(MailParser::snippet(text, limit)) <= limit + 1);
    checkLinks(MailParser::linksInText(text));
    MailParser::parseAddress(text);
    MailParser::parseDate(text);
}

/// Parts come in order and don't overlap.
void checkParts(QByteArrayView bytes)
{
    const char *end = bytes.begin();
    for (const QByteArrayView part : MailParser::splitMultipart(bytes, "b")) {
        require(!part.isEmpty() && part.begin() > end && part.end() <= bytes.end());
        end = part.end();
    }
}

} // namespace
} // namespace velmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QByteArrayView bytes(data, qsizetype(size));
    checkLinks(MailParser::parse(bytes).links);
    checkParts(bytes);
    require(MailParser::decodeQuotedPrintable(bytes).size() <= bytes.size());
    const QString text = MailParser::decodeBytes(bytes);
    checkHtml(text);
    checkText(text);
    return 0;
}
