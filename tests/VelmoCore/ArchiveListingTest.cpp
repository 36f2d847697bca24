#include "VelmoCore/Files/ArchiveListing.h"

#include "VelmoCore/Files/NameEncoding.h"

#include "tests/support/Printers.h"

#include <QStringEncoder>

#include <gtest/gtest.h>

#include <limits>

namespace velmo {
namespace {

using Entries = std::vector<ArchiveEntry>;
using Error = ArchiveError;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

TEST(ArchiveListing, ReadsABlockAnEntry)
{
    EXPECT_EQ(ArchiveListing::parseTechnicalListing(text("Path = pasta\n"
                                                         "Folder = +\n"
                                                         "Size = 0\n"
                                                         "\n"
                                                         "Comment = no path\n"
                                                         "\n\n"
                                                         "Path = a = b ção.txt\n"
                                                         "Size = 12\n"
                                                         "Attributes = A_ -rw-r--r--\n"
                                                         "noise\n"
                                                         "\n"
                                                         "Path = d\n"
                                                         "Size = \n"
                                                         "Attributes = D drwxr-xr-x\n"
                                                         "\n"
                                                         "Path = xar\n"
                                                         "Mode = drwxr-xr-x")),
              (Entries{{text("pasta"), 0, true},
                       {text("a = b ção.txt"), 12, false},
                       {text("d"), 0, true},
                       {text("xar"), 0, true}}));
    EXPECT_EQ(ArchiveListing::parseTechnicalListing(QString()), Entries());
}

TEST(ArchiveListing, ReadsALineAnEntry)
{
    EXPECT_EQ(ArchiveListing::parseTarListing(
                  text("drwxr-xr-x  0 root   root        0 Jan  2 03:04 fotos/\n"
                       "-rw-r--r--  0 1000   1000    34567 Jan  2  2024 fotos/a  b.png\n"
                       "lrwxrwxrwx  0 root   root        0 Jan  2 03:04 atalho -> /etc/passwd\n"
                       "short line\n\n")),
              (Entries{{text("fotos/"), 0, true},
                       {text("fotos/a  b.png"), 34567, false},
                       {text("atalho"), 0, false}}));
}

TEST(ArchiveListing, TellsWhatAToolsFailureMeans)
{
    const auto seven = [](const char *said, int status, bool given) {
        return ArchiveListing::classify7z(text(said), status, given).description();
    };
    EXPECT_EQ(seven("ERROR: Wrong password : a", 2, false),
              text("Este arquivo está protegido por senha."));
    EXPECT_EQ(seven("ERROR: Wrong password : a", 2, true), text("Senha incorreta."));
    EXPECT_EQ(seven("Enter password (will not be echoed):\nBreak signaled", 255, false),
              text("Este arquivo está protegido por senha."));
    EXPECT_EQ(seven("Enter password", 2, false), text("A extração falhou (código 2)."));
    EXPECT_EQ(seven("a.zip\nCannot open the file as archive", 2, false),
              text("Formato ou recurso não suportado: o arquivo não é um formato compactado "
                   "reconhecido ou está danificado."));
    EXPECT_EQ(seven("ERROR: Unsupported Method : a", 2, false),
              text("Formato ou recurso não suportado: método de compressão não suportado."));
    EXPECT_EQ(seven("scanning\nERROR: disk full\nERROR: more", 2, false), text("ERROR: disk full"));

    const auto tar = [](const char *said, bool given) {
        return ArchiveListing::classify(text(said), given).description();
    };
    EXPECT_EQ(tar("bsdtar: Incorrect passphrase", true), text("Senha incorreta."));
    EXPECT_EQ(tar("bsdtar: Passphrase required for this entry", false),
              text("Este arquivo está protegido por senha."));
    EXPECT_EQ(tar("bsdtar: disk full\n", false), text("bsdtar: disk full"));
    EXPECT_EQ(tar("", false), text("A extração falhou."));
}

TEST(ArchiveListing, CutsAllOfTheExtension)
{
    const std::pair<const char *, const char *> cases[] = {
        {"fotos.tar.gz", "fotos"}, {"Fotos.TGZ", "Fotos"}, {"a.b.zip", "a.b"},
        {".zip", ".zip"},          {"sem", "sem"},         {"x.tar", "x"}};
    for (const auto &[name, base] : cases)
        EXPECT_EQ(ArchiveListing::baseName(text(name)), text(base));
}

TEST(ArchiveListing, RefusesWhatLeavesTheFolderOrIsTooLarge)
{
    const auto refusal = [](const Entries &entries,
                            qint64 limit = 100) -> std::optional<Error::Value> {
        try {
            ArchiveListing::check(entries, limit);
        } catch (const Error &error) {
            return error.value();
        }
        return std::nullopt;
    };
    for (const char *path : {"../mal", "a/../../mal", "/etc/passwd", "a/.."})
        EXPECT_EQ(refusal({{text(path)}}), Error::Value(Error::UnsafeEntry{text(path)}));
    for (const char *path : {"a/..b", "..a", "a.../b"})
        EXPECT_EQ(refusal({{text(path)}}), std::nullopt);

    const qint64 huge = std::numeric_limits<qint64>::max();
    EXPECT_EQ(refusal({{text("a"), 60}, {text("b"), 40}}), std::nullopt);
    EXPECT_EQ(refusal({{text("a"), 60}, {text("b"), 41}}), Error::Value(Error::TooLarge{100}));
    EXPECT_EQ(refusal({{text("a"), huge}, {text("b"), huge}}, huge),
              Error::Value(Error::TooLarge{huge}));
    EXPECT_EQ(refusal({{text("a"), -90}, {text("b"), 101}}), Error::Value(Error::TooLarge{100}));
}

TEST(NameEncoding, FindsTheCodePageOfNames)
{
    const std::pair<const char *, std::vector<const char *>> cases[] = {
        {"CP850", {"São João.txt"}},
        {"CP850", {"ação/coração.txt", "plain.txt"}},
        {"CP850", {"ÁREA ÚTIL", "AÇÃO.TXT", "Über", "1º ano"}},
        {"CP850", {"ñandú.txt", "año"}},
        {"CP850", {"é.txt", "À tarde"}},
        {"CP437", {"ñandú/5√2.txt", "1≤2"}},
        {"CP1252", {"ação/coração.txt", "café – à la carte"}},
        {"CP932", {"日本語テキスト.txt"}},
        {"CP932", {"表示/ソース.txt", "新しいフォルダー/写真1.jpg"}},
        {"CP932", {"見積書.xlsx", "ｶﾀｶﾅ.txt", "議事録.txt"}},
        {"GBK", {"中文文件.txt"}},
        {"GBK", {"新建文件夹/测试.txt", "第1章.doc", "照片.png"}},
        {"GBK", {"简历（张伟）.pdf"}}};
    for (const auto &[page, names] : cases) {
        QByteArray bytes;
        QString all;
        for (const char *name : names) {
            all += text(name) + u'\n';
            bytes += QByteArray(QStringEncoder(page)(text(name))) + '\n';
        }
        EXPECT_EQ(NameEncoding::guess(bytes), QByteArray(page)) << names.front();
        EXPECT_EQ(NameEncoding::decoded("não\n" + bytes, page), text("não\n") + all);
    }
    EXPECT_EQ(NameEncoding::guess(text("ação\n日本語\n").toUtf8()), std::nullopt);
    EXPECT_EQ(NameEncoding::guess("caf\x82\n" + text("ação\n").toUtf8()), QByteArray("CP850"));
    EXPECT_EQ(ArchiveListing::unescaped("a\\207\\306o \\\\207 \\033 \\n \\"),
              QByteArray("a\207\306o \\\\207 \\033 \\n \\"));
}

} // namespace velmo
