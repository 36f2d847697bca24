#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/JsonError.h"
#include "VelmoCore/Foundation/JsonWriter.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <boost/describe.hpp>
#include <boost/json/value.hpp>
#include <boost/mp11/algorithm.hpp>

#include <algorithm>
#include <array>
#include <concepts>
#include <map>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

/// How each type stands in JSON. `Json.h` lists the forms.
namespace velmo {

/// A type's form in JSON. A type with a form of its own declares a specialisation in its header,
/// ahead of any use:
///
///     template <>
///     struct JsonCoding<KeyModifiers> {
///         static void write(JsonWriter &writer, const KeyModifiers &value);
///         static KeyModifiers read(const boost::json::value &json); // throws JsonError
///     };
///
/// and defines both by way of another type's coding, as `JsonCoding<std::uint32_t>::read(json)`, or
/// of `JsonCases<Enum>`.
template <class Value>
struct JsonCoding;

/// Specialise as true for a record whose missing or bad fields take the member's default.
template <class Record>
inline constexpr bool decodesKeyByKey = false;

template <class Value>
concept DescribedEnum = boost::describe::has_describe_enumerators<Value>::value;

template <class Variant>
inline constexpr bool isVariantOfCases = false;
template <class... Cases>
inline constexpr bool isVariantOfCases<std::variant<Cases...>> = (requires { Cases::caseName; } &&
                                                                  ...);

/// A struct around one variant, its sole member `value`.
template <class Value>
concept TaggedValue = requires(Value tagged)
{
    requires isVariantOfCases<decltype(tagged.value)>;
    requires sizeof(Value) == sizeof(tagged.value);
};

template <class Value>
concept DescribedRecord =
    boost::describe::has_describe_members<Value>::value && !TaggedValue<Value>;

namespace JsonParts {

template <class Value>
inline constexpr bool isOptional = false;
template <class Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

/// Finds an object's members, fastest in the order in which they stand there.
class Members {
public:
    /// Throws `JsonError` where `json` is no object.
    explicit Members(const boost::json::value &json);

    const boost::json::value *find(std::string_view key);

private:
    const boost::json::object &m_object;
    std::size_t m_next = 0;
};

const boost::json::array &list(const boost::json::value &json);
const boost::json::object &object(const boost::json::value &json);
/// The one member of a tagged value's object.
const boost::json::key_value_pair &soleMember(const boost::json::value &json);
std::string_view string(const boost::json::value &json);
std::int64_t signedInteger(const boost::json::value &json);
std::uint64_t unsignedInteger(const boost::json::value &json);
[[noreturn]] void throwOutOfRange();
[[noreturn]] void throwMissing();
[[noreturn]] void throwUnknownCase(std::string_view name);
/// In the order of the keys' UTF-8 bytes.
bool precedesInBytes(QStringView left, QStringView right);

template <class Record>
struct Field {
    std::string_view key;
    void (*write)(JsonWriter &, std::string_view key, const Record &);
    void (*read)(const boost::json::value *, Record &);
};

template <class Record, class Member>
constexpr Field<Record> field(std::string_view key)
{
    using Value = std::remove_cvref_t<decltype(std::declval<Record>().*Member::pointer)>;
    return {
        key,
        [](JsonWriter &writer, std::string_view name, const Record &record) {
            const Value &value = record.*Member::pointer;
            if constexpr (isOptional<Value>) {
                if (!value)
                    return;
            }
            writer.key(name);
            JsonCoding<Value>::write(writer, value);
        },
        [](const boost::json::value *json, Record &record) {
            if (json)
                record.*Member::pointer = JsonCoding<Value>::read(*json);
            else if constexpr (!isOptional<Value>)
                throwMissing();
        },
    };
}

template <class Record, class... Members>
constexpr auto sortedFields(boost::mp11::mp_list<Members...>)
{
    std::array<Field<Record>, sizeof...(Members)> fields{field<Record, Members>(Members::name)...};
    if constexpr (requires { Record::caseName; } && fields.size() == 1) {
        if (fields[0].key == "value")
            fields[0].key = "_0";
    }
    std::ranges::sort(fields, {}, &Field<Record>::key);
    return fields;
}

/// A record's members and those of its public bases, by key.
template <class Record>
inline constexpr auto fields = sortedFields<Record>(
    boost::mp11::mp_rename<
        boost::describe::describe_members<Record, boost::describe::mod_public |
                                                      boost::describe::mod_inherited>,
        boost::mp11::mp_list>{});

} // namespace JsonParts

template <>
struct JsonCoding<bool> {
    static void write(JsonWriter &writer, bool value) { writer.boolean(value); }
    static bool read(const boost::json::value &json);
};

template <>
struct JsonCoding<double> {
    static void write(JsonWriter &writer, double value) { writer.real(value); }
    static double read(const boost::json::value &json);
};

template <>
struct JsonCoding<Seconds> {
    static void write(JsonWriter &writer, Seconds value) { writer.real(value.count()); }
    static Seconds read(const boost::json::value &json)
    {
        return Seconds(JsonCoding<double>::read(json));
    }
};

template <>
struct JsonCoding<QString> {
    static void write(JsonWriter &writer, const QString &value) { writer.text(value); }
    static QString read(const boost::json::value &json);
};

template <>
struct JsonCoding<Date> {
    static void write(JsonWriter &writer, Date value);
    static Date read(const boost::json::value &json);
};

template <>
struct JsonCoding<Uuid> {
    static void write(JsonWriter &writer, const Uuid &value);
    static Uuid read(const boost::json::value &json);
};

template <>
struct JsonCoding<QUrl> {
    static void write(JsonWriter &writer, const QUrl &value);
    static QUrl read(const boost::json::value &json);
};

template <>
struct JsonCoding<QByteArray> {
    static void write(JsonWriter &writer, const QByteArray &value);
    static QByteArray read(const boost::json::value &json);
};

template <std::signed_integral Integer>
struct JsonCoding<Integer> {
    static void write(JsonWriter &writer, Integer value) { writer.integer(std::int64_t{value}); }
    static Integer read(const boost::json::value &json)
    {
        const std::int64_t value = JsonParts::signedInteger(json);
        if (!std::in_range<Integer>(value))
            JsonParts::throwOutOfRange();
        return static_cast<Integer>(value);
    }
};

template <std::unsigned_integral Integer>
struct JsonCoding<Integer> {
    static void write(JsonWriter &writer, Integer value) { writer.integer(std::uint64_t{value}); }
    static Integer read(const boost::json::value &json)
    {
        const std::uint64_t value = JsonParts::unsignedInteger(json);
        if (!std::in_range<Integer>(value))
            JsonParts::throwOutOfRange();
        return static_cast<Integer>(value);
    }
};

/// Null outside a record, where there is no key to leave out.
template <class Value>
struct JsonCoding<std::optional<Value>> {
    static void write(JsonWriter &writer, const std::optional<Value> &value)
    {
        if (value)
            JsonCoding<Value>::write(writer, *value);
        else
            writer.null();
    }
    static std::optional<Value> read(const boost::json::value &json)
    {
        if (json.is_null())
            return std::nullopt;
        return JsonCoding<Value>::read(json);
    }
};

template <class Value>
struct JsonCoding<std::vector<Value>> {
    static void write(JsonWriter &writer, const std::vector<Value> &values)
    {
        writer.beginArray();
        for (const Value &value : values) {
            writer.element();
            JsonCoding<Value>::write(writer, value);
        }
        writer.endArray();
    }
    static std::vector<Value> read(const boost::json::value &json)
    {
        const boost::json::array &list = JsonParts::list(json);
        std::vector<Value> values;
        values.reserve(list.size());
        try {
            for (const boost::json::value &element : list)
                values.push_back(JsonCoding<Value>::read(element));
        } catch (const JsonError &error) {
            throw error.inside(values.size());
        }
        return values;
    }
};

template <class Value>
struct JsonCoding<std::map<QString, Value>> {
    using Map = std::map<QString, Value>;

    static void write(JsonWriter &writer, const Map &map)
    {
        std::vector<const typename Map::value_type *> entries;
        for (const auto &entry : map)
            entries.push_back(&entry);
        std::ranges::sort(entries, JsonParts::precedesInBytes,
                          [](const auto *entry) { return QStringView(entry->first); });
        writer.beginObject();
        for (const auto *entry : entries) {
            writer.key(QStringView(entry->first));
            JsonCoding<Value>::write(writer, entry->second);
        }
        writer.endObject();
    }
    static Map read(const boost::json::value &json)
    {
        Map map;
        for (const boost::json::key_value_pair &member : JsonParts::object(json)) {
            const std::string_view key = member.key();
            try {
                map.insert_or_assign(QString::fromUtf8(key),
                                     JsonCoding<Value>::read(member.value()));
            } catch (const JsonError &error) {
                throw error.inside(key);
            }
        }
        return map;
    }
};

/// An enumeration as its case name; the base of a coding that tolerates other words too.
template <DescribedEnum Enum>
struct JsonCases {
    static void write(JsonWriter &writer, Enum value)
    {
        const auto found = std::ranges::find(cases, value, &Case::second);
        if (found == cases.end())
            JsonParts::throwUnknownCase(std::to_string(static_cast<long long>(value)));
        writer.plainText(found->first);
    }
    static Enum read(const boost::json::value &json)
    {
        const std::string_view name = JsonParts::string(json);
        const auto found = std::ranges::find(cases, name, &Case::first);
        if (found == cases.end())
            JsonParts::throwUnknownCase(name);
        return found->second;
    }

private:
    using Case = std::pair<std::string_view, Enum>;

    static constexpr auto cases = []<class... Cases>(boost::mp11::mp_list<Cases...>) {
        return std::array{Case(Cases::name, Cases::value)...};
    }(boost::mp11::mp_rename<boost::describe::describe_enumerators<Enum>, boost::mp11::mp_list>{});
};

template <DescribedEnum Enum>
struct JsonCoding<Enum> : JsonCases<Enum> {
};

template <DescribedRecord Record>
struct JsonCoding<Record> {
    static void write(JsonWriter &writer, const Record &record)
    {
        writer.beginObject();
        for (const auto &field : JsonParts::fields<Record>)
            field.write(writer, field.key, record);
        writer.endObject();
    }
    static Record read(const boost::json::value &json)
    {
        JsonParts::Members members(json);
        Record record{};
        for (const auto &field : JsonParts::fields<Record>) {
            try {
                field.read(members.find(field.key), record);
            } catch (const JsonError &error) {
                if constexpr (!decodesKeyByKey<Record>)
                    throw error.inside(field.key);
            }
        }
        return record;
    }
};

template <class... Cases>
requires isVariantOfCases<std::variant<Cases...>>
struct JsonCoding<std::variant<Cases...>> {
    using Variant = std::variant<Cases...>;

    static void write(JsonWriter &writer, const Variant &variant)
    {
        writer.beginObject();
        std::visit(
            [&writer]<class Case>(const Case &payload) {
                writer.key(std::string_view(Case::caseName));
                JsonCoding<Case>::write(writer, payload);
            },
            variant);
        writer.endObject();
    }
    static Variant read(const boost::json::value &json)
    {
        const boost::json::key_value_pair &member = JsonParts::soleMember(json);
        const std::string_view name = member.key();
        std::optional<Variant> variant;
        try {
            (void)((name == Cases::caseName &&
                    (variant = JsonCoding<Cases>::read(member.value()), true)) ||
                   ...);
        } catch (const JsonError &error) {
            throw error.inside(name);
        }
        if (!variant)
            JsonParts::throwUnknownCase(name);
        return std::move(*variant);
    }
};

template <TaggedValue Tagged>
struct JsonCoding<Tagged> {
    using Variant = decltype(Tagged::value);

    static void write(JsonWriter &writer, const Tagged &tagged)
    {
        JsonCoding<Variant>::write(writer, tagged.value);
    }
    static Tagged read(const boost::json::value &json) { return {JsonCoding<Variant>::read(json)}; }
};

} // namespace velmo
