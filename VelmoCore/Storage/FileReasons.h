#pragma once

#include <QString>

/// Why the system refused an operation on a file.
namespace velmo::FileReasons {

/// Of an errno value, in the user's language: "não há espaço livre no disco".
QString text(int code);

} // namespace velmo::FileReasons
