#pragma once

#include <QStringList>

/// The self-test of the tools that make archives.
namespace velmo::CompressProbe {

/// Compresses copies of the files at each level, and gives a line a level on what came of it.
/// Throws `LocalizedError` where there is no tool or a file can't be copied.
QString run(const QStringList &files);

} // namespace velmo::CompressProbe
