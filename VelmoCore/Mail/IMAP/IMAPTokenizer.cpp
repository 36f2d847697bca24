#include "VelmoCore/Mail/IMAP/IMAPTokenizer.h"

#include "VelmoCore/Mail/IMAP/IMAPText.h"

#include <algorithm>
#include <utility>

namespace velmo {

namespace {

constexpr std::size_t usualCount = 4; ///< of values in a response and in a list

bool isSpace(char byte)
{
    return byte == ' ' || byte == '\r' || byte == '\n';
}

} // namespace

IMAPTokenizer::IMAPTokenizer(QByteArray data) : bytes(std::move(data))
{
}

std::vector<IMAPValue> IMAPTokenizer::values()
{
    std::vector<IMAPValue> values;
    values.reserve(usualCount);
    while (auto value = next(0))
        values.push_back(*std::move(value));
    return values;
}

/// `depth` counts the lists around the value. Absent at the end.
std::optional<IMAPValue> IMAPTokenizer::next(int depth)
{
    skipSpace();
    while (isAt(')')) {
        ++index;
        skipSpace();
    }
    if (isAtEnd())
        return std::nullopt;
    switch (bytes[index]) {
    case '"':
        return quotedString();
    case '{':
        return literal();
    case '(':
        if (depth == depthLimit) {
            index = bytes.size();
            return std::nullopt;
        }
        return list(depth + 1);
    default:
        return atom();
    }
}

IMAPValue IMAPTokenizer::list(int depth)
{
    ++index;
    IMAPValue::List list;
    for (;;) {
        skipSpace();
        if (isAt(')')) {
            ++index;
            break;
        }
        auto value = next(depth);
        if (!value)
            break;
        if (list.values.empty())
            list.values.reserve(usualCount);
        list.values.push_back(*std::move(value));
    }
    return {std::move(list)};
}

IMAPValue IMAPTokenizer::quotedString()
{
    QByteArray content;
    qsizetype start = ++index;
    const auto takeRun = [&] { content.append(bytes.constData() + start, index - start); };
    while (!isAtEnd() && bytes[index] != '"') {
        if (bytes[index] == '\\' && index + 1 < bytes.size()) {
            takeRun();
            start = ++index;
        }
        ++index;
    }
    takeRun();
    ++index;
    return {IMAPValue::String{std::move(content)}};
}

IMAPValue IMAPTokenizer::literal()
{
    const qsizetype start = index + 1;
    const qsizetype closer = bytes.indexOf('}', start);
    const qsizetype end = closer < 0 ? bytes.size() : closer;
    QByteArray count = bytes.sliced(start, end - start);
    count.replace("+", "");
    index = end + 1;
    if (isAt('\r'))
        ++index;
    if (isAt('\n'))
        ++index;
    const auto length = IMAPText::decimal<qsizetype>(IMAPText::decoded(count)).value_or(0);
    const qsizetype rest = std::max<qsizetype>(bytes.size() - index, 0);
    const qsizetype taken = std::clamp<qsizetype>(length, 0, rest);
    IMAPValue::String string{bytes.mid(index, taken)};
    index += taken;
    return {std::move(string)};
}

IMAPValue IMAPTokenizer::atom()
{
    const qsizetype start = index;
    int brackets = 0;
    for (; !isAtEnd(); ++index) {
        const char byte = bytes[index];
        if (byte == '[')
            ++brackets;
        else if (byte == ']')
            brackets = std::max(brackets - 1, 0);
        else if (brackets == 0 && (isSpace(byte) || byte == '(' || byte == ')'))
            break;
    }
    QString word = IMAPText::decoded(QByteArrayView(bytes).sliced(start, index - start));
    if (word.size() == 3 && word.toUpper() == u"NIL")
        return {IMAPValue::None()};
    return {IMAPValue::Atom{std::move(word)}};
}

void IMAPTokenizer::skipSpace()
{
    while (!isAtEnd() && isSpace(bytes[index]))
        ++index;
}

} // namespace velmo
