#pragma once

#include "VelmoCore/Permissions/PermissionKind.h"
#include "VelmoCore/Permissions/PermissionStatus.h"

#include <functional>

namespace velmo {

/// What the desktop says of permissions.
class PermissionSource {
public:
    using Answer = std::function<void(const PermissionStatus &)>;

    virtual ~PermissionSource() = default;

    /// Answers once on the main thread, also where the desktop stays silent.
    virtual void read(PermissionKind kind, Answer answer) = 0;
    /// Asks for it where the desktop has something to ask, then answers as `read` does.
    virtual void request(PermissionKind kind, Answer answer) = 0;
    /// Shows the desktop's own page for the kind. Throws `LocalizedError` where there is none.
    virtual void openSettings(PermissionKind kind) = 0;
    /// False where nothing can be asked, because there is no session bus.
    virtual bool hasBundle() const = 0;
};

} // namespace velmo
