#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <charconv>
#include <concepts>
#include <optional>

/// How the words of a server's response are read.
namespace velmo::IMAPText {

/// UTF-8 with bad sequences replaced. A byte order mark stays, as it is part of a mailbox's name.
QString decoded(QByteArrayView bytes);

/// Digits with an optional sign and nothing around them; absent where the number doesn't fit.
template <std::integral Number>
std::optional<Number> decimal(QStringView text)
{
    const bool hasPlus = text.startsWith(u'+');
    const QByteArray digits = text.sliced(hasPlus ? 1 : 0).toLatin1();
    if (hasPlus && digits.startsWith('-'))
        return std::nullopt;
    Number value = 0;
    const auto result = std::from_chars(digits.cbegin(), digits.cend(), value);
    if (result.ec != std::errc() || result.ptr != digits.cend())
        return std::nullopt;
    return value;
}

} // namespace velmo::IMAPText
