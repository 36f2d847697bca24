#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QByteArray>

#include <boost/json/value.hpp>

/// The JSON of described records (RFC 8259, UTF-8).
///
/// A described struct is an object of its members' names, keys sorted; an absent optional is left
/// out; a described enumeration is its case name. `Date` is ISO 8601 in UTC at whole seconds, `Uuid`
/// upper-case canonical text, `QUrl` its absolute text, `QByteArray` Base64 (RFC 4648, section 4),
/// `QString` text, `std::vector` a list, `std::map<QString, T>` an object with sorted keys.
///
/// A tagged value derives from a `std::variant` of described structs, each with a
/// `static constexpr const char *caseName`: an object with that one key, holding the case's own
/// object; a sole member named `value` stands under "_0".
///
/// Decoding is strict: a missing or wrong field throws `JsonError`, unknown keys are passed over.
/// A record for which `decodesKeyByKey` is true takes its member's default for such a field instead.
/// A type with a form of its own specialises `JsonCoding`.
namespace velmo {

/// Text that isn't JSON, or JSON that isn't the record asked for. The description says where.
class JsonError : public LocalizedError {
public:
    using LocalizedError::LocalizedError;
};

template <class Record>
inline constexpr bool decodesKeyByKey = false;

/// A type's own form in JSON: a specialisation has
/// `static void write(JsonWriter &, const Value &)` and
/// `static Value read(const boost::json::value &)`, which throws `JsonError`.
template <class Value>
struct JsonCoding;

enum class JsonStyle { compact, pretty };

namespace Json {

template <class Value>
QByteArray encode(const Value &value, JsonStyle style = JsonStyle::compact);

/// Throws `JsonError`.
template <class Value>
Value decode(const QByteArray &text);

/// Throws `JsonError`.
template <class Value>
Value decode(const boost::json::value &json);

/// Throws `JsonError` on text that isn't JSON (RFC 8259), on a root nested deeper than 64, or on
/// text behind the value.
boost::json::value parse(const QByteArray &text);

} // namespace Json
} // namespace velmo
