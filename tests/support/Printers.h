#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Json.h"

#include <QString>

#include <ostream>

#include <boost/describe.hpp>

/// How values read in a failed expectation.
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray &data, std::ostream *out)
{
    *out << '"' << data.toStdString() << '"';
}
QT_END_NAMESPACE

namespace velmo {

/// Described records print as their JSON.
template <class Record>
    requires boost::describe::has_describe_members<Record>::value
void PrintTo(const Record &record, std::ostream *out)
{
    *out << Json::encode(record).toStdString();
}

template <class Enum>
    requires boost::describe::has_describe_enumerators<Enum>::value
void PrintTo(Enum value, std::ostream *out)
{
    *out << boost::describe::enum_to_string(value, "?");
}

} // namespace velmo
