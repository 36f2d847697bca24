#include "VelmoSystem/FileProcessing/FileOperations.h"

#include "VelmoSystem/FileProcessing/FileSummary.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace velmo {
namespace {

using FileOperations::OperationError;

class FileOperationsTest : public testing::Test {
protected:
    QUrl file(const char *name, const QByteArray &content = "conteúdo")
    {
        folder.write(QString::fromUtf8(name), content);
        return url(name);
    }
    QUrl url(const char *name) const
    {
        return QUrl::fromLocalFile(folder.path(QString::fromUtf8(name)));
    }
    QByteArray read(const char *name) const { return folder.read(QString::fromUtf8(name)); }
    std::vector<QUrl> renamed(const std::vector<QUrl> &urls, const char *pattern)
    {
        return FileOperations::batchRename(urls, QString::fromUtf8(pattern), 1, Date{0s},
                                           [](double) {});
    }
    static std::optional<OperationError::Value> error(const std::function<void()> &operation)
    {
        try {
            operation();
        } catch (const OperationError &error) {
            return error.value();
        }
        return std::nullopt;
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(FileOperationsTest, RenamesToAFreeAndValidNameOnly)
{
    const QUrl source = file("a.txt");
    file("b.txt", "meu");
    const auto rename = [&](const char *name) {
        return FileOperations::rename(source, QString::fromUtf8(name));
    };
    EXPECT_EQ(error([&] { rename(".a"); }),
              OperationError::Value(OperationError::InvalidName{".a"}));
    EXPECT_EQ(error([&] { rename("b.txt"); }),
              OperationError::Value(OperationError::NameTaken{"b.txt"}));
    EXPECT_EQ(rename("a.txt"), source);
    file("A.txt", "meu também");
    EXPECT_EQ(error([&] { rename("A.txt"); }),
              OperationError::Value(OperationError::NameTaken{"A.txt"}));
    EXPECT_EQ(folder.names().size(), 3);
    QFile::remove(url("A.txt").toLocalFile());
    EXPECT_EQ(rename("A.txt"), url("A.txt"));
    EXPECT_EQ(folder.names(), (QStringList{"A.txt", "b.txt"}));
}

TEST_F(FileOperationsTest, RenamesABatchThroughNamesThatItGivesItself)
{
    const std::vector files{file("2.txt", "um"), file("1.txt", "dois"), file("x", "três")};
    file("3", "meu");
    EXPECT_EQ(renamed(files, "{n}"), (std::vector{url("1.txt"), url("2.txt"), url("3 2")}));
    EXPECT_EQ(read("1.txt") + read("2.txt") + read("3 2") + read("3"), "umdoistrêsmeu");
    EXPECT_EQ(error([&] {
                  renamed({url("1.txt"), url("2.txt")}, "{nome}:{n}");
              }),
              OperationError::Value(OperationError::InvalidName{"1:1.txt"}));
    EXPECT_THROW(renamed({url("1.txt"), url("nada")}, "novo {n}"), FileError);
    EXPECT_THROW(renamed({url("1.txt")}, QByteArray(128, 'x').replace("x", "é").constData()),
                 FileError);
    EXPECT_EQ(folder.names(), (QStringList{"1.txt", "2.txt", "3", "3 2"}));
}

TEST_F(FileOperationsTest, DuplicatesMovesAndOrganizesBesideWhatStands)
{
    const QUrl document = file("a.PDF");
    EXPECT_EQ(FileOperations::duplicate({document, document}),
              (std::vector{url("a cópia.PDF"), url("a cópia 2.PDF")}));
    file("pasta/a.PDF", "meu");
    EXPECT_EQ(FileOperations::move({document}, url("pasta/")), std::vector{url("pasta/a 2.PDF")});
    EXPECT_EQ(read("pasta/a.PDF"), "meu");

    std::vector<double> shares;
    EXPECT_EQ(FileOperations::organizeByExtension(
                  {url("pasta"), file("b.pdf"), file("nada"), file(".perfil.txt")},
                  [&](double share) { shares.push_back(share); }),
              (std::vector{url("PDF/b.pdf"), url("Sem extensão/nada"), url("TXT/.perfil.txt")}));
    EXPECT_EQ(shares, (std::vector{0.0, 0.25, 0.5, 0.75}));
    file("GZ", "no folder");
    EXPECT_THROW(FileOperations::organizeByExtension({file("c.gz")}, [](double) {}), FileError);
    EXPECT_THROW(FileOperations::organizeByExtension({url("nada.zip")}, [](double) {}), FileError);
    EXPECT_TRUE(QFile::exists(url("c.gz").toLocalFile()));
    EXPECT_FALSE(QFile::exists(url("ZIP").toLocalFile())) << "no folder for nothing";
}

TEST_F(FileOperationsTest, SaysOfAFileWhatItIs)
{
    QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));
    const FileSummary text = FileSummary::make(file("a.pdf", QByteArray(1'230'000, '%')));
    EXPECT_EQ(text.detail(), u"Documento PDF · 1,2 MB");
    const FileSummary directory = FileSummary::make(QUrl::fromLocalFile(folder.path() + u'/'));
    EXPECT_TRUE(directory.isDirectory && !directory.byteSize);
    EXPECT_EQ(directory.detail(), u"Pasta");
    EXPECT_EQ(FileSummary::make(file("a.xyzzy", QByteArray(1, '\0'))).kind, u"XYZZY");
    EXPECT_EQ(FileSummary::make(url("nada")).detail(), u"Arquivo não encontrado");
    QLocale::setDefault(QLocale::c());
}

} // namespace velmo
