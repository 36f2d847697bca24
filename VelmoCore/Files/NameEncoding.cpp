#include "VelmoCore/Files/NameEncoding.h"

#include <QStringDecoder>

#include <array>

namespace velmo {
namespace {

/// How well some characters fit a name: their bytes, or as many below nothing.
using Judge = int (*)(const QByteArray &line);

uchar byteAt(const QByteArray &line, qsizetype index)
{
    return index >= 0 && index < line.size() ? uchar(line[index]) : uchar(' ');
}

bool isIn(uchar byte, int first, int last)
{
    return byte >= first && byte <= last;
}

bool isAsciiLetter(uchar byte)
{
    return isIn(byte | 0x20, 'a', 'z');
}

/// Whether it is a letter of western Europe with an accent. Those of Iceland hardly occur, and are
/// what other languages' letters look like.
bool isAccented(QChar letter)
{
    constexpr QStringView rare = u"ÐðÞþÝýÆıƒ";
    return letter.unicode() >= 0xC0 && letter.unicode() < 0x180 && letter.isLetter() &&
           !rare.contains(letter);
}

bool isStrange(QChar sign)
{
    constexpr QStringView strange = u"¤¦¨¬¯´¶¸¹‗";
    return (sign.unicode() >= 0x2500 && sign.unicode() < 0x2600) || strange.contains(sign) ||
           sign.category() == QChar::Other_Control;
}

/// Accented letters stand by other letters, no more than two in a row, and no capital follows a
/// small letter. Usual signs say nothing.
int judgeWestern(const QString &line)
{
    constexpr int longestRow = 2;
    const auto at = [&](qsizetype index) {
        return index >= 0 && index < line.size() ? line[index] : QChar(u' ');
    };
    int score = 0;
    int row = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar letter = line[i];
        if (letter.unicode() < 0x80) {
            row = 0;
            continue;
        }
        ++row;
        if (isStrange(letter) || row > longestRow ||
            (letter.isLetter() && letter.isUpper() && at(i - 1).isLower()))
            --score;
        else if (isAccented(letter))
            score += at(i - 1).isLetter() || at(i + 1).isLetter() ? 1 : 0;
        else if (letter.isLetter() && letter.script() == QChar::Script_Latin)
            --score;
    }
    return score;
}

template <const char *page>
int judgePage(const QByteArray &line)
{
    return judgeWestern(QStringDecoder(page)(line));
}

/// Of languages that write a character in two bytes. One of them between two letters of ASCII is
/// more likely an accented letter and its neighbour.
int judgeEastern(const QByteArray &line, int (*judgePair)(uchar lead, uchar trail))
{
    int score = 0;
    bool follows = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const uchar lead = byteAt(line, i);
        if (lead < 0x80) {
            follows = false;
            continue;
        }
        const int pair = judgePair(lead, byteAt(line, i + 1));
        const bool isSingle = pair == -1;
        const bool isAlone = !follows && isAsciiLetter(byteAt(line, i - 1)) &&
                             isAsciiLetter(byteAt(line, i + (isSingle ? 1 : 2)));
        score += isAlone && !isSingle ? -2 : pair;
        follows = true;
        i += isSingle ? 0 : 1;
    }
    return score;
}

/// The kana and the 3000 usual characters count, the rare ones don't; -1 for a single byte, which
/// is a kana of half the width.
int judgeJapanese(uchar lead, uchar trail)
{
    if (isIn(lead, 0xA1, 0xDF))
        return -1;
    if (isIn(lead, 0x81, 0x83) || isIn(lead, 0x89, 0x97) || (lead == 0x88 && trail >= 0x9F))
        return 2;
    return isIn(lead, 0x98, 0x9F) || isIn(lead, 0xE0, 0xEA) ? 0 : -2;
}

/// The same of the 3700 usual ones and the signs.
int judgeChinese(uchar lead, uchar trail)
{
    if (trail >= 0xA1 && (isIn(lead, 0xB0, 0xD7) || isIn(lead, 0xA1, 0xA3)))
        return 2;
    return trail >= 0xA1 && isIn(lead, 0xD8, 0xF7) ? 0 : -2;
}

int judge932(const QByteArray &line)
{
    return judgeEastern(line, judgeJapanese);
}

int judgeGBK(const QByteArray &line)
{
    return judgeEastern(line, judgeChinese);
}

struct Page {
    const char *name;
    Judge judge;
};

constexpr char dosPage[] = "CP850";
constexpr char firstPage[] = "CP437"; // the standard of ZIP; all letters that it has, the other has
constexpr char windowsPage[] = "CP1252";

/// Of two that fit alike, the first.
constexpr std::array<Page, 5> pages = {{{dosPage, judgePage<dosPage>},
                                        {"CP932", judge932},
                                        {"GBK", judgeGBK},
                                        {windowsPage, judgePage<windowsPage>},
                                        {firstPage, judgePage<firstPage>}}};

template <class Visit>
void eachLine(const QByteArray &text, const Visit &visit)
{
    for (qsizetype start = 0; start < text.size();) {
        const qsizetype found = text.indexOf('\n', start);
        const qsizetype end = found < 0 ? text.size() : found + 1;
        visit(QByteArray::fromRawData(text.constData() + start, end - start));
        start = end;
    }
}

/// Each line is whole: a lead byte at its end is a fault.
QStringDecoder decoderOf(const char *page)
{
    return QStringDecoder(page, QStringDecoder::Flag::Stateless);
}

bool fits(const QByteArray &line, const char *page)
{
    QStringDecoder decoder = decoderOf(page);
    const QString decoded = decoder(line);
    return !decoder.hasError() && !decoded.contains(QChar::ReplacementCharacter);
}

} // namespace

std::optional<QByteArray> NameEncoding::guess(const QByteArray &text)
{
    constexpr qsizetype enough = 1 << 16; // bytes of names
    if (text.isValidUtf8())
        return std::nullopt;
    std::array<int, pages.size()> scores = {};
    std::array<bool, pages.size()> isPossible = {};
    isPossible.fill(true);
    qsizetype seen = 0;
    eachLine(text, [&](const QByteArray &line) {
        if (seen > enough || line.isValidUtf8())
            return;
        seen += line.size();
        for (std::size_t i = 0; i < pages.size(); ++i) {
            isPossible[i] = isPossible[i] && fits(line, pages[i].name);
            scores[i] += pages[i].judge(line);
        }
    });
    std::size_t best = 0; // in which every byte is something
    for (std::size_t i = 1; i < pages.size(); ++i) {
        if (isPossible[i] && scores[i] > scores[best])
            best = i;
    }
    return pages[best].name;
}

QString NameEncoding::decoded(const QByteArray &text, const QByteArray &codePage)
{
    if (codePage.isEmpty() || text.isValidUtf8())
        return QString::fromUtf8(text);
    QString result;
    eachLine(text, [&](const QByteArray &line) {
        result += line.isValidUtf8() ? QString::fromUtf8(line)
                                     : QString(decoderOf(codePage.constData())(line));
    });
    return result;
}

} // namespace velmo
