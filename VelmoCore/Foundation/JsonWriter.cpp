#include "VelmoCore/Foundation/JsonWriter.h"

#include "VelmoCore/Foundation/JsonError.h"

#include <QChar>

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace velmo {

namespace {

/// What follows the backslash; 'u' stands for the long form, 0 for a character that goes as it is.
constexpr auto escapes = [] {
    std::array<char, 128> table{};
    for (int control = 0; control < 0x20; ++control)
        table[control] = 'u';
    table['\b'] = 'b';
    table['\t'] = 't';
    table['\n'] = 'n';
    table['\f'] = 'f';
    table['\r'] = 'r';
    table['"'] = '"';
    table['\\'] = '\\';
    return table;
}();
constexpr qsizetype longestEscape = 6;

char *putASCII(char *out, char16_t unit)
{
    const char escape = escapes[unit];
    if (escape == 0) {
        *out++ = static_cast<char>(unit);
        return out;
    }
    *out++ = '\\';
    *out++ = escape;
    if (escape == 'u') {
        constexpr const char *digits = "0123456789abcdef";
        *out++ = '0';
        *out++ = '0';
        *out++ = digits[unit >> 4];
        *out++ = digits[unit & 0xf];
    }
    return out;
}

char *putCodePoint(char *out, char32_t code)
{
    const auto tail = [code](int shift) {
        return static_cast<char>(0x80 | ((code >> shift) & 0x3f));
    };
    if (code < 0x800) {
        *out++ = static_cast<char>(0xc0 | (code >> 6));
    } else if (code < 0x10000) {
        *out++ = static_cast<char>(0xe0 | (code >> 12));
        *out++ = tail(6);
    } else {
        *out++ = static_cast<char>(0xf0 | (code >> 18));
        *out++ = tail(12);
        *out++ = tail(6);
    }
    *out++ = tail(0);
    return out;
}

} // namespace

JsonWriter::JsonWriter(JsonStyle style)
    : m_bytes(256, Qt::Uninitialized), m_next(m_bytes.data()), m_end(m_next + m_bytes.size()),
      m_style(style)
{
}

void JsonWriter::key(std::string_view name)
{
    separate();
    plainText(name);
    raw(m_style == JsonStyle::pretty ? ": " : ":");
}

void JsonWriter::key(QStringView name)
{
    separate();
    text(name);
    raw(m_style == JsonStyle::pretty ? ": " : ":");
}

void JsonWriter::null()
{
    raw("null");
}

void JsonWriter::boolean(bool value)
{
    raw(value ? "true" : "false");
}

void JsonWriter::integer(std::int64_t value)
{
    number(value);
}

void JsonWriter::integer(std::uint64_t value)
{
    number(value);
}

void JsonWriter::real(double value)
{
    constexpr double exactIntegers = 1LL << 53;
    if (!std::isfinite(value))
        throw JsonError(QStringLiteral("O número não é finito."));
    const bool isWhole = std::trunc(value) == value && std::abs(value) <= exactIntegers;
    if (isWhole && !(value == 0 && std::signbit(value)))
        number(static_cast<std::int64_t>(value));
    else
        number(value);
}

void JsonWriter::text(QStringView value)
{
    constexpr qsizetype chunk = 4096; // bounds what is reserved for the worst case
    raw("\"");
    const char16_t *next = value.utf16();
    const char16_t *const end = next + value.size();
    while (next < end) {
        const char16_t *const chunkEnd = next + std::min<qsizetype>(chunk, end - next);
        reserve((chunkEnd - next) * longestEscape);
        char *out = m_next;
        while (next < chunkEnd) {
            const char16_t unit = *next++;
            if (unit < 0x80)
                out = putASCII(out, unit);
            else if (!QChar::isSurrogate(unit))
                out = putCodePoint(out, unit);
            else if (QChar::isHighSurrogate(unit) && next < end && QChar::isLowSurrogate(*next))
                out = putCodePoint(out, QChar::surrogateToUcs4(unit, *next++));
            else
                out = putCodePoint(out, QChar::ReplacementCharacter);
        }
        m_next = out;
    }
    raw("\"");
}

void JsonWriter::plainText(std::string_view value)
{
    reserve(static_cast<qsizetype>(value.size()) + 2);
    *m_next++ = '"';
    std::memcpy(m_next, value.data(), value.size());
    m_next += value.size();
    *m_next++ = '"';
}

QByteArray JsonWriter::finish()
{
    if (m_style == JsonStyle::pretty)
        raw("\n");
    m_bytes.truncate(m_next - m_bytes.constData());
    return std::move(m_bytes);
}

void JsonWriter::begin(char bracket)
{
    raw({&bracket, 1});
    ++m_depth;
    m_isFirst = true;
}

void JsonWriter::end(char bracket)
{
    --m_depth;
    if (!m_isFirst)
        newLine();
    raw({&bracket, 1});
    m_isFirst = false;
}

void JsonWriter::separate()
{
    if (!m_isFirst)
        raw(",");
    m_isFirst = false;
    newLine();
}

void JsonWriter::newLine()
{
    if (m_style == JsonStyle::compact)
        return;
    raw("\n");
    for (int level = 0; level < m_depth; ++level)
        raw("  ");
}

void JsonWriter::raw(std::string_view bytes)
{
    reserve(static_cast<qsizetype>(bytes.size()));
    std::memcpy(m_next, bytes.data(), bytes.size());
    m_next += bytes.size();
}

template <class Number>
void JsonWriter::number(Number value)
{
    constexpr qsizetype longestNumber = 32;
    reserve(longestNumber);
    m_next = std::to_chars(m_next, m_end, value).ptr;
}

void JsonWriter::reserve(qsizetype count)
{
    if (m_end - m_next >= count)
        return;
    const qsizetype used = m_next - m_bytes.constData();
    m_bytes.resize(std::max(m_bytes.size() * 2, used + count));
    m_next = m_bytes.data() + used;
    m_end = m_bytes.data() + m_bytes.size();
}

} // namespace velmo
