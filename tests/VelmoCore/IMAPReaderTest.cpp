#include "VelmoCore/Mail/IMAP/IMAPReader.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmo {
namespace {

const std::vector<QByteArray> responses{
    "* OK ready\r\n",
    "* 1 FETCH (BODY[] {5}\r\na}\r\n{ UID 7)\r\n",
    "* LIST () \"/\" {3}\r\nx\r\n {0}\r\n)\n",
    "* 2 FETCH (BODY[] {2+}\r\n\n\n FLAGS ())\r\n",
    "* {12x}\r\n",
    "* {\r\n",
    "* 3} {}\r\n",
    "\r\n",
};

TEST(IMAPReader, CutsResponsesWithTheirLiteralsHoweverTheyCome)
{
    const QByteArray all = QByteArrayList(responses.begin(), responses.end()).join();
    for (qsizetype cut = 0; cut <= all.size(); ++cut) {
        IMAPReader reader;
        std::vector<QByteArray> found;
        for (const QByteArray &part : {all.first(cut), all.sliced(cut)}) {
            reader.append(part);
            while (auto response = reader.next())
                found.push_back(*response);
        }
        ASSERT_EQ(found, responses) << "cut at " << cut;
    }
    IMAPReader byByte;
    std::vector<QByteArray> found;
    for (const char byte : all) {
        byByte.append(QByteArrayView(&byte, 1));
        while (auto response = byByte.next())
            found.push_back(*response);
    }
    EXPECT_EQ(found, responses);
}

TEST(IMAPReader, BoundsWhatAServerSends)
{
    const auto takes = [](const QByteArray &bytes) {
        IMAPReader reader;
        reader.append(bytes);
        try {
            while (reader.next()) {
            }
            return true;
        } catch (const IMAPReader::TooLong &) {
            return false;
        }
    };
    const QByteArray longLine(IMAPReader::longestLine - 1, 'x');
    EXPECT_TRUE(takes(longLine + '\n'));
    EXPECT_FALSE(takes(longLine + "x\n"));
    EXPECT_FALSE(takes(longLine + "xx")) << "without an end";
    EXPECT_TRUE(takes("* {33000000}\r\n")) << "may come";
    EXPECT_FALSE(takes("* {4294967296}\r\n")) << "is not waited for";
    EXPECT_FALSE(takes("* {99999999999999999999}\r\n"));
    QByteArray literals;
    for (int i = 0; i < 5; ++i)
        literals += "{8000000}\r\n" + QByteArray(8'000'000, 'x');
    EXPECT_FALSE(takes(literals)) << "in several pieces";
}

} // namespace
} // namespace velmo
