#pragma once

#include "VelmoSystem/Ports/ShareService.h"

#include <QString>

#include <optional>

namespace velmo {

/// `ShareService` with the first program of the desktop that sends files: over Bluetooth, to a
/// phone or by mail.
class DesktopShare : public ShareService {
public:
    bool isAvailable() const override { return program().has_value(); }
    void share(const std::vector<QUrl> &files) override;

private:
    /// Its path; nothing where there is none.
    static std::optional<QString> program();
};

} // namespace velmo
