#pragma once

#include "VelmoSystem/Ports/Applications.h"

#include <memory>

namespace velmo {

/// `Applications` with GIO's desktop entries. `changed` comes with GLib's main loop only, which Qt
/// has unless it is set otherwise; what is asked for is right with any. Main thread only.
class DesktopApplications : public Applications {
    Q_OBJECT

public:
    DesktopApplications();
    ~DesktopApplications() override;

    /// Reads the entries (20 ms for 300 of them) at first and after each change.
    std::vector<Application> installed() const override;
    std::optional<Application> find(const QString &id) const override;
    std::optional<QString> idOf(const QUrl &file) const override;
    /// By the bus if the entry says so, else as a process of its own session. Fails while the bus,
    /// which is joined at construction, hasn't answered yet.
    std::optional<QString> handlerOf(const QString &mediaType) const override;
    void launch(const QString &id) override;

private:
    class Monitor;
    struct SessionBus;

    std::unique_ptr<Monitor> m_monitor;
    std::shared_ptr<SessionBus> m_bus;
    mutable std::optional<std::vector<Application>> m_installed; ///< none after a change
};

} // namespace velmo
