#pragma once

#include <QString>

#include <boost/describe.hpp>

#include <array>

namespace velmo {

/// What Orvane may need the user's or the desktop's leave for. Each is asked for only when the user
/// first uses what depends on it; refusing one switches off only that.
enum class PermissionKind {
    notifications,
    calendar,
    reminders,
    camera,
    microphone,
    screenRecording,
    accessibility,
    automation,
    bluetooth,
};
BOOST_DESCRIBE_ENUM(PermissionKind, notifications, calendar, reminders, camera, microphone,
                    screenRecording, accessibility, automation, bluetooth)

/// What the user reads about a kind.
struct PermissionTexts {
    QString title;
    QString symbol;
    QString explanation;
    QString usedBy; ///< the feature that needs it
};

namespace Permissions {

/// Every kind, in the order in which they are shown.
inline constexpr std::array all = {
    PermissionKind::notifications, PermissionKind::calendar,   PermissionKind::reminders,
    PermissionKind::camera,        PermissionKind::microphone, PermissionKind::screenRecording,
    PermissionKind::accessibility, PermissionKind::automation, PermissionKind::bluetooth,
};

PermissionTexts texts(PermissionKind kind);

} // namespace Permissions
} // namespace velmo
