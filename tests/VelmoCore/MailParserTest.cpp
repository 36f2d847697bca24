#include "VelmoCore/Mail/MailParser.h"

#include "tests/support/Printers.h"

#include <QSet>

#include <gmock/gmock.h>

namespace velmo {
namespace {

using testing::ElementsAre;

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

/// "text url" of each.
QStringList shown(const std::vector<MailLink> &links)
{
    QStringList lines;
    for (const MailLink &link : links)
        lines += link.text + u' ' + link.url.toString();
    return lines;
}

/// A message with one text in containers around it.
QByteArray nested(int containers)
{
    QByteArray inner = "Content-Type: text/plain\n\nfundo";
    for (int i = 0; i < containers; ++i) {
        const QByteArray boundary = "b" + QByteArray::number(i) + ".";
        inner = "Content-Type: multipart/mixed; boundary=" + boundary + "\n\n--" + boundary + "\n" +
                inner;
    }
    return inner;
}

QString textOfBase64(const QByteArray &body)
{
    return MailParser::parse("Content-Transfer-Encoding: BASE64 \n\n" + body).text;
}

} // namespace

TEST(MailParser, DecodesEncodedWords)
{
    const std::pair<const char *, const char *> cases[] = {
        {"=?UTF-8?B?Q2Fmw6k=?= =?UTF-8?Q?_au_lait?=", "Café au lait"},
        {"=?UTF-8?b?Q2Fmw6k?=\n\t=?UTF-8?q?=21?= fim", "Café! fim"},
        {" \t=?utf-8?Q?a?= e =?utf-8?Q?b?= ", " \ta e b "},
        {"=?x-unknown?Q?Ol=E1?=", "Olá"},
        {"=?utf-8?B?@@@?=|=?utf-8?B?A?=", "@@@|A"},
        {"=?utf-8?Q?\?=|=?utf-8?X?a?=", "|=?utf-8?X?a?="},
        {"=??Q?a?= =?a b?Q?c?= =?u?Q?c d?= =?u?Q?=?u?Q?e?=",
         "=??Q?a?= =?a b?Q?c?= =?u?Q?c d?= =?u?Q?e"},
        {"=?utf-8?Q?=C3=A9=", "=?utf-8?Q?=C3=A9="},
    };
    for (const auto &[text, decoded] : cases)
        EXPECT_EQ(MailParser::decodeHeader(utf8(text)), utf8(decoded)) << text;
}

TEST(MailParser, TellsANameFromAnAddress)
{
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"\"Silva, Ana\" <ana@x.br>", "Silva, Ana", "ana@x.br"},
        {" =?utf-8?Q?J=C3=B3?=\t< jo@x.br > (casa)", "Jó", "jo@x.br"},
        {R"("A \"B\" C" <a@x>)", "A \"B\" C", "a@x"},
        {"a <b> <c@x>", "a <b>", "c@x"},
        {"ana@x.br (Ana (Rio) )", "Ana (Rio) ", "ana@x.br"},
        {"", "", ""},
    };
    for (const auto &[text, name, address] : cases)
        EXPECT_EQ(MailParser::parseAddress(utf8(text)), (MailAddress{utf8(name), utf8(address)}))
            << text;
}

TEST(MailAddress, HasTheInitialsOfItsFirstWords)
{
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"ana maria silva", "x@y", "AM"},
        {"", "joão.lima@x.br", "JL"},
        {"e\u0301va-7", "", "E\u03017"},
        {"ßeta", "", "SS"},
        {"", "", ""},
    };
    for (const auto &[name, address, initials] : cases)
        EXPECT_EQ((MailAddress{utf8(name), utf8(address)}).initials(), utf8(initials)) << name;
    const QSet<MailAddress> both = {{u"a"_qs, u"b"_qs}, {u"b"_qs, u"a"_qs}, {u"a"_qs, u"b"_qs}};
    EXPECT_EQ(both.size(), 2);
    EXPECT_EQ((MailAddress{QString(), u"b"_qs}).display(), u"b");
}

TEST(MailParser, ReadsDates)
{
    const std::pair<const char *, const char *> cases[] = {
        {"Fri, 5 Jul 2024 10:00:00 +0000 (UTC)", "2024-07-05T10:00:00Z"},
        {" 5 Jul 2024 10:00:00 -0300", "2024-07-05T13:00:00Z"},
        {"Fri, 05 Jul 2024 10:05 +0530", "2024-07-05T04:35:00Z"},
        {"Fri, 5 Jul 24 10:00:00 +0000", "2024-07-05T10:00:00Z"},
        {"Fri, 5 Jul 99 10:00:00 +0000", "2099-07-05T10:00:00Z"},
        {"fri,  5  JULY 2024 9:00:00 GMT", "2024-07-05T09:00:00Z"},
        {"Mon, 5 Jul 2024 23:59:59 PDT", "2024-07-06T06:59:59Z"},
        {"Fri, 5 Jul 2024 10:00:00 GMT-3", "2024-07-05T13:00:00Z"},
        {"Thu, 29 Feb 2024 00:00:00 +14:00", "2024-02-28T10:00:00Z"},
        {"Wed, 29 Feb 2023 00:00:00 +0000", ""},
        {"5 Jul 24 10:00:00 +0000", ""},
        {"Fri, 5 Jul 2024 10:00:60 +0000", ""},
        {"Fri,5 Jul 2024 10:00:00 +0000", ""},
        {"Fri, 5 Jul 2024 10:00:00 +0000 x", ""},
    };
    for (const auto &[text, expected] : cases) {
        const auto date = MailParser::parseDate(utf8(text));
        EXPECT_EQ(date ? iso8601Text(*date) : QString(), utf8(expected)) << text;
    }
}

TEST(MailParser, CutsAMessageAtItsFirstEmptyLine)
{
    using Split = std::pair<std::vector<QString>, QByteArray>;
    const std::pair<QByteArray, Split> cases[] = {
        {"A: 1\r\nB : 2 \r\n\r\nbody\n\nrest", {{"A|1", "B|2"}, "body\n\nrest"}},
        {"A: 1\n \t2 \n\t\nB:\n: x\n\nb", {{"A|1 2 ", "B|", "|x"}, "b"}},
        {" A: 1\nno colon\n B: 2\n\r\n", {{"A|1 B: 2"}, ""}},
        {"A: \xe1\nB: \xc3\xa9", {{"A|á", "B|Ã©"}, ""}},
        {"\nA: 1\n\nb", {{"A|1"}, "b"}},
        {"\n\nb", {{}, "b"}},
    };
    for (const auto &[bytes, expected] : cases) {
        const auto split = MailParser::splitHeaders(bytes);
        std::vector<QString> headers;
        for (const auto &header : split.headers)
            headers.push_back(header.name + u'|' + header.value);
        EXPECT_EQ(Split(headers, split.body.toByteArray()), expected) << bytes.constData();
    }
    const MailParser::Headers headers = {{u"x-A"_qs, u"1"_qs}, {u"X-a"_qs, u"2"_qs}};
    EXPECT_EQ(MailParser::header(u"X-A", headers), u"1"_qs);
}

TEST(MailParser, ReadsParametersOutsideQuotes)
{
    const auto read = MailParser::parameters(
        utf8(" Text/HTML ;\tCharSet = \"utf-8\"; flag; a=1;A=2; b=\"x;y\"; c=\"; d=3;\""));
    EXPECT_EQ(read.type, u"text/html");
    QString params;
    for (const auto &[name, value] : read.params.asKeyValueRange())
        params += name + u'=' + value + u'|';
    EXPECT_EQ(params, u"a=2|b=x;y|c=; d=3;|charset=utf-8|");
    EXPECT_EQ(MailParser::parameters(QString()).type, u"");
}

TEST(MailParser, FallsBackFromAWrongCharacterSet)
{
    const std::tuple<QByteArray, const char *, const char *> cases[] = {
        {"Ol\xe1", " ISO-8859-15 ", "Olá"}, {"\xc1\xc2", "koi8-r", "аб"},
        {"\x82\xa0", "shift_jis", "あ"},    {"\x93Oi\x94 \x80", "windows-1252", "“Oi” €"},
        {"\xc3\xa9", "us-ascii", "é"},      {"\xe9", "utf-8", "é"},
        {"\xff\xff", "euc-jp", "ÿÿ"},       {QByteArray("\xd8\0\0a", 4), "utf-16be", "Ø\0\0a"},
        {"\x81", "windows-1252", "\ufffd"}, {"\xe9\x81", "../../x", "\ufffd\ufffd"},
    };
    for (const auto &[bytes, charset, text] : cases) {
        const QString expected = bytes.contains('\0') ? QString::fromLatin1(bytes) : utf8(text);
        EXPECT_EQ(MailParser::decodeBytes(bytes, utf8(charset)), expected)
            << charset << ' ' << text;
    }
}

TEST(MailParser, DecodesBodies)
{
    const std::pair<QByteArray, QByteArray> quoted[] = {
        {"Ol=C3=a1", "Ol\xc3\xa1"}, {"a=\nb=\r\nc", "abc"}, {"a=", "a"},    {"a=4", "a=4"},
        {"=4==41", "=4=A"},         {"=\r=\n", "=\r"},      {"a_b", "a_b"}, {"", ""},
    };
    for (const auto &[bytes, expected] : quoted)
        EXPECT_EQ(MailParser::decodeQuotedPrintable(bytes), expected) << bytes.constData();

    const std::pair<QByteArray, const char *> base64[] = {
        {"T2xh\r\nIQ==\r\n", "Ola!"},
        {"T2xhIQ", "Ola"},
        {"T2\xc2\xa0xhIQ=", "Ola"},
        {"T2xh\xc3\xa9", "Ola"},
        {"IQ", ""},
        {"T2xhIQ==T2xh", ""},
        {"T2-h", ""},
        {"T2xe\xcc\x81\xcc\x81", ""},
    };
    for (const auto &[body, expected] : base64)
        EXPECT_EQ(textOfBase64(body), utf8(expected)) << body.constData();
}

TEST(MailParser, SplitsAMultipartBodyAtItsDelimiters)
{
    const std::pair<QByteArray, std::vector<QByteArray>> cases[] = {
        {"x\r\n--b \t\r\nA\r\n--b\nB\n--b--\n--b\nC", {"A\r\n", "B\n"}},
        {"--b\nA", {"A"}},
        {"--b\n--b\n\nA--b A", {"\nA", "A"}},
        {"--bA--bb", {"A", "b"}},
    };
    for (const auto &[bytes, expected] : cases) {
        std::vector<QByteArray> parts;
        for (const QByteArrayView part : MailParser::splitMultipart(bytes, "b"))
            parts.push_back(part.toByteArray());
        EXPECT_EQ(parts, expected) << bytes.constData();
    }
}

TEST(MailParser, FindsTheTextsOfAMessage)
{
    const std::tuple<QByteArray, const char *, QStringList> cases[] = {
        {nested(6), "fundo", {}},
        {nested(7), "", {}},
        {"\n\n veja http://x.y/1. ", " veja http://x.y/1. ", {" veja  http://x.y/1"}},
        {"Content-Type: text/html\n\n<p>Oi</p><a href='https://x.y'>v<br>w</a>",
         "Oi\nv\nw",
         {"v\nw https://x.y"}},
        {"Content-Type: multipart/alternative; boundary=b\nContent-Disposition: attachment\n\n"
         "--b\nContent-Type: text/plain\n\n\xc2\xa0\n--b\nContent-Type: text/html\n\n"
         "<a href=\"http://a.b\">A</a>\n--b\n\nhttp://c.d",
         "A",
         {"A http://a.b"}},
        {"Content-Type: multipart/mixed; boundary=\"b;c\"\n\n--b;c\nContent-Type: text/html\n\n"
         "<a href=\"http://a.b\">A</a>\n--b;c\nA:\n\nhttp://c.d",
         "http://c.d",
         {"A http://a.b"}},
        {"Content-Disposition: Attachment; filename=a\n\nx", "", {}},
        {"Content-Type: multipart/mixed\n\n--\n\nx", "", {}},
    };
    for (const auto &[bytes, text, links] : cases) {
        const ParsedMail mail = MailParser::parse(bytes);
        EXPECT_EQ(mail.text, utf8(text)) << bytes.constData();
        EXPECT_EQ(shown(mail.links), links) << bytes.constData();
    }
}

TEST(MailParser, ReadsWhatIsThereOfACutMessage)
{
    const QByteArray message =
        "Message-ID:\t<1@x>\r\nDate: Fri, 5 Jul 2024 10:00:00 +0000\r\nFrom: \"Ana\" <a@x>\r\n"
        "Subject: =?utf-8?B?T2zDoQ==?=\r\nContent-Type: multipart/mixed; boundary=\"fim\"\r\n\r\n"
        "--fim\r\nContent-Transfer-Encoding: base64\r\n\r\nVm9jw6ogdGVtIHVtIGPDs2RpZ286IDEyMw==\r\n"
        "--fim\r\nContent-Type: text/html\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n"
        "<a href=3D\"https://x.y/?a=3D1&amp;b\">=E2=86=92&nbsp;ir</a>\r\n--fim--\r\n";
    const ParsedMail whole = MailParser::parse(message);
    EXPECT_EQ(whole.messageID, u"1@x"_qs);
    EXPECT_EQ(iso8601Text(whole.date.value()), u"2024-07-05T10:00:00Z");
    EXPECT_EQ(whole.from, (MailAddress{u"Ana"_qs, u"a@x"_qs}));
    EXPECT_EQ(whole.subject, utf8("Olá"));
    EXPECT_EQ(whole.text, utf8("Você tem um código: 123"));
    EXPECT_THAT(shown(whole.links), ElementsAre(utf8("→ ir https://x.y/?a=1&b")));
    for (qsizetype cut = 0; cut < message.size(); ++cut) {
        const ParsedMail mail = MailParser::parse(message.first(cut));
        const bool isWhole = mail.text.isEmpty() || whole.text.startsWith(mail.text.chopped(1));
        EXPECT_TRUE(isWhole || mail.text.contains(u'Ã')) << mail.text.toStdString();
        EXPECT_TRUE(mail.links.empty() || mail.links == whole.links) << cut;
    }
}

TEST(MailParser, ShortensATextForAPreview)
{
    const std::tuple<const char *, int, const char *> cases[] = {
        {"Oi\n\n> quoted\nTudo bem?", 40, "Oi Tudo bem?"},
        {"a\r\n\t> b\u2028 c   d\te \u0085f", 40, "a c d\te f"},
        {"abc def", 4, "abc…"},
        {"e\u0301e\u0301e\u0301", 2, "e\u0301e\u0301…"},
        {"abc", -1, "…"},
    };
    for (const auto &[text, limit, expected] : cases)
        EXPECT_EQ(MailParser::snippet(utf8(text), limit), utf8(expected)) << text;
}

} // namespace velmo
