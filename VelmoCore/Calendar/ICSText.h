#pragma once

#include "VelmoCore/Calendar/ICSParser.h"

#include <QByteArray>

#include <initializer_list>

/// An iCalendar text in lines that can be written back as they stood.
namespace velmo::ICSWriter {

/// One property with its folds, or a line that is none.
struct Line {
    QByteArray bytes;             ///< without the end of the line
    ICSParser::Property property; ///< as the parser reads it
    bool isOwn = false;           ///< of an event itself, not of an alarm in it

    /// A line that stands as it is.
    static Line read(const QByteArray &bytes);
    /// A new line, folded at 75 octets. `head` is the name with the parameters.
    static Line make(const QByteArray &head, const QByteArray &value);

    QByteArray head() const;
};

/// A value of type TEXT. Control characters go.
QByteArray escaped(QString text);

/// Only the parameters of these names stay, or all but these.
QByteArray withParameters(const QByteArray &head, std::initializer_list<QStringView> names);
QByteArray withoutParameters(const QByteArray &head, std::initializer_list<QStringView> names);

/// An event from BEGIN to END, or what stands around events.
struct Block {
    std::vector<Line> lines;
    bool isEvent = false;

    /// The event's own first line of that name, or null.
    const Line *first(QStringView name) const;
    bool has(QStringView name) const { return first(name) != nullptr; }
    /// In the place of the first line with its name; without one at the end of the event's own.
    void put(Line line);
    /// Behind the last line of a name that is there.
    void putBehind(QStringView name, Line line);
    void remove(std::initializer_list<QStringView> names);
};

std::vector<Block> blocks(const QByteArray &text);
QByteArray joined(const std::vector<Block> &blocks);

} // namespace velmo::ICSWriter
