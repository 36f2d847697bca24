#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QString>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

/// A note in plain text. Its tags and links are read out of the text.
struct Note {
    Uuid id;
    QString text;
    bool isPinned = false;
    Date created;
    Date updated;
    std::optional<QString> eventID; ///< of the calendar event that it belongs to

    bool operator==(const Note &) const = default;
};
BOOST_DESCRIBE_STRUCT(Note, (), (id, text, isPinned, created, updated, eventID))

/// Something to do.
struct TaskItem {
    Uuid id;
    QString title;
    bool isDone = false;
    std::optional<Date> due; ///< when the user is reminded
    Date created;
    std::optional<Date> completedAt;
    std::optional<Date> reminded; ///< the `due` that the user needs no reminder of any more

    bool isOverdue(Date date) const { return due && !isDone && *due < date; }

    bool operator==(const TaskItem &) const = default;
};
BOOST_DESCRIBE_STRUCT(TaskItem, (), (id, title, isDone, due, created, completedAt, reminded))

} // namespace velmo
