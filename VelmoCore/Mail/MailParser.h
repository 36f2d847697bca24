#pragma once

#include "VelmoCore/Mail/ParsedMail.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QMap>

/// Reads messages (RFC 5322, MIME). Nothing throws and nothing is refused: of a message that is
/// cut, malformed or oddly encoded, what can be read is. Work grows with the length of the input
/// only, whatever it holds.
namespace velmo::MailParser {

struct Header {
    QString name;
    QString value; ///< unfolded, its encoded words as they stand

    bool operator==(const Header &) const = default;
};
using Headers = std::vector<Header>;

struct SplitMessage {
    Headers headers;     ///< in order of appearance
    QByteArrayView body; ///< within the bytes that were split
};

/// A header such as "text/plain; charset=utf-8".
struct Parameters {
    QString type;                  ///< in lower case
    QMap<QString, QString> params; ///< names in lower case, values without quotes around them
};

struct TextParts {
    std::optional<QString> plain;
    std::optional<QString> html;
};

ParsedMail parse(QByteArrayView message);

/// Reads a `Date` header in the forms of RFC 5322; the weekday may be wrong. A year of two digits
/// is in this century.
std::optional<Date> parseDate(const QString &text);

/// Cuts a message, or a part of one, at its first empty line. Without one all of it is headers.
SplitMessage splitHeaders(QByteArrayView bytes);

/// The value of the first header of that name in any letter case.
std::optional<QString> header(QStringView name, const Headers &headers);

/// Decodes the encoded words of RFC 2047.
QString decodeHeader(const QString &text);

MailAddress parseAddress(const QString &text);

/// Reads bytes as `charset`, an IANA name. Where it is missing, unknown or wrong, the bytes are
/// UTF-8, Windows-1252 or damaged UTF-8, the first of these that holds.
QString decodeBytes(QByteArrayView bytes, const std::optional<QString> &charset = std::nullopt);

/// Leaves what isn't well encoded as it stands.
QByteArray decodeQuotedPrintable(QByteArrayView bytes);

Parameters parameters(const QString &value);

/// The first plain text and the first HTML that aren't attachments. `depth` is the number of
/// containers around these; a container at 6 isn't opened.
TextParts textParts(const Headers &headers, QByteArrayView body, int depth);

/// The parts of a multipart body, within `bytes`: each with the line break before the next
/// delimiter, none of them empty.
std::vector<QByteArrayView> splitMultipart(QByteArrayView bytes, QByteArrayView boundary);

/// What a reader sees of HTML, without empty lines.
QString htmlToText(const QString &html);

/// Resolves numeric character references and the names that mail uses.
QString decodeEntities(const QString &text);

/// The web links of HTML, each with the text that a reader sees.
std::vector<MailLink> linksInHTML(const QString &html);

/// The web addresses in plain text, each with the up to 60 UTF-16 units ahead of it.
std::vector<MailLink> linksInText(const QString &text);

/// The text in one line without quoted replies, cut to `limit` characters as a reader counts them.
QString snippet(const QString &text, int limit);

} // namespace velmo::MailParser
