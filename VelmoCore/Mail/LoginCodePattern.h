#pragma once

#include <QStringView>

#include <vector>

namespace velmo::LoginCodePattern {

/// What this pattern matches in the text from left to right, with Unicode's digits for `\d`, in
/// linear time; unlike QRegularExpression also in text with unpaired surrogates:
///
///     (?<![\p{L}\p{N}#/\-.,@_])
///     (\d{3}[ \-]\d{3}|\d{4,8}|[A-Z0-9]{3,5}-[A-Z0-9]{3,5})
///     (?![\p{L}\p{N}/\-@_]|[.,]\d)
std::vector<QStringView> matches(QStringView text);

} // namespace velmo::LoginCodePattern
