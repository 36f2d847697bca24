#pragma once

#include "VelmoSystem/Ports/PermissionSource.h"

#include <QObject>

#include <map>
#include <optional>

namespace velmo {

/// The kept status of each permission. Main thread only.
class PermissionsCenter : public QObject {
    Q_OBJECT

public:
    explicit PermissionsCenter(PermissionSource &source);

    /// False where the desktop can't be asked.
    bool hasBundle() const { return m_source.hasBundle(); }
    const std::map<PermissionKind, PermissionStatus> &statuses() const { return m_statuses; }
    /// The kept one, `NotDetermined` until it was read.
    PermissionStatus status(PermissionKind kind) const;

    void refreshAll();
    void refresh(PermissionKind kind);
    void request(PermissionKind kind);
    /// Gives the text for the user where the desktop has no such page.
    std::optional<QString> openSettings(PermissionKind kind);

Q_SIGNALS:
    /// A status differs from before.
    void changed();

private:
    PermissionSource::Answer keeper(PermissionKind kind);
    void keep(PermissionKind kind, const PermissionStatus &status);

    PermissionSource &m_source;
    std::map<PermissionKind, PermissionStatus> m_statuses;
};

} // namespace velmo
