#pragma once

#include <QString>
#include <QStringView>

namespace velmo::Text {

/// How many characters a reader counts: extended grapheme clusters (UAX #29).
qsizetype characterCount(QStringView text);

/// The length in UTF-16 units of the first `count` characters as a reader counts them, in time that
/// grows with that length.
qsizetype prefixLength(QStringView text, qsizetype count);

/// The first `count` characters as a reader counts them; never cuts a cluster in two.
QString prefix(const QString &text, qsizetype count);

/// Without the double quotes around it, if there are both.
QStringView withoutQuotes(QStringView text);

/// The text folded for comparison and search: no case, no diacritics, compatibility forms made
/// plain. "Ação" and "acao" fold alike.
QString folded(const QString &text);

} // namespace velmo::Text
