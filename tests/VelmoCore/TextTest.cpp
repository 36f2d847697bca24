#include "VelmoCore/Foundation/Text.h"

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Uuid.h"

#include "tests/support/Printers.h"

#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

#include <random>

namespace velmo {

TEST(Text, CountsAndCutsWhatAReaderTakesForACharacter)
{
    const std::tuple<QString, qsizetype, QString> cases[] = {
        {"", 0, ""},
        {"ac\u0327a\u0303o", 4, "ac\u0327"},
        {"a\r\nb", 3, "a\r\n"},
        {"👍🏽👍🏽x", 3, "👍🏽👍🏽"},
        {"🇧🇷🇵🇹!", 3, "🇧🇷🇵🇹"},
        {"👨‍👩‍👧‍👦ab", 3, "👨‍👩‍👧‍👦a"},
        {"नि", 1, "नि"}};
    for (const auto &[text, count, firstTwo] : cases) {
        EXPECT_EQ(Text::characterCount(text), count) << qPrintable(text);
        EXPECT_EQ(Text::prefix(text, 2), firstTwo);
        EXPECT_EQ(Text::prefix(text, 0), "");
        EXPECT_EQ(Text::prefix(text, count + 1), text);
    }
    EXPECT_EQ(Text::characterCount(QStringView(u"ação").sliced(1, 2)), 2);

    const QStringList pieces = {"a", "\r", "\n", "\u0301", "©", "\u200D", "👍", "\u00AD", "—", "🇧🇷"};
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        QString text;
        while (text.size() < 8)
            text += pieces[qsizetype(random() % std::size_t(pieces.size()))];
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        for (qsizetype count = 0, end = 0; end >= 0; end = finder.toNextBoundary(), ++count) {
            ASSERT_EQ(Text::prefix(text, count).size(), end) << qPrintable(text);
            ASSERT_EQ(Text::characterCount(QStringView(text).first(end)), count);
        }
    }
}

TEST(Text, CountsEachCharacterAsUnicodeDoes)
{
    for (char16_t unit = 1; unit < 0xFFFE; ++unit) {
        const QString text = u'a' + QString(QChar(unit)) + u'b';
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        ASSERT_EQ(Text::prefixLength(text, 1), finder.toNextBoundary()) << unsigned(unit);
        ASSERT_EQ(Text::prefixLength(text, 2), finder.toNextBoundary()) << unsigned(unit);
    }
}

TEST(Text, FoldsWhatReadsAlike)
{
    const std::pair<QString, QString> cases[] = {
        {"Ação", "acao"},      {"AC\u0327A\u0303O", "acao"}, {"STRASSE", "strasse"},
        {"Straße", "strasse"}, {"ﬁm № ①", "fim no 1"},       {"İstanbul", "istanbul"},
        {"ＡＢＣ", "abc"},     {"ΣΊΣΥΦΟΣ", "σισυφοσ"},       {"Ёлка", "елка"}};
    for (const auto &[text, folded] : cases) {
        EXPECT_EQ(Text::folded(text), folded);
        EXPECT_EQ(Text::folded(folded), folded);
    }
    // Long enough that more than linear time is noticed, and with pairs at any place.
    const QString bold = QString("é𝐀").repeated(300'000);
    EXPECT_EQ(Text::folded("Ç" + bold), "c" + QString("ea").repeated(300'000));
}

TEST(Text, FoldsALongTextAsItFoldsItWhole)
{
    const QStringList pieces = {"a",      "É",       "ﬁ",      "각",  "が",         "👋",
                                "\u0301", "\u0323",  "\u302E", "한",  "\U0001E000", "\U0001D165",
                                "\u0340", "é\u0316", "𝐀",      "\r\n"};
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        QString text;
        while (text.size() < 200)
            text += pieces[qsizetype(random() % std::size_t(pieces.size()))];
        QList<uint> whole = text.normalized(QString::NormalizationForm_KD).toUcs4();
        whole.removeIf([](uint character) { return QChar::isMark(character); });
        const auto *units = reinterpret_cast<const char32_t *>(whole.constData());
        ASSERT_EQ(Text::folded(text),
                  QString::fromUcs4(units, whole.size()).toUpper().toCaseFolded());
    }
}

TEST(Date, WritesAndReadsWholeSecondsInUTC)
{
    const std::pair<double, QString> cases[] = {{0, "1970-01-01T00:00:00Z"},
                                                {951'827'696, "2000-02-29T12:34:56Z"},
                                                {-1, "1969-12-31T23:59:59Z"},
                                                {-62'135'596'800, "0001-01-01T00:00:00Z"},
                                                {253'402'300'799, "9999-12-31T23:59:59Z"}};
    for (const auto &[seconds, text] : cases) {
        EXPECT_EQ(iso8601Text(Date{Seconds{seconds}}), text);
        EXPECT_EQ(iso8601Text(Date{Seconds{seconds + 0.75}}), text);
        EXPECT_EQ(dateFromISO8601(text), Date{Seconds{seconds}});
    }
}

TEST(Date, KeepsWhatItWritesReadable)
{
    EXPECT_EQ(iso8601Text(Date{-Seconds::max()}), "0001-01-01T00:00:00Z");
    EXPECT_EQ(iso8601Text(Date{Seconds::max()}), "9999-12-31T23:59:59Z");
}

TEST(Date, ReadsNoOtherForm)
{
    for (const QString text :
         {"", "2026-03-14T09:26:53", "2026-03-14 09:26:53Z", "2026-03-14T09:26:53.5Z",
          "1900-02-29T00:00:00Z", "2026-04-31T00:00:00Z", "0000-01-01T00:00:00Z",
          "2026-03-14T24:00:00Z", "2026-03-14T09:60:00Z", "2026-06-30T23:59:60Z",
          "2026-03-14T-9:26:53Z", "٢٠٢٦-03-14T09:26:53Z"})
        EXPECT_FALSE(dateFromISO8601(text)) << qPrintable(text);
}

TEST(Uuid, WritesUpperCaseAndReadsEitherCase)
{
    const QString text = "6F9619FF-8B86-D011-B42D-00CF4FC964FF";
    const auto uuid = uuidFromText(text.toLower());
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuidText(*uuid), text);
    EXPECT_EQ(uuidFromText(uuidText(Uuid())), Uuid());

    for (const QString &other : {QString(), u'{' + text + u'}', text + u'x', text.chopped(1),
                                 text.left(35) + u'G', QString(text).remove(u'-')})
        EXPECT_FALSE(uuidFromText(other)) << qPrintable(other);
}

} // namespace velmo
