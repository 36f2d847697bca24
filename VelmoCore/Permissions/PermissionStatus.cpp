#include "VelmoCore/Permissions/PermissionStatus.h"

#include "VelmoCore/Foundation/Overloaded.h"

namespace velmo {

QString PermissionStatus::label() const
{
    return std::visit(overloaded{
                          [](const Partial &partial) { return partial.value; },
                          [](NotDetermined) { return QStringLiteral("Não solicitada"); },
                          [](Granted) { return QStringLiteral("Permitida"); },
                          [](Denied) { return QStringLiteral("Negada"); },
                          [](Restricted) { return QStringLiteral("Restrita"); },
                          [](NotGranted) { return QStringLiteral("Não permitida"); },
                          [](PerApp) { return QStringLiteral("Por aplicativo"); },
                      },
                      value);
}

} // namespace velmo
