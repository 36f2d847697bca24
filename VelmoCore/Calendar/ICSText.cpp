#include "VelmoCore/Calendar/ICSText.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmo::ICSWriter {

namespace {

constexpr qsizetype longestLine = 75; ///< octets, without the line end
const QByteArray lineEnd = "\r\n";

bool isInsideCharacter(char octet)
{
    return (static_cast<unsigned char>(octet) & 0xC0U) == 0x80;
}

QByteArray folded(const QByteArray &line)
{
    QByteArray out;
    qsizetype start = 0;
    qsizetype room = longestLine;
    while (line.size() - start > room) {
        qsizetype end = start + room;
        // No character is longer than four octets; what seems so isn't UTF-8.
        for (int back = 0; back < 3 && isInsideCharacter(line[end]); ++back)
            --end;
        out += line.mid(start, end - start) + lineEnd + ' ';
        start = end;
        room = longestLine - 1;
    }
    return out + line.mid(start);
}

template <class Text>
Text unfolded(Text text)
{
    return text.replace(Text("\r\n "), Text()).replace(Text("\r\n\t"), Text());
}

/// The parts of a line's head: the name, then the parameters.
QByteArrayList headParts(const QByteArray &head)
{
    QByteArrayList parts(1);
    bool isQuoted = false;
    for (const char c : head) {
        if (c == '"')
            isQuoted = !isQuoted;
        if (c == ';' && !isQuoted)
            parts.append(QByteArray());
        else
            parts.back() += c;
    }
    return parts;
}

template <class Test>
QByteArray filtered(const QByteArray &head, Test keeps)
{
    QByteArrayList parts = headParts(head);
    parts.erase(std::remove_if(parts.begin() + 1, parts.end(),
                               [&](const QByteArray &part) {
                                   const QByteArray name = part.left(part.indexOf('='));
                                   return !keeps(QString::fromUtf8(name).toUpper());
                               }),
                parts.end());
    return parts.join(';');
}

/// The text's lines with their continuations, ended by CR LF, LF or CR.
std::vector<Line> linesOf(const QByteArray &text)
{
    std::vector<QByteArray> lines;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start;
        while (end < text.size() && text[end] != '\r' && text[end] != '\n')
            ++end;
        const QByteArray line = text.mid(start, end - start);
        const bool continues = line.startsWith(' ') || line.startsWith('\t');
        if (continues && !lines.empty())
            lines.back() += lineEnd + line;
        else
            lines.push_back(line);
        start = end + (text.mid(end, 2) == lineEnd ? 2 : 1);
    }
    std::vector<Line> read;
    std::ranges::transform(lines, std::back_inserter(read), &Line::read);
    return read;
}

/// Tells which lines of an event are its own.
void markOwn(std::vector<Line> &event)
{
    int depth = -1; // until its own BEGIN
    for (Line &line : event) {
        const bool begins = line.property.name == u"BEGIN";
        const bool ends = line.property.name == u"END";
        line.isOwn = depth == 0 && !begins && !ends && !line.property.name.isEmpty();
        if (depth < 0)
            depth = 0;
        else if (begins || ends)
            depth = std::max(depth + (begins ? 1 : -1), 0);
    }
}

} // namespace

Line Line::read(const QByteArray &bytes)
{
    return {
        bytes,
        ICSParser::property(unfolded(QString::fromUtf8(bytes))).value_or(ICSParser::Property())};
}

Line Line::make(const QByteArray &head, const QByteArray &value)
{
    Line line = read(folded(head + ':' + value));
    line.isOwn = true;
    return line;
}

QByteArray Line::head() const
{
    QByteArray line = unfolded(bytes);
    bool isQuoted = false;
    for (qsizetype at = 0; at < line.size(); ++at) {
        if (line[at] == '"')
            isQuoted = !isQuoted;
        else if (line[at] == ':' && !isQuoted)
            return line.first(at);
    }
    return line;
}

QByteArray escaped(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    QString value;
    for (const QChar c : std::as_const(text)) {
        if (c == u'\n')
            value += QStringLiteral("\\n");
        else if (c == u'\\' || c == u';' || c == u',')
            value += QStringLiteral("\\") + c;
        else if (c == u'\t' || c.unicode() >= 0x20)
            value += c;
    }
    return value.remove(QChar(0x7F)).toUtf8();
}

QByteArray withParameters(const QByteArray &head, std::initializer_list<QStringView> names)
{
    return filtered(head, [&](const QString &name) {
        return std::ranges::find(names, QStringView(name)) != names.end();
    });
}

QByteArray withoutParameters(const QByteArray &head, std::initializer_list<QStringView> names)
{
    return filtered(head, [&](const QString &name) {
        return std::ranges::find(names, QStringView(name)) == names.end();
    });
}

const Line *Block::first(QStringView name) const
{
    const auto found = std::ranges::find_if(
        lines, [&](const Line &line) { return line.isOwn && line.property.name == name; });
    return found == lines.end() ? nullptr : &*found;
}

void Block::put(Line line)
{
    if (const Line *old = first(line.property.name)) {
        lines[std::size_t(old - lines.data())] = std::move(line);
        return;
    }
    const auto place = std::find_if(lines.begin() + 1, lines.end() - 1, [](const Line &other) {
        return other.property.name == u"BEGIN";
    });
    lines.insert(place, std::move(line));
}

void Block::putBehind(QStringView name, Line line)
{
    const auto last = std::find_if(lines.rbegin(), lines.rend(), [&](const Line &other) {
        return other.isOwn && other.property.name == name;
    });
    lines.insert(last.base(), std::move(line));
}

void Block::remove(std::initializer_list<QStringView> names)
{
    std::erase_if(lines, [&](const Line &line) {
        return line.isOwn &&
               std::ranges::find(names, QStringView(line.property.name)) != names.end();
    });
}

std::vector<Block> blocks(const QByteArray &text)
{
    std::vector<Block> blocks(1);
    bool isInEvent = false;
    for (Line &line : linesOf(text)) {
        const bool isBoundary = line.property.value.toUpper() == u"VEVENT";
        const bool begins = isBoundary && line.property.name == u"BEGIN";
        const bool ends = isBoundary && line.property.name == u"END";
        if (begins)
            blocks.emplace_back();
        isInEvent = isInEvent || begins;
        blocks.back().lines.push_back(std::move(line));
        if (ends && isInEvent) {
            blocks.back().isEvent = true;
            markOwn(blocks.back().lines);
            blocks.emplace_back();
            isInEvent = false;
        }
    }
    return blocks;
}

QByteArray joined(const std::vector<Block> &blocks)
{
    QByteArray text;
    for (const Block &block : blocks) {
        for (const Line &line : block.lines)
            text += line.bytes + lineEnd;
    }
    return text;
}

} // namespace velmo::ICSWriter
