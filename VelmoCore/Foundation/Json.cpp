#include "VelmoCore/Foundation/Json.h"

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/value_stack.hpp>

#include <charconv>
#include <cmath>

namespace velmo::Json {

namespace {

constexpr std::size_t depthLimit = 64;

/// Builds the value, with each double read to the last bit, which the library's own parser doesn't.
class ValueBuilder {
public:
    // NOLINTBEGIN(readability-identifier-naming): the parser's own names
    static constexpr std::size_t max_object_size = boost::json::object::max_size();
    static constexpr std::size_t max_array_size = boost::json::array::max_size();
    static constexpr std::size_t max_key_size = boost::json::string::max_size();
    static constexpr std::size_t max_string_size = boost::json::string::max_size();

    using Error = boost::json::error_code;
    using Text = boost::json::string_view;

    explicit ValueBuilder(boost::json::storage_ptr storage) { m_stack.reset(std::move(storage)); }

    boost::json::value release() { return m_stack.release(); }

    bool on_document_begin(Error &) { return true; }
    bool on_document_end(Error &) { return true; }
    bool on_object_begin(Error &) { return true; }
    bool on_object_end(std::size_t count, Error &)
    {
        m_stack.push_object(count);
        return true;
    }
    bool on_array_begin(Error &) { return true; }
    bool on_array_end(std::size_t count, Error &)
    {
        m_stack.push_array(count);
        return true;
    }
    bool on_key_part(Text text, std::size_t, Error &) { return part(text); }
    bool on_key(Text text, std::size_t, Error &)
    {
        m_stack.push_key(text);
        return true;
    }
    bool on_string_part(Text text, std::size_t, Error &) { return part(text); }
    bool on_string(Text text, std::size_t, Error &)
    {
        m_stack.push_string(text);
        return true;
    }
    bool on_number_part(Text, Error &) { return true; } // the text comes whole
    bool on_int64(std::int64_t value, Text text, Error &)
    {
        if (value == 0 && text.starts_with('-'))
            m_stack.push_double(-0.0);
        else
            m_stack.push_int64(value);
        return true;
    }
    bool on_uint64(std::uint64_t value, Text, Error &)
    {
        m_stack.push_uint64(value);
        return true;
    }
    bool on_double(double approximate, Text text, Error &error)
    {
        double value = approximate; // stays where the number is too small or too large
        std::from_chars(text.data(), text.data() + text.size(), value);
        if (!std::isfinite(value)) {
            error = boost::json::error::exponent_overflow;
            return false;
        }
        m_stack.push_double(value);
        return true;
    }
    bool on_bool(bool value, Error &)
    {
        m_stack.push_bool(value);
        return true;
    }
    bool on_null(Error &)
    {
        m_stack.push_null();
        return true;
    }
    bool on_comment_part(Text, Error &) { return true; }
    bool on_comment(Text, Error &) { return true; }
    // NOLINTEND(readability-identifier-naming)

private:
    bool part(Text text)
    {
        m_stack.push_chars(text);
        return true;
    }

    boost::json::value_stack m_stack;
};

} // namespace

boost::json::value parse(const QByteArray &text, boost::json::storage_ptr storage)
{
    boost::json::parse_options options;
    options.max_depth = depthLimit;
    boost::json::basic_parser<ValueBuilder> parser(options, std::move(storage));
    const auto size = static_cast<std::size_t>(text.size());
    boost::json::error_code error;
    const std::size_t read = parser.write_some(false, text.constData(), size, error);
    if (error || read < size)
        throw JsonError(QStringLiteral("O texto não é JSON válido (byte %1).").arg(read));
    return parser.handler().release();
}

} // namespace velmo::Json
