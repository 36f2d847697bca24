#include "VelmoCore/Calendar/ICSParser.h"
#include "VelmoCore/Mail/IMAP/IMAPTokenizer.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace velmo {
namespace {

QString utf8(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes);
}

QString headers(const QByteArray &bytes)
{
    const auto split = MailParser::splitHeaders(bytes);
    QString shown;
    for (const auto &[name, value] : split.headers)
        shown += name + u'=' + value + u'\n';
    return shown + utf8(split.body.toByteArray());
}

QString map(const QMap<QString, QString> &params)
{
    QString shown;
    for (const auto &[name, value] : params.asKeyValueRange())
        shown += name + u'=' + value + u'\n';
    return shown;
}

QString links(const std::vector<MailLink> &links)
{
    QString shown;
    for (const MailLink &link : links)
        shown += link.text + u'=' + link.url.toString() + u'\n';
    return shown;
}

QString values(const std::vector<IMAPValue> &all)
{
    QString shown;
    for (const IMAPValue &value : all) {
        const auto *list = value.list();
        shown += (list ? u'(' + values(*list) : value.text().value_or(QString())) + u'|';
    }
    return shown;
}

QString property(const std::optional<ICSParser::Property> &read)
{
    return read ? read->name + u'\n' + map(read->params) + read->value : QString();
}

QString feed(const QString &text)
{
    QString shown;
    for (const auto &event : ICSParser::parse(text + u"\nEND:VEVENT"_qs).events) {
        for (const auto &line : event.props)
            shown += property(line) + u'\n';
    }
    return shown;
}

/// Whether the rule's dates are in order and none is ahead of the start.
QString order(const QString &rule)
{
    const Date start{Seconds(1.7e9)};
    const auto dates =
        ICSParser::expand(rule, start, QTimeZone::utc(), start, start + Seconds(1e8));
    const bool isRight =
        std::is_sorted(dates.begin(), dates.end()) && (dates.empty() || dates.front() >= start);
    return isRight ? u"right"_qs : rule;
}

struct Reader {
    const char *name;
    QString (*read)(const QByteArray &);
    qsizetype open; ///< characters that are read otherwise while their end is missing, at most
    QByteArray input;

    friend void PrintTo(const Reader &reader, std::ostream *out) { *out << reader.name; }
};

const Reader readers[] = {
    {"headers", headers, 1, "A: 1\r\n\tb\r\nB:\r\nSubject : x:y\r\n\r\nbody"},
    {"parameters", [](const auto &in) { return map(MailParser::parameters(utf8(in)).params); }, 6,
     "text/html; a=1; b=\"x;y\" ; c; d=\"\"; e=f"},
    {"encoded words", [](const auto &in) { return MailParser::decodeHeader(utf8(in)); }, 24,
     "Oi =?utf-8?B?T2zDoQ==?=\r\n =?utf-8?Q?_=C3=A9?= e =?x?q?=E9?= =?fim"},
    {"quoted-printable",
     [](const auto &in) { return QString::fromLatin1(MailParser::decodeQuotedPrintable(in)); }, 2,
     "Ol=C3=A1 =\r\ne=4 =\nfim="},
    {"base64", [](const auto &in) { return QString::fromLatin1(MailParser::decodeBase64Body(in)); },
     0, "Vm9j\r\nw6ogdGVt\r\n IHVt\tIGPD\n\ns2RpZ28=\r\n"},
    {"HTML", [](const auto &in) { return MailParser::htmlToText(utf8(in)); }, 24,
     "a<style>x</style>b&nbsp;&#x1F600;c<br/>d<!-- e --><p class=\"f\">g</p\n>h\u200bi &lt;"},
    {"links of HTML", [](const auto &in) { return links(MailParser::linksInHTML(utf8(in))); }, 0,
     "<a href=\"http://a.b/?c&amp;d\">e<b>f</b></a><a name=x><A HREF = 'https://g' >h</A >"},
    {"links of text", [](const auto &in) { return links(MailParser::linksInText(utf8(in))); }, 2,
     "veja https://a.b/c?d=1 e (http://e.f/g), fim"},
    {"IMAP values", [](const auto &in) { return values(IMAPTokenizer(in).values()); }, 5,
     "* 5 FETCH (UID 9 FLAGS (\\Seen \"a\\\"b\") BODY[TEXT (A)]<0> {3+}\r\na(b X NIL ())\r\n"},
    {"ICS line", [](const auto &in) { return property(ICSParser::property(utf8(in))); }, 0,
     "dtstart;TZID=\"(UTC-03:00) A;B\";X=1:2024:07"},
    {"ICS lines", [](const auto &in) { return feed(utf8(in)); }, 2,
     "BEGIN:VEVENT\r\nSUMMARY:Reu\r\n ni\n\t\xC3\xA3o\r\nDTSTART;X=1:20240705\r\rURL:x"},
    {"RRULE", [](const auto &in) { return order(utf8(in)); }, 0,
     "FREQ=MONTHLY;INTERVAL=2;BYDAY=-1FR,2MO;BYMONTHDAY=-31,1;BYMONTH=1,12;BYSETPOS=-1,2;"
     "UNTIL=20251231T235959Z;COUNT=10"},
};

class CutInput : public testing::TestWithParam<Reader> {};

} // namespace

TEST_P(CutInput, LeavesWhatStandsAheadOfTheCut)
{
    const Reader &reader = GetParam();
    const QString whole = reader.read(reader.input);
    ASSERT_FALSE(whole.isEmpty());
    for (qsizetype length = 0; length < reader.input.size(); ++length) {
        // A copy, behind which nothing may be read.
        const QString cut = reader.read(QByteArray(reader.input.constData(), length));
        EXPECT_TRUE(whole.startsWith(cut.first(std::max<qsizetype>(0, cut.size() - reader.open))))
            << reader.input.first(length).constData() << '\n'
            << cut.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Readers, CutInput, testing::ValuesIn(readers));

} // namespace velmo
