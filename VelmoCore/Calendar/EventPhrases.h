#pragma once

#include "VelmoCore/Foundation/WhenText.h"

#include <vector>

/// What the words of a typed event say of its time.
namespace velmo::EventLines {

/// Some words of a line that belong together. One such as "1h" is a time and a length.
struct Phrase {
    qsizetype from = 0; ///< the first word
    qsizetype to = 0;   ///< behind the last
    QString text;       ///< folded
    bool isDay = false;
    std::optional<WhenText::TimeOfDay> time; ///< valid
    std::optional<WhenText::TimeOfDay> end;  ///< of "14h-15h"
    std::optional<Seconds> length;
    std::optional<Seconds> lengthBehind; ///< if "14h 30 min" is a time, and what follows it
    std::optional<Seconds> delay;

    bool isPartOfDay() const { return time && time->isPartOfDay; }
    bool isClock() const { return time && !time->isPartOfDay; }
};

/// The phrases of a line of folded words, in order. They don't overlap.
std::vector<Phrase> phrases(const QStringList &words, QDate today);

} // namespace velmo::EventLines
