#pragma once

#include <QLoggingCategory>

/// One logger a category, under the identifier `app.orvane.Orvane`. Shown from level info up;
/// `QT_LOGGING_RULES="app.orvane.Orvane.*=true"` shows all.
namespace velmo::Log {

Q_DECLARE_LOGGING_CATEGORY(app)
Q_DECLARE_LOGGING_CATEGORY(notch)
Q_DECLARE_LOGGING_CATEGORY(settings)
Q_DECLARE_LOGGING_CATEGORY(permissions)
Q_DECLARE_LOGGING_CATEGORY(modules)
Q_DECLARE_LOGGING_CATEGORY(storage)
Q_DECLARE_LOGGING_CATEGORY(input)
Q_DECLARE_LOGGING_CATEGORY(mail)

} // namespace velmo::Log
