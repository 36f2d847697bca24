#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace velmo::MailParser {

namespace {

constexpr std::uint32_t noDigit = 1U << 24;

/// The value of each byte as the first to fourth digit of a group, shifted to its place in there.
constexpr auto base64Digits = [] {
    std::array<std::array<std::uint32_t, 256>, 4> digits;
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t place = 0; place < digits.size(); ++place) {
        digits[place].fill(noDigit);
        for (std::uint32_t value = 0; value < alphabet.size(); ++value)
            digits[place][std::uint8_t(alphabet[value])] = value << (18 - 6 * place);
    }
    return digits;
}();

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
    // The decoders of UTF-16 and UTF-32 tell no errors.
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

/// One encoded word, with its three parts.
struct EncodedWord {
    qsizetype start;
    qsizetype end;
    QStringView charset;
    QChar encoding;
    QStringView payload;
};

/// The end of the run of characters that are neither "?" nor whitespace.
qsizetype endOfToken(QStringView text, qsizetype start)
{
    while (start < text.size() && text[start] != u'?' && !text[start].isSpace())
        ++start;
    return start;
}

/// The next match of =\?([^?\s]+)\?([BbQq])\?([^?\s]*)\?=
std::optional<EncodedWord> nextEncodedWord(QStringView text, qsizetype from)
{
    for (qsizetype start = text.indexOf(u"=?", from); start >= 0;
         start = text.indexOf(u"=?", start + 1)) {
        const qsizetype charsetEnd = endOfToken(text, start + 2);
        const QStringView encoding =
            text.sliced(charsetEnd).first(std::min<qsizetype>(3, text.size() - charsetEnd));
        if (charsetEnd == start + 2 || encoding.size() < 3 || encoding[0] != u'?' ||
            encoding[2] != u'?' || !QStringView(u"BbQq").contains(encoding[1]))
            continue;
        const qsizetype payloadStart = charsetEnd + 3;
        const qsizetype payloadEnd = endOfToken(text, payloadStart);
        if (text.sliced(payloadEnd).startsWith(u"?="))
            return EncodedWord{start, payloadEnd + 2,
                               text.sliced(start + 2, charsetEnd - start - 2), encoding[1],
                               text.sliced(payloadStart, payloadEnd - payloadStart)};
    }
    return std::nullopt;
}

QString decodeWord(const EncodedWord &word)
{
    QString payload = word.payload.toString();
    QByteArray bytes;
    if (word.encoding.toLower() == u'q') {
        bytes = decodeQuotedPrintable(payload.replace(u'_', u' ').toUtf8());
    } else {
        QByteArray padded = payload.toUtf8();
        while (padded.size() % 4)
            padded += '=';
        const auto decoded = decodeBase64(padded);
        if (!decoded)
            return payload;
        bytes = *decoded;
    }
    return decodeBytes(bytes, word.charset.toString());
}

bool isWhitespace(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

/// The bytes without line ends.
QByteArray withoutLineEnds(QByteArrayView body)
{
    QByteArray text(body.size(), Qt::Uninitialized);
    char *out = text.data();
    for (const char *line = body.begin(); line != body.end();) {
        const auto *lineFeed =
            static_cast<const char *>(std::memchr(line, '\n', std::size_t(body.end() - line)));
        const char *next = lineFeed ? lineFeed + 1 : body.end();
        const char *end = lineFeed ? lineFeed : body.end();
        if (end != line && end[-1] == '\r')
            --end;
        out = std::copy(line, end, out);
        line = next;
    }
    text.truncate(out - text.constData());
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
    if (text.size() % 4)
        return std::nullopt;
    QByteArray bytes(text.size() / 4 * 3, Qt::Uninitialized);
    if (bytes.isEmpty())
        return bytes;
    char *out = bytes.data();
    std::uint32_t seen = 0;
    const auto decode = [&](const char *in) {
        std::uint32_t group = 0;
        for (std::size_t place = 0; place < 4; ++place)
            group |= base64Digits[place][std::uint8_t(in[place])];
        seen |= group;
        *out++ = char(group >> 16);
        *out++ = char(group >> 8);
        *out++ = char(group);
    };
    const char *const last = text.end() - 4;
    for (const char *in = text.begin(); in != last; in += 4)
        decode(in);
    const int padding = text.endsWith("==") ? 2 : text.endsWith('=') ? 1 : 0;
    std::array<char, 4> padded{'A', 'A', 'A', 'A'}; // which are zeros
    std::copy(last, text.end() - padding, padded.begin());
    decode(padded.data());
    if ((seen & noDigit) != 0)
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
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes);
    if (auto text = fromWindows1252(bytes))
        return *text;
    return QString::fromUtf8(bytes);
}

QString decodeHeader(const QString &text)
{
    QString decoded;
    qsizetype copied = 0;
    while (const auto word = nextEncodedWord(text, copied)) {
        const QStringView between = QStringView(text).sliced(copied, word->start - copied);
        if (copied == 0 || !isWhitespace(between))
            decoded += between;
        decoded += decodeWord(*word);
        copied = word->end;
    }
    return copied == 0 ? text : decoded.append(QStringView(text).sliced(copied));
}

} // namespace velmo::MailParser
