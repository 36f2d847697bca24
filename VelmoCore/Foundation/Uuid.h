#pragma once

#include <QString>
#include <QStringView>
#include <QUuid>

#include <optional>

namespace velmo {

using Uuid = QUuid;

/// A new random UUID (version 4).
Uuid makeUuid();

/// Upper-case canonical text without braces, the form of all our JSON.
QString uuidText(const Uuid &uuid);

/// Reads the canonical text in either case, without braces.
std::optional<Uuid> uuidFromText(QStringView text);

} // namespace velmo
