#include "VelmoCore/Mail/LoginCodeDetector.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/FoldedText.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <set>

namespace velmo {
namespace {

std::optional<QString> codeOf(const QString &subject, const QString &text)
{
    return LoginCodeDetector::detect(subject, text, {}).code;
}

QString repeated(const char *text, int count)
{
    return QString::fromUtf8(text).repeated(count);
}

} // namespace

TEST(LoginCodeDetector, TellsACodeFromOtherNumbers)
{
    const std::pair<QString, QString> accepted[] = {
        {"123 456.", "123456"},     {"123-4567", "1234567"},    {"1234-5678", "12345678"},
        {"AB1D-EF2H", "AB1D-EF2H"}, {"٤٨٢٩١٣", "٤٨٢٩١٣"},       {"2100", "2100"},
        {"1899", "1899"},           {"R$    482913", "482913"}, {"4521, 2", "4521"}};
    for (const auto &[text, code] : accepted)
        EXPECT_EQ(codeOf("Oi", "CO\u0301DIGO " + text), code) << qPrintable(text);
    const QStringList refused = {"ABCD-EFGH",
                                 "ab1d-ef2h",
                                 "123456789",
                                 "2024",
                                 "٢٠٢٤",
                                 "R$ 482913",
                                 "€ 4829",
                                 "R$ 1234,56",
                                 "ref/4521 #4521 x.4521",
                                 "4521@a 4521_ 4521/7 4521-",
                                 "123-456-7"};
    for (const QString &text : refused)
        EXPECT_EQ(codeOf("Oi", "code " + text), std::nullopt) << qPrintable(text);
    EXPECT_EQ(codeOf("", QString::fromUtf16(u"code \xD83D 4521\xDE00")), "4521");
    for (const char *text : {"PIN 4521", "spin 4521", "cod 4521"})
        EXPECT_EQ(codeOf("Oi", text), std::nullopt) << text;
}

TEST(LoginCodeDetector, TakesTheCodeNearestToItsWord)
{
    const std::tuple<QString, QString, std::optional<QString>> cases[] = {
        {"Seu código é 482913", "code 7777", "482913"},
        {"4829 is your pass, says 5555's code", "", "5555"},
        {"4829 for you", "code 7777", "7777"},
        {"Your verification code", "Use 123 456 to continue", "123456"},
        {"", "1111 code 2222", "1111"},
        {"", "111111 code 2222", "2222"},
        {"", "code" + repeated(" ", 216) + "4521", "4521"},
        {"", "code" + repeated(" ", 217) + "4521", {}},
        {"code" + repeated(" ", 217) + "4521", "", "4521"},
        {"", " pin pin" + repeated(" ", 214) + "4521", {}},
        // Distances are those of the original, which folding makes longer or shorter.
        {"", "code" + repeated("ﬃ", 214) + "  4521", "4521"},
        {"", "code" + repeated("e\u0301", 108) + "  4521", {}}};
    for (const auto &[subject, body, code] : cases)
        EXPECT_EQ(codeOf(subject, body), code) << qPrintable(subject + "|" + body);
}

TEST(LoginCodeDetector, ReadsThreeThousandCharacters)
{
    for (const char *character : {"a", "e\u0301\u0302", "👨‍👩‍👧‍👦", "\r\n"}) {
        const QString code = " code 4521";
        EXPECT_EQ(codeOf("", repeated(character, 2990) + code + " "), "4521") << character;
        EXPECT_EQ(codeOf("", repeated(character, 2991) + code + repeated("b", 9000)), std::nullopt);
    }
}

TEST(LoginCodeDetector, ChoosesTheLinkThatSignsIn)
{
    const std::pair<std::vector<MailLink>, int> cases[] = {
        {{{"Home", {"https://a.b/"}}, {"Clique", {"https://a.b/continueto"}}}, 1},
        {{{"Olá", {"https://a.b/auth"}}, {"ENTRAR", {"https://a.b/"}}, {"Login", {}}}, 1},
        {{{"Login", {"https://a.b/"}}, {"Verify", {"https://a.b/LOGIN"}}}, 1},
        {{{"Login", {"https://a.b/"}}, {"Login", {"https://a.c/"}}}, 0},
        {{{"Unsubscribe: login", {"https://a.b/login"}}, {"Login", {"https://a.b/Settings"}}}, -1},
        {{{"Preferências de login", {"https://a.b/"}}, {"Home", {"https://a.b/"}}}, -1},
        {{{"Login", {"https://x.com/a"}}, {"Login", {"https://www.X.com/a"}}}, -1},
        {{{"Login", {"https://dropbox.com/a"}}}, 0},
        {{{"Login", {"https://netflix.com/?to=https://x.com/"}}}, -1},
        {{{"Login", {"https://fa-x.com/a"}}}, 0}};
    for (const auto &[links, best] : cases) {
        const auto url = best < 0 ? std::nullopt : std::optional(links[std::size_t(best)].url);
        const auto found = LoginCodeDetector::detect("Confirm your account", "4521", links);
        EXPECT_EQ(found, (LoginCodeDetector::Detection{{}, url})) << qPrintable(links[0].text);
        EXPECT_EQ(LoginCodeDetector::detect("", "Your code: 4521. Magic link:", links),
                  (LoginCodeDetector::Detection{"4521", url}));
        EXPECT_EQ(LoginCodeDetector::detect("", "A Magic Link", links).url, url);
        EXPECT_EQ(LoginCodeDetector::detect("Oi", "login", links).url, std::nullopt);
    }
}

TEST(LoginCodeDetector, FindsNoMoreInATextThatIsCut)
{
    const QString whole = "Olá 👋, código: AB1D-EF2H ou 123 456, R$ 77,50.";
    std::set<std::optional<QString>> found;
    for (qsizetype end = 0; end <= whole.size(); ++end)
        found.insert(codeOf("", whole.first(end)));
    EXPECT_EQ(found, (std::set<std::optional<QString>>{{}, "AB1D-EF2", "AB1D-EF2H"}));
}

TEST(FoldedText, FoldsEachCharacterAsTextDoes)
{
    QString text;
    for (char32_t character = 0; character < 0x20000; ++character)
        text += QString::fromUcs4(&character, 1) + u' ';
    const FoldedText whole(text);
    QStringView rest = whole.folded;
    for (char32_t character = 0; character < 0x20000; ++character) {
        const QString alone = QString::fromUcs4(&character, 1);
        const bool isHangul = character >= 0xAC00 && character < 0xD7A4;
        const QString folded = isHangul ? alone : Text::folded(alone);
        ASSERT_TRUE(rest.startsWith(folded + u' ')) << unsigned(character);
        rest = rest.sliced(folded.size() + 1);
    }
    EXPECT_TRUE(rest.isEmpty());
    EXPECT_EQ(FoldedText(QString("ﬁ\u0301😀ß")).origins, (std::vector<qsizetype>{0, 0, 2, 2, 4, 4}));
}

} // namespace velmo
