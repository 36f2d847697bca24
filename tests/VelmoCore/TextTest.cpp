#include "VelmoCore/Foundation/Text.h"

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Uuid.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmo {

TEST(Text, CountsAndCutsWhatAReaderTakesForACharacter)
{
    const struct {
        QString text;
        qsizetype count;
        QString firstTwo;
    } cases[] = {{u""_qs, 0, u""_qs},
                 {u"ação"_qs, 4, u"aç"_qs},
                 {u"ac\u0327a\u0303o"_qs, 4, u"ac\u0327"_qs},
                 {u"a\r\nb"_qs, 3, u"a\r\n"_qs},
                 {u"👍🏽👍🏽x"_qs, 3, u"👍🏽👍🏽"_qs},
                 {u"🇧🇷🇵🇹!"_qs, 3, u"🇧🇷🇵🇹"_qs},
                 {u"👨‍👩‍👧‍👦ab"_qs, 3, u"👨‍👩‍👧‍👦a"_qs},
                 {u"한국어"_qs, 3, u"한국"_qs},
                 {u"नि"_qs, 1, u"नि"_qs}};
    for (const auto &[text, count, firstTwo] : cases) {
        EXPECT_EQ(Text::characterCount(text), count) << qPrintable(text);
        EXPECT_EQ(Text::prefix(text, 2), firstTwo);
        EXPECT_EQ(Text::prefix(text, 0), u""_qs);
        EXPECT_EQ(Text::prefix(text, count + 1), text);
    }
    EXPECT_EQ(Text::characterCount(QStringView(u"ação").sliced(1, 2)), 2);
}

TEST(Text, FoldsWhatReadsAlike)
{
    const struct {
        QString text;
        QString folded;
    } cases[] = {{u"Ação"_qs, u"acao"_qs},       {u"AC\u0327A\u0303O"_qs, u"acao"_qs},
                 {u"STRASSE"_qs, u"strasse"_qs}, {u"Straße"_qs, u"strasse"_qs},
                 {u"ﬁm № ①"_qs, u"fim no 1"_qs}, {u"İstanbul"_qs, u"istanbul"_qs},
                 {u"ＡＢＣ"_qs, u"abc"_qs},      {u"ΣΊΣΥΦΟΣ"_qs, u"σισυφοσ"_qs},
                 {u"Ёлка"_qs, u"елка"_qs}};
    for (const auto &[text, folded] : cases) {
        EXPECT_EQ(Text::folded(text), folded);
        EXPECT_EQ(Text::folded(folded), folded);
    }
}

TEST(Date, WritesAndReadsWholeSecondsInUTC)
{
    const struct {
        double seconds;
        QString text;
    } cases[] = {{0, u"1970-01-01T00:00:00Z"_qs},
                 {1'773'480'413, u"2026-03-14T09:26:53Z"_qs},
                 {951'827'696, u"2000-02-29T12:34:56Z"_qs},
                 {-1, u"1969-12-31T23:59:59Z"_qs},
                 {-62'135'596'800, u"0001-01-01T00:00:00Z"_qs},
                 {253'402'300'799, u"9999-12-31T23:59:59Z"_qs}};
    for (const auto &[seconds, text] : cases) {
        EXPECT_EQ(iso8601Text(Date{Seconds{seconds}}), text);
        EXPECT_EQ(iso8601Text(Date{Seconds{seconds + 0.75}}), text);
        EXPECT_EQ(dateFromISO8601(text), Date{Seconds{seconds}});
    }
}

TEST(Date, KeepsWhatItWritesReadable)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(iso8601Text(Date{Seconds{-infinity}}), u"0001-01-01T00:00:00Z"_qs);
    EXPECT_EQ(iso8601Text(Date{Seconds{infinity}}), u"9999-12-31T23:59:59Z"_qs);
}

TEST(Date, ReadsNoOtherForm)
{
    const QString others[] = {u""_qs,
                              u"2026-03-14T09:26:53"_qs,
                              u"2026-03-14 09:26:53Z"_qs,
                              u"2026-03-14T09:26:53z"_qs,
                              u"2026-03-14T09:26:53.5Z"_qs,
                              u"2026-03-14T09:26:53+00:00"_qs,
                              u"1900-02-29T00:00:00Z"_qs,
                              u"2026-04-31T00:00:00Z"_qs,
                              u"0000-01-01T00:00:00Z"_qs,
                              u"2026-03-14T24:00:00Z"_qs,
                              u"2026-03-14T09:60:00Z"_qs,
                              u"2026-06-30T23:59:60Z"_qs,
                              u"2026-03-14T-9:26:53Z"_qs,
                              u"٢٠٢٦-03-14T09:26:53Z"_qs};
    for (const auto &text : others)
        EXPECT_FALSE(dateFromISO8601(text)) << qPrintable(text);
}

TEST(Uuid, WritesUpperCaseAndReadsEitherCase)
{
    const auto text = u"6F9619FF-8B86-D011-B42D-00CF4FC964FF"_qs;
    const auto uuid = uuidFromText(text.toLower());
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuidText(*uuid), text);
    EXPECT_EQ(uuidFromText(text), uuid);
    EXPECT_EQ(uuidFromText(uuidText(Uuid())), Uuid());

    for (const auto &other : {u""_qs, u"{%1}"_qs.arg(text), text + u"x"_qs, text.chopped(1),
                              text.left(35) + u"G"_qs, QString(text).remove(u'-')})
        EXPECT_FALSE(uuidFromText(other)) << qPrintable(other);
}

} // namespace velmo
