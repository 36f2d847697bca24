#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// Events as Evolution Data Server gives them: a VEVENT alone, or a VCALENDAR with all of a series.
namespace velmo::EvolutionEvents {

struct Component {
    QString uid;
    QString recurrence; ///< of an exception: the occurrence in whose place it is (RECURRENCE-ID)
    bool isOfSeries = false; ///< there may be others with this UID
    QByteArray text;         ///< the VEVENT, UTF-8
};

/// What has no UID or no start that can be read is logged and left out.
std::vector<Component> read(const QString &text);

/// As one text, the series before its exceptions.
QByteArray joined(std::vector<Component> components);

} // namespace velmo::EvolutionEvents
