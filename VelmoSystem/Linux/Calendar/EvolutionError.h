#pragma once

#include <QDBusMessage>

/// What answers of Evolution Data Server say. GLib sends an error by its own domain and code.
namespace velmo::EvolutionError {

/// Whether the server itself answered, be it with a refusal.
inline bool isFromServer(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage ||
           answer.errorName().contains(u"_2derror_2dquark.Code");
}

inline bool isNotFound(const QDBusMessage &answer)
{
    return answer.errorName().endsWith(u"_e_2dcal_2dclient_2derror_2dquark.Code1");
}

inline bool isPermissionDenied(const QDBusMessage &answer)
{
    return answer.errorName().endsWith(u"_e_2dclient_2derror_2dquark.Code8");
}

} // namespace velmo::EvolutionError
