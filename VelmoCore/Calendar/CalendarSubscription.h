#pragma once

#include "VelmoCore/Foundation/Uuid.h"

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

/// An iCalendar feed that the user added by its address.
struct CalendarSubscription {
    Uuid id;
    QString name;
    QUrl url;

    bool operator==(const CalendarSubscription &) const = default;

    /// The address as it is fetched: "webcal://" becomes "https://". Absent unless it is an HTTP or
    /// HTTPS address with a host.
    static std::optional<QUrl> normalizedURL(const QString &text);
};
BOOST_DESCRIBE_STRUCT(CalendarSubscription, (), (id, name, url))

} // namespace velmo
