#pragma once

#include "VelmoCore/Foundation/JsonCoding.h"

#include <boost/json/monotonic_resource.hpp>

/// The JSON of described records (RFC 8259, UTF-8).
///
/// A described struct is an object of its members' names and those of its bases, keys sorted by
/// their bytes; an absent optional is left out, and null reads as absent. A described enumeration
/// is its case name. `Date` is ISO 8601 in UTC at whole seconds, `Uuid` upper-case canonical text,
/// `QUrl` its absolute text, `QByteArray` Base64 (RFC 4648, section 4), `QString` text, `Seconds` a
/// number, `std::vector` a list, `std::map<QString, T>` an object with sorted keys.
///
/// A tagged value is a `std::variant` of described structs, each with a
/// `static constexpr const char *caseName`, or a struct around one in its sole member `value`: an
/// object with that one key, holding the case's own object; a sole member named `value` stands
/// under
/// "_0".
///
/// Decoding is strict: a missing or wrong field throws `JsonError`, unknown keys are passed over.
/// A record for which `decodesKeyByKey` is true takes its member's default for such a field
/// instead. A type with a form of its own specialises `JsonCoding`.
namespace velmo::Json {

/// Throws `JsonError` on a number that isn't finite and on an enumeration's value without a name.
template <class Value>
QByteArray encode(const Value &value, JsonStyle style = JsonStyle::compact)
{
    JsonWriter writer(style);
    JsonCoding<Value>::write(writer, value);
    return writer.finish();
}

/// Throws `JsonError`.
template <class Value>
Value decode(const std::same_as<boost::json::value> auto &json)
{
    return JsonCoding<Value>::read(json);
}

/// Throws `JsonError` on text that isn't JSON (RFC 8259), on a number beyond a double's range, on
/// lists and objects nested deeper than 64, and on text behind the value. Of equal keys the last
/// holds.
boost::json::value parse(const QByteArray &text, boost::json::storage_ptr storage = {});

/// Throws `JsonError`.
template <class Value>
Value decode(const QByteArray &text)
{
    boost::json::monotonic_resource memory;
    return decode<Value>(parse(text, &memory));
}

} // namespace velmo::Json
