#include "VelmoCore/Mail/MailParser.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/MailReading.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

namespace velmo::MailParser {

namespace {

constexpr int deepestContainer = 6;

template <typename Unwanted>
QStringView trimmed(QStringView text, Unwanted isUnwanted)
{
    const auto *start = std::find_if_not(text.begin(), text.end(), isUnwanted);
    const auto *end = text.end();
    while (end != start && isUnwanted(end[-1]))
        --end;
    return {start, end};
}

bool isSpaceOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}

/// Where the header block ends and where the body begins.
std::pair<qsizetype, qsizetype> emptyLine(QByteArrayView bytes)
{
    for (qsizetype end = bytes.indexOf('\n'); end >= 0; end = bytes.indexOf('\n', end + 1)) {
        const QByteArrayView rest = bytes.sliced(end + 1);
        if (rest.startsWith('\n'))
            return {end, end + 2};
        if (rest.startsWith("\r\n"))
            return {end, end + 3};
    }
    return {bytes.size(), bytes.size()};
}

void addLine(QStringView line, Headers &headers)
{
    if (line.endsWith(u'\r'))
        line.chop(1);
    if (!headers.empty() && !line.isEmpty() && isSpaceOrTab(line.front())) {
        headers.back().value += u' ';
        headers.back().value += trimmed(line, isSpaceOrTab);
        return;
    }
    const qsizetype colon = line.indexOf(u':');
    if (colon >= 0)
        headers.push_back({trimmed(line.first(colon), isSpaceOrTab).toString(),
                           trimmed(line.sliced(colon + 1), isSpaceOrTab).toString()});
}

/// The pieces between the ";" outside quotes; at least one.
std::vector<QStringView> splitParams(QStringView value)
{
    std::vector<QStringView> pieces;
    bool isQuoted = false;
    qsizetype start = 0;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == u'"') {
            isQuoted = !isQuoted;
        } else if (value[i] == u';' && !isQuoted) {
            pieces.push_back(value.sliced(start, i - start));
            start = i + 1;
        }
    }
    pieces.push_back(value.sliced(start));
    return pieces;
}

/// Where `wanted` comes next, or -1. A boundary is as long as its sender likes, for which Qt's
/// search may take the square of the time.
qsizetype find(QByteArrayView bytes, qsizetype from, const QByteArray &wanted)
{
    const void *found = memmem(bytes.data() + from, std::size_t(bytes.size() - from),
                               wanted.constData(), std::size_t(wanted.size()));
    return found ? static_cast<const char *>(found) - bytes.data() : -1;
}

TextParts textOfContainer(QByteArrayView body, const QString &boundary, int depth)
{
    TextParts found;
    for (const QByteArrayView part : splitMultipart(body, boundary.toUtf8())) {
        const SplitMessage split = splitHeaders(part);
        TextParts inside = textParts(split.headers, split.body, depth + 1);
        if (!found.plain)
            found.plain = std::move(inside.plain);
        if (!found.html)
            found.html = std::move(inside.html);
        if (found.plain && found.html)
            break;
    }
    return found;
}

QString decodeBody(const Headers &headers, QByteArrayView body,
                   const std::optional<QString> &charset)
{
    const QString encoding =
        trimmedBlanks(header(u"Content-Transfer-Encoding", headers).value_or(QString()))
            .toString()
            .toLower();
    if (encoding == u"base64")
        return decodeBytes(decodeBase64Body(body), charset);
    if (encoding == u"quoted-printable")
        return decodeBytes(decodeQuotedPrintable(body), charset);
    return decodeBytes(body, charset);
}

bool isLineBreak(QChar c)
{
    return (c >= u'\n' && c <= u'\r') || c == QChar(0x85) || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

} // namespace

QStringView trimmedBlanks(QStringView text)
{
    return trimmed(text, isBlank);
}

ParsedMail parse(QByteArrayView message)
{
    const SplitMessage split = splitHeaders(message);
    const auto valueOf = [&](QStringView name) { return header(name, split.headers); };

    ParsedMail mail;
    mail.from = parseAddress(valueOf(u"From").value_or(QString()));
    mail.subject = decodeHeader(valueOf(u"Subject").value_or(QString()));
    if (const auto date = valueOf(u"Date"))
        mail.date = parseDate(*date);
    if (const auto id = valueOf(u"Message-ID"))
        mail.messageID =
            trimmed(*id, [](QChar c) { return QStringView(u"<> \t").contains(c); }).toString();

    TextParts parts = textParts(split.headers, split.body, 0);
    if (parts.html)
        mail.links = linksInHTML(*parts.html);
    const bool hasPlain = parts.plain && std::any_of(parts.plain->begin(), parts.plain->end(),
                                                     [](QChar c) { return !c.isSpace(); });
    if (hasPlain) {
        mail.text = std::move(*parts.plain);
        if (!parts.html)
            mail.links = linksInText(mail.text);
    } else if (parts.html) {
        mail.text = htmlToText(*parts.html);
    }
    return mail;
}

SplitMessage splitHeaders(QByteArrayView bytes)
{
    const auto [end, bodyStart] = emptyLine(bytes);
    SplitMessage split{{}, bytes.sliced(bodyStart)};
    const QString block = decodeBytes(bytes.first(end));
    for (const QStringView line : block.tokenize(u'\n'))
        addLine(line, split.headers);
    return split;
}

std::optional<QString> header(QStringView name, const Headers &headers)
{
    for (const Header &header : headers) {
        if (name.compare(header.name, Qt::CaseInsensitive) == 0)
            return header.value;
    }
    return std::nullopt;
}

MailAddress parseAddress(const QString &text)
{
    const QString decoded = decodeHeader(text);
    const QStringView all = trimmedBlanks(decoded);
    const qsizetype open = all.lastIndexOf(u'<');
    const qsizetype close = open < 0 ? -1 : all.indexOf(u'>', open);
    if (close >= 0) {
        QString name = Text::withoutQuotes(trimmedBlanks(all.first(open))).toString();
        name.replace(QStringLiteral("\\\""), QStringLiteral("\""));
        return {name, trimmedBlanks(all.sliced(open + 1, close - open - 1)).toString()};
    }
    const qsizetype start = all.indexOf(u'(');
    const qsizetype end = all.lastIndexOf(u')');
    if (start >= 0 && end > start)
        return {all.sliced(start + 1, end - start - 1).toString(),
                trimmedBlanks(all.first(start)).toString()};
    return {QString(), all.toString()};
}

Parameters parameters(const QString &value)
{
    const std::vector<QStringView> pieces = splitParams(value);
    Parameters read{trimmedBlanks(pieces.front()).toString().toLower(), {}};
    for (auto piece = pieces.begin() + 1; piece != pieces.end(); ++piece) {
        const qsizetype equals = piece->indexOf(u'=');
        if (equals >= 0)
            read.params.insert(
                trimmedBlanks(piece->first(equals)).toString().toLower(),
                Text::withoutQuotes(trimmedBlanks(piece->sliced(equals + 1))).toString());
    }
    return read;
}

TextParts textParts(const Headers &headers, QByteArrayView body, int depth)
{
    const auto [type, params] =
        parameters(header(u"Content-Type", headers).value_or(QStringLiteral("text/plain")));
    const auto boundary = params.constFind(QStringLiteral("boundary"));
    if (type.startsWith(u"multipart/") && boundary != params.cend() && depth < deepestContainer)
        return textOfContainer(body, *boundary, depth);

    const QString disposition =
        header(u"Content-Disposition", headers).value_or(QString()).toLower();
    const bool isHTML = type == u"text/html";
    if (disposition.startsWith(u"attachment") || (!isHTML && type != u"text/plain"))
        return {};
    const auto charset = params.constFind(QStringLiteral("charset"));
    QString text = decodeBody(headers, body,
                              charset == params.cend() ? std::nullopt : std::optional(*charset));
    return isHTML ? TextParts{std::nullopt, std::move(text)}
                  : TextParts{std::move(text), std::nullopt};
}

std::vector<QByteArrayView> splitMultipart(QByteArrayView bytes, QByteArrayView boundary)
{
    const QByteArray delimiter = "--" + boundary.toByteArray();
    std::vector<QByteArrayView> parts;
    qsizetype found = find(bytes, 0, delimiter);
    while (found >= 0) {
        qsizetype start = found + delimiter.size();
        const qsizetype next = find(bytes, start, delimiter);
        if (bytes.sliced(start).startsWith("--"))
            break;
        const qsizetype end = next < 0 ? bytes.size() : next;
        while (start < bytes.size() && QByteArrayView(" \t\r").contains(bytes[start]))
            ++start;
        if (start < bytes.size() && bytes[start] == '\n')
            ++start;
        if (end > start)
            parts.push_back(bytes.sliced(start, end - start));
        found = next;
    }
    return parts;
}

QString snippet(const QString &text, int limit)
{
    QStringList words;
    const auto *rest = text.cbegin();
    while (rest != text.cend()) {
        const auto *end = std::find_if(rest, text.cend(), isLineBreak);
        const QStringView line = trimmed(QStringView(rest, end), isSpaceOrTab);
        if (!line.startsWith(u'>')) {
            for (const QStringView word : line.split(u' ', Qt::SkipEmptyParts))
                words.append(word.toString());
        }
        rest = end == text.cend() ? end : end + 1;
    }
    const QString joined = words.join(u' ');
    const QString cut = Text::prefix(joined, limit);
    return cut.size() == joined.size() ? joined
                                       : trimmed(cut, isSpaceOrTab).toString() + QChar(0x2026);
}

} // namespace velmo::MailParser
