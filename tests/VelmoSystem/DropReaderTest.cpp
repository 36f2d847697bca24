#include "VelmoSystem/FileProcessing/DropReader.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include "tests/support/Printers.h"

#include <QSysInfo>

#include <gtest/gtest.h>

namespace velmo {

namespace {

QByteArray utf16(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

/// Each item as its case and its value.
QStringList read(const DropReader::Contents &contents)
{
    QStringList keys;
    for (const DroppedItem &item : DropReader::items(contents)) {
        keys.append(
            std::visit(overloaded{[](const DroppedItem::File &file) {
                                      return QStringLiteral("file:") + file.value.toLocalFile();
                                  },
                                  [](const DroppedItem::Link &link) {
                                      return QStringLiteral("link:") + link.value.toEncoded();
                                  },
                                  [](const DroppedItem::Text &text) {
                                      return QStringLiteral("text:") + text.value;
                                  }},
                       item.content));
    }
    return keys;
}

} // namespace

TEST(DropReader, TakesFilesInTheirOrderAndOnce)
{
    const QByteArray host = QSysInfo::machineHostName().toUtf8();
    EXPECT_EQ(
        read({"# comment\r\nfile:///b%20c.txt\r\nfile:///a\r\nfile:///x/../a\r\nfile:///a/\r\n"
              "file://localhost/%C3%A7\r\nfile://" +
                  host + "/h\r\n",
              {},
              "/b c.txt"}),
        QStringList({"file:/b c.txt", "file:/a", "file:/ç", "file:/h"}));
}

TEST(DropReader, TurnsDownWhatIsNoLocalPath)
{
    for (const char *uri : {"file://servidor/a", "file:a/b", "/a", "a%", "#", "file:///a%00b"})
        EXPECT_EQ(read({uri, {}, {}}), QStringList()) << uri;
    EXPECT_EQ(read({"file:///a%zz%", {}, {}}), QStringList("file:/a%zz%"));
}

TEST(DropReader, PutsLinksBehindFiles)
{
    EXPECT_EQ(read({"https://a.b/c?d=e%20f\r\nfile:///a\r\nmailto:eu@a.b", {}, {}}),
              QStringList({"file:/a", "link:https://a.b/c?d=e%20f", "link:mailto:eu@a.b"}));
    for (const QByteArray &bytes :
         {utf16("https://a.b/ç\nTítulo: x"), utf16(QChar(0xFEFF) + QString("https://a.b/ç\nT\n")),
          QByteArray("https://a.b/ç\nTítulo")}) {
        EXPECT_EQ(read({{}, bytes, "Título"}), QStringList("link:https://a.b/%C3%A7"));
    }
}

TEST(DropReader, ReadsTextOnlyWithoutFilesAndLinks)
{
    EXPECT_EQ(read({{}, {}, " https://a.b/c\n"}), QStringList("link:https://a.b/c"));
    for (const char *text : {"veja https://a.b", "https://a.b c", "https://", "ftp://a.b/c",
                             "https://a.b/%zz", "javascript:alert(1)", "ação 100%"})
        EXPECT_EQ(read({{}, {}, text}), QStringList(QStringLiteral("text:") + text));
    EXPECT_EQ(read({}), QStringList());
}

} // namespace velmo
