#pragma once

#include <QByteArray>
#include <QStringView>

#include <cstdint>
#include <string_view>

namespace velmo {

/// Pretty is two spaces a level, `"key": value`, and a newline at the end.
enum class JsonStyle { compact, pretty };

/// Writes one JSON text, value by value, straight to UTF-8. The caller keeps the grammar: `key`
/// before each member of an object, `element` before each one of a list.
class JsonWriter {
public:
    explicit JsonWriter(JsonStyle style = JsonStyle::compact);

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    /// `name` is ASCII without a character that needs an escape.
    void key(std::string_view name);
    void key(QStringView name);

    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void element() { separate(); }

    void null();
    void boolean(bool value);
    void integer(std::int64_t value);
    void integer(std::uint64_t value);
    /// The shortest text that reads back as `value`. Throws `JsonError` unless it is finite.
    void real(double value);
    /// A lone surrogate becomes U+FFFD.
    void text(QStringView value);
    /// `value` is ASCII without a character that needs an escape.
    void plainText(std::string_view value);

    /// The whole text; nothing may be written after it.
    QByteArray finish();

private:
    void begin(char bracket);
    void end(char bracket);
    void separate();
    void newLine();
    void raw(std::string_view bytes);
    template <class Number>
    void number(Number value);
    void reserve(qsizetype count);

    QByteArray m_bytes;
    char *m_next;
    char *m_end;
    JsonStyle m_style;
    int m_depth = 0;
    bool m_isFirst = true;
};

} // namespace velmo
