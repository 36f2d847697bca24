#include "VelmoCore/Mail/IMAP/IMAPResponse.h"

#include "VelmoCore/Mail/IMAP/IMAPTokenizer.h"

#include "tests/support/Printers.h"

#include <gmock/gmock.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// An atom as its word, a string in < >, a list in ( ), NIL as "-", with "|" between.
QByteArray shown(const std::vector<IMAPValue> &values)
{
    QByteArrayList parts;
    for (const IMAPValue &value : values) {
        if (const auto *string = std::get_if<IMAPValue::String>(&value.content))
            parts.push_back('<' + string->bytes + '>');
        else if (const auto *list = value.list())
            parts.push_back('(' + shown(*list) + ')');
        else
            parts.push_back(value.text().value_or(QStringLiteral("-")).toUtf8());
    }
    return parts.join('|');
}

QByteArray read(const QByteArray &response)
{
    return shown(IMAPTokenizer(response).values());
}

TEST(IMAPTokenizer, ReadsValuesAndForgivesWhatIsOpen)
{
    const QByteArray mark = "\xEF\xBB\xBF";
    const std::pair<QByteArray, QByteArray> cases[] = {
        {" \r\n ()))) a)b", "()|a|b"},
        {"(a (b \"c\") NIL) * + (a (b", "(a|(b|<c>)|-)|*|+|(a|(b))"},
        {"nil Nil \"NIL\" {3}NIL n\xC4\xB1l NILs", "-|-|<NIL>|<NIL>|-|NILs"},
        {"[abc def] abc] def [a] ]b", "[abc def]|abc]|def|[a]|]b"},
        {"BODY[FIELDS (TO\r\nCC)]<0>(x) [[a) b] c", "BODY[FIELDS (TO\r\nCC)]<0>|(x)|[[a) b] c"},
        {"a\"b{3}\tc\\ " + mark + "\xFF", "a\"b{3}\tc\\|" + mark + "\xEF\xBF\xBD"},
        {R"("a\"b\\c\n" "" "open\)", R"(<a"b\cn>|<>|<open\>)"},
        {"{4+}\r\nabcdefg {++2}\nhi{1}\rjk {2}\n\rl", "<abcd>|efg|<hi>|<j>|k|<\rl>"},
        {"{x}a {-3}b { 1}c {}d {99999999999999999999}e", "<>|a|<>|b|<>|c|<>|d|<>|e"},
        {"{3}\r\n)\"( {9999999999}\r\nshort ", "<)\"(>|<short >"},
        {"{5", "<>"},
    };
    for (const auto &[response, values] : cases)
        EXPECT_EQ(read(response), values);
}

TEST(IMAPTokenizer, StaysBoundedOnHostileBytes)
{
    for (const QByteArray piece : {"(", "{9999999999}", "{", "[", "\"\\", "()", "{0}", ")"})
        EXPECT_LE(IMAPTokenizer(piece.repeated(65536)).values().size(), 65536u);
    const QByteArray deep(IMAPTokenizer::depthLimit, '(');
    const QByteArray closers(IMAPTokenizer::depthLimit, ')');
    EXPECT_EQ(read(deep + "a" + closers + "b"), deep + "a" + closers + "|b");
    EXPECT_EQ(read(deep + "(a)" + closers + "b"), deep + closers);
}

TEST(IMAPResponse, ReadsAFetchUpToWhereItIsCut)
{
    const QByteArray fetchLine =
        "* 5 FETCH (UID 9 FLAGS (\\sEEN NIL $Junk) INTERNALDATE \"17-Jul-2024 09:01:02 +0000\" "
        "X-GM-THRID 1278455344230334865 RFC822.SIZE 1234 BODY[HEADER.FIELDS (TO)] NIL "
        "BODY[]<0> {7+}\r\na(b\"c}\n)\r\n";
    const IMAPFetch whole{.sequence = 5,
                          .uid = 9,
                          .flags = {QStringLiteral("\\sEEN"), QStringLiteral("$Junk")},
                          .internalDate = dateFromISO8601(u"2024-07-17T09:01:02Z"),
                          .body = "a(b\"c}\n",
                          .gmailThreadID = 1278455344230334865};
    EXPECT_EQ(IMAPResponse::fetch(fetchLine), whole);
    EXPECT_TRUE(whole.isSeen());
    for (qsizetype length = 0; length < fetchLine.size(); ++length) {
        const auto cut = IMAPResponse::fetch(fetchLine.first(length));
        ASSERT_EQ(cut.has_value(), length > fetchLine.indexOf('(')) << length;
        ASSERT_TRUE(!cut || whole.body->startsWith(cut->body.value_or("a"))) << length;
    }
}

TEST(IMAPResponse, ReadsEachItemOfAFetchByItself)
{
    const auto items = [](const char *text) {
        return IMAPResponse::fetch(QByteArray("* -1 fetch (") + text + ')').value();
    };
    EXPECT_EQ(items("(x) UID UID 4294967295").uid, 4294967295);
    for (const char *uid : {"UID 9 UID 4294967296", "UID 9 UID NIL", "UID -1", "UID (9)", "UID"})
        EXPECT_EQ(items(uid).uid, std::nullopt) << uid;
    EXPECT_FALSE(items("FLAGS (\\Seen) FLAGS \\Seen").isSeen());
    EXPECT_EQ(items("BODY[] \"a\" RFC822 {1}b BODY[TEXT] NIL RFC822.SIZE 5").body, "b");
    EXPECT_EQ(items("BODY {1}a UID 3").body, std::nullopt);
    for (const char *other : {"* 5 FETCH", "* 7 EXPUNGE (a)", "+ 5 FETCH ()", "* x FETCH ()",
                              "* 5 FETCH a", "(*) 5 FETCH ()"})
        EXPECT_EQ(IMAPResponse::fetch(other), std::nullopt) << other;
}

TEST(IMAPResponse, ReadsTheServersDates)
{
    EXPECT_EQ(IMAPResponse::parseInternalDate(u"  7-feb-1996 21:52:25 -0830 "),
              dateFromISO8601(u"1996-02-08T06:22:25Z"));
    for (const QStringView other :
         {u"29-Feb-2023 00:00:00 +0000", u"17-Jul-24 09:01:02 +0000", u"17-anf-2024 09:01:02 +0000",
          u"17-Jul-2024 24:01:02 +0000", u"17-Jul-2024 09:01:02 +0060", u"17-Jul-2024 09:01:02"})
        EXPECT_EQ(IMAPResponse::parseInternalDate(other), std::nullopt) << other.toUtf8().data();
}

TEST(IMAPResponse, ReadsCountsMailboxesSearchesAndCodes)
{
    EXPECT_THAT(IMAPResponse::count("  *  -172 exists more\r\n", u"EXISTS"), Optional(-172));
    EXPECT_TRUE(IMAPResponse::count("* 1" + QByteArray(71, ' ') + "EXISTSx", u"EXISTS"));
    EXPECT_FALSE(IMAPResponse::count("* 1" + QByteArray(72, ' ') + "EXISTS", u"EXISTS"));
    for (const char *other :
         {"* OK [UNSEEN 12] first", "* 172", "n1 172 EXISTS", "* 17x EXISTS", "* +-1 EXISTS"})
        EXPECT_EQ(IMAPResponse::count(other, u"EXISTS"), std::nullopt) << other;
    EXPECT_EQ(IMAPResponse::list("* list (\\A NIL \\Trash) NIL {5}\r\nLixo\"\r\n"),
              (IMAPResponse::Listing{{QStringLiteral("\\A"), QStringLiteral("\\Trash")},
                                     QStringLiteral("Lixo\"")}));
    for (const char *other : {"* LSUB () NIL a", "* LIST a NIL a", "* LIST () NIL NIL"})
        EXPECT_EQ(IMAPResponse::list(other), std::nullopt) << other;
    EXPECT_THAT(IMAPResponse::search("* search 3  4294967296 x 1 +2 -1 (9)\r\n"),
                Optional(ElementsAre(3u, 1u, 2u)));
    EXPECT_THAT(IMAPResponse::search("* SEARCH"), Optional(ElementsAre()));
    EXPECT_EQ(IMAPResponse::search("*"), std::nullopt);
    EXPECT_THAT(IMAPResponse::code(u"A", "* OK [B 1] [a 4294967295x"), Optional(4294967295u));
    for (const char *other : {"A 42", "[A]", "[A x]", "[A 4294967296]", "[A 42\xC2\xBD]"})
        EXPECT_EQ(IMAPResponse::code(u"A", other), std::nullopt) << other;
}

TEST(IMAPResponse, ReadsCapabilities)
{
    using Words = QSet<QString>;
    EXPECT_THAT(IMAPResponse::capabilities("* CAPABILITY IMAP4rev1\nIDLE\r\n"),
                Optional(Words{"IMAP4REV1", "IDLE\r\n"}));
    EXPECT_THAT(IMAPResponse::capabilities("n1 OK [capability idle  move idle] done"),
                Optional(Words{"IDLE", "MOVE"}));
    EXPECT_THAT(IMAPResponse::capabilities("* OK [CAPABILITY ]"), Optional(Words()));
    EXPECT_EQ(IMAPResponse::capabilities("* OK CAPABILITY"), std::nullopt);
}

TEST(IMAPResponse, ReadsEachLineAsOneThing)
{
    const QByteArray body = "[CAPABILITY IDLE] [A 1]";
    const QByteArray fetch = "* 1 FETCH (BODY[] {23}\r\n" + body + ")";
    EXPECT_EQ(IMAPResponse::fetch(fetch).value().body, body);
    EXPECT_EQ(IMAPResponse::capabilities(fetch), std::nullopt);
    EXPECT_EQ(IMAPResponse::code(u"A", fetch), std::nullopt);
    EXPECT_EQ(IMAPResponse::count("* SEARCH 2 5", u"2"), std::nullopt);
    EXPECT_EQ(IMAPResponse::read(QByteArray(200'000, '[') + "A 5]").index(), 0u);
}

} // namespace
} // namespace velmo
