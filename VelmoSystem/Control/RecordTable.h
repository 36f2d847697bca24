#pragma once

#include "VelmoSystem/Control/Verb.h"

/// Records as text, a line each. Control characters of their fields become spaces.
namespace velmo::RecordTable {

/// Under the headings, in aligned columns, moments as the user reads them. What doesn't fit into
/// `width` characters is cut.
QString aligned(const std::vector<VerbColumn> &columns, const QJsonArray &records, int width);

/// Whole, with tabs between the columns and no heading, for programs.
QString separated(const std::vector<VerbColumn> &columns, const QJsonArray &records);

} // namespace velmo::RecordTable
