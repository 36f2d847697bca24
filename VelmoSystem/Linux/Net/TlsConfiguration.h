#pragma once

#include <QSslConfiguration>

namespace velmo {

/// TLS 1.2 or newer, with servers whose certificate the system trusts for their name.
QSslConfiguration tlsConfiguration();

} // namespace velmo
