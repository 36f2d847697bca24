#include "VelmoCore/Clipboard/ClipboardClassifier.h"
#include "VelmoCore/Clipboard/UriList.h"
#include "VelmoCore/Foundation/Text.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {

TEST(ClipboardClassifier, TellsColoursAndWebAddressesFromTexts)
{
    const std::pair<const char16_t *, ClipKind> cases[] = {
        {u"#FFF", ClipKind::color},
        {u" #ffffff\n", ClipKind::color},
        {u"#FFFFFF80", ClipKind::color},
        {u"ffffff", ClipKind::color},
        {u"fff", ClipKind::text},
        {u"#FFFF", ClipKind::text},
        {u"FFFFFF80", ClipKind::text},
        {u"+fffff", ClipKind::text},
        {u"#f f", ClipKind::text},
        {u"\u0661\u0661\u0661\u0661\u0661\u0661", ClipKind::text},
        {u" HTTPS://exemplo.org/ação?a={b} ", ClipKind::link},
        {u"http://[::1]:80/", ClipKind::link},
        {u"https://exemplo.org/%zz", ClipKind::link},
        {u"https://exemplo.org/a b", ClipKind::text},
        {u"https://exemplo.org\nhttps://exemplo.org", ClipKind::text},
        {u"https://", ClipKind::text},
        {u"https:///caminho", ClipKind::text},
        {u"https://exemplo.org:99999/", ClipKind::text},
        {u"httpss://exemplo.org", ClipKind::text},
        {u"ftp://exemplo.org/a", ClipKind::text},
        {u"ana@exemplo.org", ClipKind::text},
        {u"palavra", ClipKind::text},
    };
    for (const auto &[text, kind] : cases)
        EXPECT_EQ(ClipboardClassifier::kind(QString::fromUtf16(text)), kind)
            << QString::fromUtf16(text).toStdString();
    EXPECT_EQ(ClipboardClassifier::hexColor(u"#f08"_qs),
              (ClipboardClassifier::Color{1, 0, 136 / 255.0, 1}));
    EXPECT_EQ(ClipboardClassifier::hexColor(u"#00FF0033"_qs)->alpha, 0.2);
}

TEST(ClipItems, CutsALongTextBeforeItsSignature)
{
    const auto item = [](const QString &text) { return ClipItems::fromText(text, {}, Date{}); };
    const QString whole(100'000, u'x');
    EXPECT_EQ(item(whole + u'y')->text, whole);
    EXPECT_EQ(item(whole + u'y')->signature, item(whole)->signature);
    EXPECT_EQ(item(u" \n\u00a0"_qs), std::nullopt);
    EXPECT_EQ(item(u" a\n"_qs)->text, u" a\n"_qs);

    const QString flags = u"🇧🇷"_qs.repeated(100'001);
    EXPECT_EQ(item(flags)->text->size(), 400'000);
    const QString marks = u'a' + QString(1'000'000, QChar(0x0301));
    EXPECT_LE(item(marks)->text->size(), ClipItems::mostUnits);
    const QString lone = u'a' + QString(QChar(0xD800)) + QChar(0xDC00) + QChar(0xDC00);
    EXPECT_EQ(item(lone)->text, u"a\U00010000?"_qs);
}

TEST(UriList, TakesFilesOnceAndNothingThatCannotBeOpened)
{
    const auto paths = [](const QByteArray &list) {
        QStringList found;
        for (const QUrl &url : UriList::files(list))
            found.append(url.toLocalFile());
        return found.join(u' ');
    };
    EXPECT_EQ(paths("# comment\r\nfile:///a%20b\r\nfile:///c\r\nfile:///c\r\n"), "/a b /c");
    EXPECT_EQ(paths("copy\nfile:///a\nhttps://exemplo.org/x\n/b\n"), "/a");
    EXPECT_EQ(paths(QByteArray("copy\nfile:///a\0", 15)), "/a");
    EXPECT_EQ(paths("file:///%zz\nfile:///100%\n"), "/%zz /100%");
    EXPECT_EQ(paths("file:///%FF\nfile:///a%00b\nfile:///\xff\nfile:b\nfile:\n\n"), "");
    EXPECT_EQ(UriList::files(QByteArray("file:///a\n").repeated(3)).size(), 1U);
    const auto files = UriList::files("file:///a%20b%25\nfile:///%C3%A7\n");
    EXPECT_EQ(UriList::files(UriList::text(files)), files);
}

} // namespace velmo
