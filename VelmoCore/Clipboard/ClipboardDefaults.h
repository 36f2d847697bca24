#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace velmo::ClipboardDefaults {

/// Keepers of passwords, from which nothing is taken.
std::vector<QString> ignoredBundleIDs();

/// What the user reads of one of them, empty if this platform has no such application; nothing for
/// any other identifier.
std::optional<QString> title(const QString &ignoredBundleID);

/// Types by which an application says that its content isn't for histories.
const std::vector<QString> &ignoredPasteboardTypes();

} // namespace velmo::ClipboardDefaults
