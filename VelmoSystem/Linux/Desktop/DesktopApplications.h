#pragma once

#include "VelmoSystem/Ports/Applications.h"

namespace velmo {

/// `Applications` with GIO's desktop entries.
class DesktopApplications : public Applications {
    Q_OBJECT

public:
    DesktopApplications();

    std::vector<Application> installed() const override;
    std::optional<Application> find(const QString &id) const override;
    std::optional<QString> idOf(const QUrl &file) const override;
    void launch(const QString &id) override;
};

} // namespace velmo
