#include "VelmoSystem/Calendar/CalendarError.h"

namespace velmo {

QString CalendarError::invalidURL()
{
    return QStringLiteral("Cole o endereço completo, começando com https:// (ou webcal://).");
}

QString CalendarError::notACalendar()
{
    return QStringLiteral("Esse endereço não devolveu uma agenda iCal. No Google Agenda, use o "
                          "“Endereço secreto no formato iCal”.");
}

QString CalendarError::status(int status)
{
    return QStringLiteral("O endereço respondeu com erro %1.").arg(status);
}

QString CalendarError::notFound()
{
    return QStringLiteral("Compromisso não encontrado.");
}

QString CalendarError::noCalendar()
{
    return QStringLiteral("Nenhum calendário disponível para novos compromissos.");
}

QString CalendarError::readOnly()
{
    return QStringLiteral("Este calendário não permite alterações (agendas por endereço iCal são "
                          "somente leitura).");
}

QString CalendarError::notChangeable()
{
    return QStringLiteral("Não foi possível alterar este compromisso. Use o aplicativo de agenda.");
}

} // namespace velmo
