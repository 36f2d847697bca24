#include "VelmoCore/Files/FileNaming.h"

#include "VelmoCore/Files/PageRanges.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <set>

namespace velmo {
namespace {

QUrl file(const QString &name)
{
    return QUrl::fromLocalFile(u"/pasta/"_qs + name);
}

} // namespace

TEST(FileNaming, CountsOnToAFreeName)
{
    const auto unique = [](const char16_t *name, const std::set<QString> &taken) {
        const auto exists = [&](const QUrl &url) { return taken.contains(url.fileName()); };
        return FileNaming::uniqueURL(file(QString::fromUtf16(name)), exists).fileName();
    };
    EXPECT_EQ(unique(u"nota.txt", {}), u"nota.txt");
    EXPECT_EQ(unique(u"nota.txt", {u"nota.txt"_qs, u"nota 2.txt"_qs}), u"nota 3.txt");
    EXPECT_EQ(unique(u"nota 9.txt", {u"nota 9.txt"_qs}), u"nota 10.txt");
    EXPECT_EQ(unique(u"Docs", {u"Docs"_qs}), u"Docs 2");
    EXPECT_EQ(unique(u".perfil", {u".perfil"_qs}), u".perfil 2");
    EXPECT_EQ(unique(u"a%2Cb%1 7.txt", {u"a%2Cb%1 7.txt"_qs}), u"a%2Cb%1 8.txt");
    EXPECT_EQ(unique(u"a 99999999999999999999.b", {u"a 99999999999999999999.b"_qs}),
              u"a 99999999999999999999 2.b");
    EXPECT_EQ(FileNaming::uniqueURL(QUrl(u"file:///p/Docs/"_qs),
                                    [](const QUrl &url) { return url.fileName() != u"Docs 2"; }),
              QUrl(u"file:///p/Docs 2"_qs));
}

TEST(FileNaming, NamesAnOutputAfterItsSource)
{
    EXPECT_EQ(FileNaming::output(file(u"a.b.png"_qs)), file(u"a.b.png"_qs));
    EXPECT_EQ(FileNaming::output(file(u"a.png"_qs), {}, u"cópia"_qs, u"jpg"_qs),
              file(u"a cópia.jpg"_qs));
    EXPECT_EQ(FileNaming::output(file(u"a.png"_qs), QUrl::fromLocalFile(u"/outra"_qs), {}, u""_qs),
              QUrl::fromLocalFile(u"/outra/a"_qs));
}

TEST(FileNaming, TellsNamesThatAFileCanHave)
{
    for (const QString &name : {u"a"_qs, u" a."_qs, QString(255, u'ã')})
        EXPECT_TRUE(FileNaming::isValid(name)) << qPrintable(name);
    for (const QString &name :
         {u""_qs, u" "_qs, u"a/b"_qs, u"a:b"_qs, u".a"_qs, QString(256, u'a')})
        EXPECT_FALSE(FileNaming::isValid(name)) << qPrintable(name);
}

TEST(FileNaming, NamesABatchByItsPattern)
{
    std::vector files{file(u"praia.jpg"_qs), file(u"leia"_qs)};
    const auto names = [&](const char16_t *pattern, int start = 1) {
        const auto found =
            FileNaming::batchNames(files, QString::fromUtf16(pattern), start, Date{1'773'480'413s});
        return QStringList(found.begin(), found.end());
    };
    EXPECT_EQ(names(u"Foto-{n:3}", 7), (QStringList{u"Foto-007.jpg"_qs, u"Foto-008"_qs}));
    EXPECT_EQ(names(u"{nome}-{n}"), (QStringList{u"praia-1.jpg"_qs, u"leia-2"_qs}));
    EXPECT_EQ(names(u"{n}.{ext}"), (QStringList{u"1.jpg"_qs, u"2."_qs}));
    EXPECT_EQ(names(u"{data} {n}{n:2}.txt"),
              (QStringList{u"2026-03-14 101.txt"_qs, u"2026-03-14 202.txt"_qs}));
    EXPECT_LT(names(u"{n:999999999}").front().size(), 99);
    EXPECT_EQ(names(u"Dr. {nome}").front(), u"Dr. praia.jpg");
    EXPECT_EQ(names(u"Dr.{nome}").front(), u"Dr.praia.jpg");
    files = {file(u"{n:2}%1.txt"_qs)};
    EXPECT_EQ(names(u"{nome} {n}", 3), (QStringList{u"03%1 3.txt"_qs}));
}

TEST(PageRanges, ListPagesInTheOrderWritten)
{
    const auto pages = [](const char16_t *text) {
        return PageRanges::parse(QString::fromUtf16(text), 10);
    };
    EXPECT_EQ(pages(u"1-3, 5"), (std::vector{0, 1, 2, 4}));
    EXPECT_EQ(pages(u"8-"), (std::vector{7, 8, 9}));
    EXPECT_EQ(pages(u" -2 ,,"), (std::vector{0, 1}));
    EXPECT_EQ(pages(u"3,1,2,1-3"), (std::vector{2, 0, 1}));
}

TEST(PageRanges, SayWhatIsWrong)
{
    using Error = PageRanges::ParseError;
    const auto wrong = [](const char16_t *text) -> std::optional<Error::Value> {
        try {
            PageRanges::parse(QString::fromUtf16(text), 10);
        } catch (const Error &error) {
            return error.value();
        }
        return std::nullopt;
    };
    const std::pair<const char16_t *, const char16_t *> invalid[] = {
        {u"3-1", u"3-1"}, {u"1,1-2-3", u"1-2-3"}, {u"a", u"a"},
        {u"1-b", u"1-b"}, {u"12-", u"12-"},       {u" , ", u" , "}};
    for (const auto &[text, part] : invalid)
        EXPECT_EQ(wrong(text), Error::Value(Error::Invalid{QString::fromUtf16(part)}));
    const std::pair<const char16_t *, int> outside[] = {{u"0", 0}, {u"11", 11}, {u"9-12", 11}};
    for (const auto &[text, page] : outside)
        EXPECT_EQ(wrong(text), Error::Value(Error::OutOfBounds{page}));
}

} // namespace velmo
