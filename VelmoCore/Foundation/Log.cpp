#include "VelmoCore/Foundation/Log.h"

namespace velmo::Log {

Q_LOGGING_CATEGORY(app, "app.orvane.Orvane.app", QtInfoMsg)
Q_LOGGING_CATEGORY(notch, "app.orvane.Orvane.notch", QtInfoMsg)
Q_LOGGING_CATEGORY(settings, "app.orvane.Orvane.settings", QtInfoMsg)
Q_LOGGING_CATEGORY(permissions, "app.orvane.Orvane.permissions", QtInfoMsg)
Q_LOGGING_CATEGORY(modules, "app.orvane.Orvane.modules", QtInfoMsg)
Q_LOGGING_CATEGORY(storage, "app.orvane.Orvane.storage", QtInfoMsg)
Q_LOGGING_CATEGORY(input, "app.orvane.Orvane.input", QtInfoMsg)
Q_LOGGING_CATEGORY(mail, "app.orvane.Orvane.mail", QtInfoMsg)

} // namespace velmo::Log
