#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace velmo::MailParser {

/// A blank within a line: every kind of space, and the tab.
inline bool isBlank(QChar c)
{
    return c == u'\t' || c.category() == QChar::Separator_Space;
}

/// Without the blanks at both ends; line breaks stay.
QStringView trimmedBlanks(QStringView text);

/// Decodes base64 (RFC 4648): whole groups, and padding only at the end. Absent otherwise.
std::optional<QByteArray> decodeBase64(QByteArrayView text);

/// Decodes a body in base64 with whatever blanks and line breaks, as far as it goes: what a cut
/// body has of its last group is left out. Empty if the text isn't base64.
QByteArray decodeBase64Body(QByteArrayView body);

} // namespace velmo::MailParser
