#pragma once

#include <QString>

#include <vector>

namespace velmo::ClipboardDefaults {

/// Keepers of passwords, from which nothing is taken.
std::vector<QString> ignoredBundleIDs();

/// Types by which an application says that its content isn't for histories.
const std::vector<QString> &ignoredPasteboardTypes();

} // namespace velmo::ClipboardDefaults
