#pragma once

#include "VelmoSystem/Control/Verb.h"

#include <QLatin1StringView>
#include <QVariantList>

#include <optional>

/// How verbs stand on the session bus: an object a noun, a method a verb. Both sides use it.
namespace velmo::VerbBus {

inline constexpr QLatin1StringView refused("app.orvane.Orvane.Error.Refused");
/// The option by which a caller names a long call, for `Progress` and `Cancel`.
inline const QString tokenOption = QStringLiteral("token");

/// "/app/orvane/Orvane/clipboard"
QString path(const QString &noun);
/// "app.orvane.Orvane.Clipboard"
QString interface(const QString &noun);
/// "Copy"; "List" for a verb without a name.
QString method(const VerbSyntax &syntax);
/// Of the method's arguments, as "usa{sv}": an argument each, then the options if there are any.
QString signature(const VerbSyntax &syntax);
/// The `interface` element of the verbs of one noun.
QString introspection(const std::vector<VerbSyntax> &verbs);

/// Long verbs and those with options take options on the bus.
bool takesOptions(const VerbSyntax &syntax);

/// An argument that is left out stands as 0, an empty text or an empty list. `call` fits the
/// syntax.
QVariantList encoded(const VerbSyntax &syntax, const VerbCall &call, const QString &token);

struct Received {
    VerbCall call; ///< to be checked
    QString token;
};
/// `arguments` have the verb's signature. Throws `VerbUsageError`.
Received received(const VerbSyntax &syntax, const QVariantList &arguments);

/// Without what ends a text on the bus before its end.
QString text(QString text);
/// As aa{sv}; of a field that is null nothing stands there.
QVariant encoded(const QJsonArray &records);
std::optional<QJsonArray> records(const QVariant &received);

} // namespace velmo::VerbBus
