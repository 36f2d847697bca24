#pragma once

#include "VelmoSystem/Ports/ControlEndpoint.h"

#include <QDBusConnection>

#include <memory>

namespace velmo {

class ControlCalls;
class VerbObjects;

/// Where the running Orvane is on the session bus.
namespace ControlBus {
inline constexpr QLatin1StringView service("app.orvane.Orvane");
inline constexpr QLatin1StringView path("/app/orvane/Orvane");
inline constexpr QLatin1StringView interface("app.orvane.Orvane.Control");
/// Of `org.freedesktop.Application` (freedesktop desktop entries, "D-Bus Activation").
inline constexpr QLatin1StringView applicationInterface("org.freedesktop.Application");
inline constexpr int timeout = 5000; ///< milliseconds a caller waits for an answer
} // namespace ControlBus

/// `ControlEndpoint` on the session bus. A caller is answered when its command has run; one that
/// asks to quit when this object goes, so destroy it last, before the `QCoreApplication`.
class ControlService : public ControlEndpoint {
public:
    /// `files` are those this process was started with. A `second` one hands them over. `verbs` are
    /// all that will be served.
    explicit ControlService(QDBusConnection bus, std::vector<QUrl> files = {},
                            std::vector<VerbSyntax> verbs = {});
    ~ControlService() override;

    Registration claim() override;
    void serve(Commands commands, std::vector<Verb> verbs) override;
    void changed(const QString &noun, const QString &what) override;

private:
    bool ownName();
    bool activateOther();

    QDBusConnection m_bus;
    std::vector<QUrl> m_files;
    std::unique_ptr<ControlCalls> m_calls;
    std::unique_ptr<VerbObjects> m_verbs;
};

} // namespace velmo
