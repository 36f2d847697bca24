#pragma once

#include <QString>

#include <optional>

namespace velmo {

/// The application whose window has the user's attention.
class FrontApplication {
public:
    struct Info {
        QString name;
        QString bundleID; ///< as settings and profiles know it, else the desktop's own id

        bool operator==(const Info &) const = default;
    };

    virtual ~FrontApplication() = default;

    /// Nothing while no window is active.
    virtual std::optional<Info> current() const = 0;
};

} // namespace velmo
