#include "VelmoCore/Foundation/JsonCoding.h"

#include <cmath>

namespace velmo {

JsonError::JsonError(const QString &reason, const QString &path)
    : LocalizedError(path.isEmpty() ? reason : path + QStringLiteral(": ") + reason),
      m_reason(reason), m_path(path)
{
}

JsonError JsonError::inside(std::string_view key) const
{
    const bool needsPoint = !m_path.isEmpty() && !m_path.startsWith(u'[');
    return JsonError(m_reason, QString::fromUtf8(key) +
                                   (needsPoint ? QStringLiteral(".") : QString()) + m_path);
}

JsonError JsonError::inside(std::size_t index) const
{
    return inside(std::string_view('[' + std::to_string(index) + ']'));
}

namespace JsonParts {

Members::Members(const boost::json::value &json) : m_object(object(json))
{
}

const boost::json::value *Members::find(std::string_view key)
{
    if (m_next < m_object.size()) {
        const boost::json::key_value_pair &member = m_object.begin()[m_next];
        if (member.key() == key) {
            ++m_next;
            return &member.value();
        }
    }
    return m_object.if_contains(key);
}

const boost::json::array &list(const boost::json::value &json)
{
    if (const auto *list = json.if_array())
        return *list;
    throw JsonError(QStringLiteral("Não é uma lista."));
}

const boost::json::object &object(const boost::json::value &json)
{
    if (const auto *object = json.if_object())
        return *object;
    throw JsonError(QStringLiteral("Não é um objeto."));
}

const boost::json::key_value_pair &soleMember(const boost::json::value &json)
{
    const boost::json::object &members = object(json);
    if (members.size() != 1)
        throw JsonError(QStringLiteral("Invalid number of keys found, expected one."));
    return *members.begin();
}

std::string_view string(const boost::json::value &json)
{
    if (const auto *string = json.if_string())
        return *string;
    throw JsonError(QStringLiteral("Não é um texto."));
}

namespace {

/// The number as an integer that `Integer` holds, also from a form such as 3.0.
template <class Integer>
Integer integer(const boost::json::value &json)
{
    if (const auto *value = json.if_int64(); value && std::in_range<Integer>(*value))
        return static_cast<Integer>(*value);
    if (const auto *value = json.if_uint64(); value && std::in_range<Integer>(*value))
        return static_cast<Integer>(*value);
    if (!json.is_number())
        throw JsonError(QStringLiteral("Não é um número."));
    if (const auto *value = json.if_double()) {
        if (std::trunc(*value) != *value)
            throw JsonError(QStringLiteral("Não é um número inteiro."));
        // One past the largest is a power of two, which a double holds exactly.
        constexpr double limit = std::is_signed_v<Integer> ? 0x1p63 : 0x1p64;
        constexpr double lowest = std::is_signed_v<Integer> ? -0x1p63 : 0;
        if (*value >= lowest && *value < limit)
            return static_cast<Integer>(*value);
    }
    throwOutOfRange();
}

QString text(const boost::json::value &json)
{
    const std::string_view bytes = string(json);
    const QString text = QString::fromUtf8(bytes);
    // A byte order mark is a character like any other here; QString drops it.
    return bytes.starts_with("\xef\xbb\xbf") ? QChar(QChar::ByteOrderMark) + text : text;
}

} // namespace

std::int64_t signedInteger(const boost::json::value &json)
{
    return integer<std::int64_t>(json);
}

std::uint64_t unsignedInteger(const boost::json::value &json)
{
    return integer<std::uint64_t>(json);
}

void throwOutOfRange()
{
    throw JsonError(QStringLiteral("O número está fora do intervalo."));
}

void throwMissing()
{
    throw JsonError(QStringLiteral("Falta o campo."));
}

void throwUnknownCase(std::string_view name)
{
    throw JsonError(QStringLiteral("Caso desconhecido: “%1”.").arg(QString::fromUtf8(name)));
}

bool precedesInBytes(QStringView left, QStringView right)
{
    // UTF-16 has the surrogates, which lead to the highest code points, below U+E000.
    const auto rank = [](QChar unit) {
        return unit.unicode() + (unit.isSurrogate() ? 0x10000 : 0);
    };
    return std::ranges::lexicographical_compare(left, right, {}, rank, rank);
}

} // namespace JsonParts

bool JsonCoding<bool>::read(const boost::json::value &json)
{
    if (const bool *value = json.if_bool())
        return *value;
    throw JsonError(QStringLiteral("Não é verdadeiro nem falso."));
}

double JsonCoding<double>::read(const boost::json::value &json)
{
    if (const auto *value = json.if_double())
        return *value;
    if (const auto *value = json.if_int64())
        return static_cast<double>(*value);
    if (const auto *value = json.if_uint64())
        return static_cast<double>(*value);
    throw JsonError(QStringLiteral("Não é um número."));
}

QString JsonCoding<QString>::read(const boost::json::value &json)
{
    return JsonParts::text(json);
}

void JsonCoding<Date>::write(JsonWriter &writer, Date value)
{
    writer.text(iso8601Text(value));
}

Date JsonCoding<Date>::read(const boost::json::value &json)
{
    if (const auto date = dateFromISO8601(JsonParts::text(json)))
        return *date;
    throw JsonError(QStringLiteral("Não é uma data no formato ISO 8601."));
}

void JsonCoding<Uuid>::write(JsonWriter &writer, const Uuid &value)
{
    writer.text(uuidText(value));
}

Uuid JsonCoding<Uuid>::read(const boost::json::value &json)
{
    if (const auto uuid = uuidFromText(JsonParts::text(json)))
        return *uuid;
    throw JsonError(QStringLiteral("Não é um UUID."));
}

void JsonCoding<QUrl>::write(JsonWriter &writer, const QUrl &value)
{
    writer.text(QString::fromUtf8(value.toEncoded()));
}

QUrl JsonCoding<QUrl>::read(const boost::json::value &json)
{
    const std::string_view text = JsonParts::string(json);
    QUrl url = QUrl::fromEncoded(QByteArray(text.data(), static_cast<qsizetype>(text.size())));
    if (!text.empty() && !url.isValid())
        throw JsonError(QStringLiteral("Não é um URL."));
    return url;
}

void JsonCoding<QByteArray>::write(JsonWriter &writer, const QByteArray &value)
{
    const QByteArray text = value.toBase64();
    writer.plainText({text.constData(), static_cast<std::size_t>(text.size())});
}

QByteArray JsonCoding<QByteArray>::read(const boost::json::value &json)
{
    const std::string_view text = JsonParts::string(json);
    auto result = QByteArray::fromBase64Encoding(
        QByteArray(text.data(), static_cast<qsizetype>(text.size())),
        QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        throw JsonError(QStringLiteral("Não é Base64."));
    return std::move(*result);
}

} // namespace velmo
