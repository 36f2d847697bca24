#pragma once

#include "VelmoSystem/Control/Verb.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <vector>

namespace velmo {

/// How other programs, the desktop and the command line reach the running Orvane. The callbacks run
/// on the main thread.
class ControlEndpoint {
public:
    struct Commands {
        std::function<void()> activate; ///< a second launch
        std::function<void(const std::vector<QUrl> &)> openFiles;
        std::function<void(const QString &moduleID)> open; ///< empty for the module last shown
        /// Whether a module with that id exists.
        std::function<bool(const QString &moduleID)> hasModule;
        /// Shows the settings; empty for the page last shown.
        std::function<void(const QString &pane)> settings;
        std::function<bool(const QString &pane)> hasSettingsPane;
        std::function<void()> toggle;
        std::function<void()> hide;
        std::function<void()> show;
        std::function<void()> quit;
        std::function<QString()> status; ///< one JSON object
    };

    enum class Registration {
        first,  ///< this process answers from now on
        second, ///< another one answers already, and has been activated
        noBus,  ///< there is no session bus; nobody can reach this process
    };

    virtual ~ControlEndpoint() = default;

    /// Claims the name. Call before anything that a second process must not do.
    virtual Registration claim() = 0;
    /// Calls that came since `claim` are answered now.
    virtual void serve(Commands commands, std::vector<Verb> verbs) = 0;
    /// Reports to whoever listens that `what` of a noun's has changed: "items" of "clipboard".
    virtual void changed(const QString &noun, const QString &what) = 0;
};

} // namespace velmo
