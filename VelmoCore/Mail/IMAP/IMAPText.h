#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

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
    const bool isNegative = std::signed_integral<Number> && text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+'))
        text = text.sliced(1);
    if (text.isEmpty())
        return std::nullopt;
    Number value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        const int digit = c.unicode() - u'0';
        if (__builtin_mul_overflow(value, 10, &value) ||
            __builtin_add_overflow(value, isNegative ? -digit : digit, &value))
            return std::nullopt;
    }
    return value;
}

} // namespace velmo::IMAPText
