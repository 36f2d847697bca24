#pragma once

#include <boost/describe.hpp>

namespace velmo {

/// Whether the desktop starts Orvane with the session.
class LoginItem {
public:
    enum class Status {
        disabled,
        enabled,
        requiresApproval, ///< it is there, but the user switched it off in the desktop's settings
    };
    BOOST_DESCRIBE_NESTED_ENUM(Status, disabled, enabled, requiresApproval)

    virtual ~LoginItem() = default;

    virtual Status status() const = 0;
    /// Throws `LocalizedError`.
    virtual void setEnabled(bool isEnabled) = 0;
};

} // namespace velmo
