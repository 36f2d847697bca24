#include "VelmoCore/Foundation/Uuid.h"

namespace velmo {

Uuid makeUuid()
{
    return QUuid::createUuid();
}

QString uuidText(const Uuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<Uuid> uuidFromText(QStringView text)
{
    // QUuid also takes braces and text behind the last digit, and answers anything else with null.
    const Uuid uuid = QUuid::fromString(text);
    if (text.compare(uuidText(uuid), Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return uuid;
}

} // namespace velmo
