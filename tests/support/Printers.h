#pragma once

#include "VelmoCore/Foundation/Json.h"

#include <QRect>
#include <QString>

#include <ostream>

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
inline void PrintTo(const QRect &rect, std::ostream *out)
{
    *out << rect.width() << 'x' << rect.height() << '+' << rect.x() << '+' << rect.y();
}
QT_END_NAMESPACE

namespace velmo {

/// Records, enumerations and tagged values print as their JSON.
template <class Value>
requires DescribedRecord<Value> || DescribedEnum<Value> || TaggedValue<Value>
void PrintTo(const Value &value, std::ostream *out)
{
    *out << Json::encode(value).toStdString();
}

} // namespace velmo
