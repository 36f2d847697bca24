#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <openssl/evp.h>

#include <algorithm>
#include <array>

namespace velmo::MailParser {

namespace {

/// Bytes 0x80 to 0x9f of Windows-1252; 0 where it has none.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178};

std::optional<QString> fromWindows1252(QByteArrayView bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar &c : text) {
        if (c.unicode() < 0x80 || c.unicode() > 0x9f)
            continue;
        c = windows1252[c.unicode() - 0x80U];
        if (c.isNull())
            return std::nullopt;
    }
    return text;
}

/// Absent unless the character set is known and the bytes are text in it. Left to the caller,
/// which goes on with UTF-8 anyway, are UTF-8 and what is a part of it.
std::optional<QString> decodeAs(const QString &charset, QByteArrayView bytes)
{
    constexpr qsizetype longestName = 60;
    const bool isName = !charset.isEmpty() && charset.size() <= longestName &&
                        std::all_of(charset.begin(), charset.end(), [](QChar c) {
                            return c.unicode() < 0x80 &&
                                   (c.isLetterOrNumber() || QStringView(u"-_.:+()").contains(c));
                        });
    if (!isName)
        return std::nullopt;
    const QByteArray name = charset.toLatin1().toLower();
    if (name == "windows-1252" || name == "cp1252")
        return fromWindows1252(bytes);
    if (name == "utf-8" || name == "us-ascii")
        return std::nullopt;
    QStringDecoder decoder(name.constData(), QStringConverter::Flag::Stateless);
    if (!decoder.isValid())
        return std::nullopt;
    QString text = decoder(bytes);
    // The decoders of UTF-16 and UTF-32 report no errors.
    if (decoder.hasError() || text.contains(QChar::ReplacementCharacter) || !text.isValidUtf16())
        return std::nullopt;
    return text;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// What an encoded word says, of which `encoding` is "B" or "Q" in either case.
QString decodeWord(const QString &charset, QStringView encoding, QString payload)
{
    if (encoding.compare(u'q', Qt::CaseInsensitive) == 0)
        return decodeBytes(decodeQuotedPrintable(payload.replace(u'_', u' ').toUtf8()), charset);
    QByteArray padded = payload.toUtf8();
    while (padded.size() % 4)
        padded += '=';
    const auto bytes = decodeBase64(padded);
    return bytes ? decodeBytes(*bytes, charset) : payload;
}

bool isWhitespace(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

QByteArray withoutLineEnds(QByteArrayView body)
{
    QByteArray text(body.size(), Qt::Uninitialized);
    auto out = text.begin();
    for (qsizetype start = 0; start < body.size();) {
        const qsizetype lineFeed = body.indexOf('\n', start);
        const qsizetype end = lineFeed < 0 ? body.size() : lineFeed;
        const QByteArrayView line = body.sliced(start, end - start);
        out = std::copy(line.begin(), line.end() - (line.endsWith('\r') ? 1 : 0), out);
        start = end + 1;
    }
    text.truncate(out - text.cbegin());
    return text;
}

/// First what there is in whole groups, then all of it, padded.
std::optional<QByteArray> decodeGroups(QByteArray text)
{
    if (auto whole = decodeBase64(QByteArrayView(text).first(text.size() - text.size() % 4)))
        return whole;
    while (text.size() % 4)
        text += '=';
    return decodeBase64(text);
}

} // namespace

std::optional<QByteArray> decodeBase64(QByteArrayView text)
{
    const qsizetype padding = text.endsWith("==") ? 2 : text.endsWith('=') ? 1 : 0;
    if (text.size() % 4 != 0 || text.chopped(padding).contains('='))
        return std::nullopt;
    // Three times as fast as Qt's. What it takes off for being blank is missing from the length.
    QByteArray bytes(text.size() / 4 * 3, Qt::Uninitialized);
    const int length =
        EVP_DecodeBlock(reinterpret_cast<unsigned char *>(bytes.data()),
                        reinterpret_cast<const unsigned char *>(text.data()), int(text.size()));
    if (length != bytes.size())
        return std::nullopt;
    bytes.chop(padding);
    return bytes;
}

QByteArray decodeBase64Body(QByteArrayView body)
{
    // Whatever blanks there are besides line ends fail here, and are taken out below.
    const QByteArray joined = withoutLineEnds(body);
    if (auto bytes = decodeGroups(joined))
        return *bytes;
    QString text = QString::fromUtf8(body);
    text.removeIf([](QChar c) { return c.isSpace(); });
    const qsizetype count = Text::characterCount(text);
    if (auto bytes = decodeBase64(Text::prefix(text, count - count % 4).toUtf8()))
        return *bytes;
    text += QString((4 - count % 4) % 4, u'=');
    return decodeBase64(text.toUtf8()).value_or(QByteArray());
}

QByteArray decodeQuotedPrintable(QByteArrayView bytes)
{
    QByteArray decoded(bytes.size(), Qt::Uninitialized);
    char *out = decoded.data();
    qsizetype copied = 0;
    for (qsizetype mark = bytes.indexOf('='); mark >= 0; mark = bytes.indexOf('=', copied)) {
        out = std::copy(bytes.begin() + copied, bytes.begin() + mark, out);
        const QByteArrayView rest = bytes.sliced(mark + 1);
        const int high = rest.size() >= 2 ? hexDigit(rest[0]) : -1;
        const int low = high >= 0 ? hexDigit(rest[1]) : -1;
        copied = mark + 1;
        if (low >= 0) {
            *out++ = char(high << 4 | low);
            copied += 2;
        } else if (rest.startsWith('\n')) {
            copied += 1;
        } else if (rest.startsWith("\r\n")) {
            copied += 2;
        } else if (!rest.isEmpty()) {
            *out++ = '=';
        }
    }
    out = std::copy(bytes.begin() + copied, bytes.end(), out);
    decoded.truncate(out - decoded.constData());
    return decoded;
}

QString decodeBytes(QByteArrayView bytes, const std::optional<QString> &charset)
{
    if (charset) {
        if (auto text = decodeAs(trimmedBlanks(*charset).toString(), bytes))
            return *text;
    }
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decoder(bytes);
    if (!decoder.hasError())
        return text;
    return fromWindows1252(bytes).value_or(text);
}

QString decodeHeader(const QString &text)
{
    static const QRegularExpression encodedWord(
        QStringLiteral(R"(=\?([^?\s]+)\?([BbQq])\?([^?\s]*)\?=)"),
        QRegularExpression::UseUnicodePropertiesOption);
    QString decoded;
    qsizetype copied = 0;
    for (auto words = encodedWord.globalMatch(text); words.hasNext();) {
        const QRegularExpressionMatch word = words.next();
        const auto between = QStringView(text).sliced(copied, word.capturedStart() - copied);
        if (copied == 0 || !isWhitespace(between))
            decoded += between;
        decoded += decodeWord(word.captured(1), word.capturedView(2), word.captured(3));
        copied = word.capturedEnd();
    }
    return copied == 0 ? text : decoded.append(QStringView(text).sliced(copied));
}

} // namespace velmo::MailParser
