#include "VelmoCore/Foundation/Json.h"

#include <cstdlib>

namespace velmo {

enum class Kind { one, two };
BOOST_DESCRIBE_ENUM(Kind, one, two)

struct None {
    static constexpr const char *caseName = "none";
    bool operator==(const None &) const = default;
};
BOOST_DESCRIBE_STRUCT(None, (), ())

struct Link {
    static constexpr const char *caseName = "link";
    QUrl value;
    /// `QUrl` mends a malformed address, and doesn't equal itself until it has been text.
    bool operator==(const Link &other) const
    {
        return value.toEncoded() == other.value.toEncoded();
    }
};
BOOST_DESCRIBE_STRUCT(Link, (), (value))

struct Lenient {
    double ratio = 0.5;
    QByteArray data;
    bool operator==(const Lenient &) const = default;
};
BOOST_DESCRIBE_STRUCT(Lenient, (), (ratio, data))
template <>
inline constexpr bool decodesKeyByKey<Lenient> = true;

/// One field of each type, every one optional so that mutations reach them one by one.
struct Record {
    std::optional<bool> flag;
    std::optional<std::int8_t> small;
    std::optional<std::uint64_t> large;
    std::optional<double> real;
    std::optional<QString> text;
    std::optional<Date> date;
    std::optional<Uuid> id;
    std::optional<QByteArray> data;
    std::optional<Kind> kind;
    std::optional<std::variant<None, Link>> content;
    std::optional<Lenient> lenient;
    std::map<QString, std::optional<std::int64_t>> map;
    std::vector<Record> children;
    bool operator==(const Record &) const = default;
};
BOOST_DESCRIBE_STRUCT(Record, (),
                      (flag, small, large, real, text, date, id, data, kind, content, lenient, map,
                       children))

} // namespace velmo

/// What decodes at all comes back equal from either style, and as the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;
    const auto text =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    Record record;
    try {
        record = Json::decode<Record>(text);
    } catch (const JsonError &) {
        return 0;
    }
    const QByteArray compact = Json::encode(record);
    const QByteArray pretty = Json::encode(record, JsonStyle::pretty);
    const auto again = Json::decode<Record>(compact);
    if (again != record || Json::decode<Record>(pretty) != record || Json::encode(again) != compact)
        std::abort();
    return 0;
}
