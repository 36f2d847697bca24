#pragma once

#include "VelmoSystem/Ports/Applications.h"

namespace velmo::ApplicationSearch {

/// Those whose name or keywords hold the text in any case, those first whose name begins with it.
std::vector<Applications::Application> find(const Applications &applications, const QString &text);

/// The address of its picture.
QString iconSource(const Applications::Application &application);

} // namespace velmo::ApplicationSearch
