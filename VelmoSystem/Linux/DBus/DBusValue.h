#pragma once

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QVariant>

#include <optional>

namespace velmo::DBusValue {

/// What a peer sent, if it has exactly the D-Bus type of `Value`: taking another one apart ends the
/// process in libdbus.
template <class Value>
std::optional<Value> as(const QVariant &sent)
{
    constexpr auto wanted = QMetaType::fromType<Value>();
    if (sent.metaType() == wanted)
        return sent.value<Value>();
    if (sent.metaType() != QMetaType::fromType<QDBusArgument>() ||
        sent.value<QDBusArgument>().currentSignature() !=
            QLatin1StringView(QDBusMetaType::typeToSignature(wanted)))
        return std::nullopt;
    return qdbus_cast<Value>(sent);
}

} // namespace velmo::DBusValue
