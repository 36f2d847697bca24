#include "VelmoCore/Foundation/Uuid.h"

namespace velmo {

Uuid makeUuid()
{
    return QUuid::createUuid();
}

QString uuidText(const Uuid &uuid)
{
    QString text(36, u'-');
    QChar *next = text.data();
    const auto put = [&next](std::uint32_t value, int digits) {
        for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
            *next++ = QChar(u"0123456789ABCDEF"[(value >> shift) & 0xf]);
    };
    put(uuid.data1, 8);
    ++next;
    put(uuid.data2, 4);
    ++next;
    put(uuid.data3, 4);
    ++next;
    for (int index = 0; index < 8; ++index) {
        put(uuid.data4[index], 2);
        next += index == 1;
    }
    return text;
}

std::optional<Uuid> uuidFromText(QStringView text)
{
    // QUuid also takes braces and text behind the last digit, and answers anything else with null.
    if (text.size() != 36 || text.front() == u'{')
        return std::nullopt;
    const Uuid uuid = QUuid::fromString(text);
    if (uuid.isNull() && text != u"00000000-0000-0000-0000-000000000000")
        return std::nullopt;
    return uuid;
}

} // namespace velmo
