#pragma once

#include <QString>

namespace velmo::ApplicationIdentifiers {

/// The identifier that settings and profiles know an application by, from its desktop entry's id or
/// its window's class in any case; nothing for one that isn't in the table.
QString known(const QString &id);

/// The id of a desktop entry without its suffix.
QString withoutSuffix(QString id);

} // namespace velmo::ApplicationIdentifiers
