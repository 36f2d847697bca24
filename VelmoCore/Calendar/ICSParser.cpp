#include "VelmoCore/Calendar/ICSParser.h"

#include "VelmoCore/Foundation/Text.h"

#include <algorithm>
#include <iterator>

namespace velmo::ICSParser {

namespace {

/// Far more than a feed has, but what a hostile one can make us hold.
constexpr qsizetype propertyLimit = 4'000'000; ///< in the events of one feed
constexpr qsizetype paramLimit = 64;           ///< on one line

/// The first of two marks outside double quotes; the end without one.
qsizetype findOutsideQuotes(QStringView line, qsizetype start, char16_t mark, char16_t otherMark)
{
    bool isQuoted = false;
    for (qsizetype i = start; i < line.size(); ++i) {
        const char16_t c = line[i].unicode();
        if (c == u'"')
            isQuoted = !isQuoted;
        else if (!isQuoted && (c == mark || c == otherMark))
            return i;
    }
    return line.size();
}

/// Gives each unfolded line of a feed.
class Lines {
public:
    explicit Lines(QStringView text) : m_rest(text), m_physical(cut()) {}

    /// Valid until the next call.
    std::optional<QStringView> next()
    {
        if (!m_physical)
            return std::nullopt;
        QStringView line = *m_physical;
        m_physical = cut();
        if (!isContinuation())
            return line;
        m_unfolded.resize(0);
        m_unfolded.append(line);
        for (; isContinuation(); m_physical = cut())
            m_unfolded.append(m_physical->sliced(1));
        return m_unfolded;
    }

private:
    bool isContinuation() const
    {
        return m_physical && (m_physical->startsWith(u' ') || m_physical->startsWith(u'\t'));
    }

    /// The next line as it stands, which ends with CR LF, LF or CR.
    std::optional<QStringView> cut()
    {
        if (m_isAtEnd)
            return std::nullopt;
        const auto *end = std::find_if(m_rest.begin(), m_rest.end(),
                                       [](QChar c) { return c == u'\n' || c == u'\r'; });
        const QStringView line(m_rest.begin(), end);
        m_isAtEnd = end == m_rest.end();
        m_rest = m_rest.sliced(line.size());
        if (!m_isAtEnd)
            m_rest = m_rest.sliced(m_rest.startsWith(u"\r\n") ? 2 : 1);
        return line;
    }

    QStringView m_rest;
    bool m_isAtEnd = false;
    std::optional<QStringView> m_physical;
    QString m_unfolded;
};

/// Puts the lines of a feed together.
class FeedReader {
public:
    FeedReader() { m_feed.zone = QTimeZone::systemTimeZone(); }

    void read(Property &&property)
    {
        const bool begins = property.name == u"BEGIN";
        if (begins || property.name == u"END")
            readBoundary(begins, property.value);
        else if (!m_isInEvent)
            readFeedProperty(property);
        else if (m_depth == 0 && m_stored++ < propertyLimit)
            m_event.props.push_back(std::move(property));
    }

    Feed take() { return std::move(m_feed); }

private:
    void readBoundary(bool begins, const QString &component)
    {
        if (component.toUpper() != u"VEVENT") {
            m_depth = std::max<qsizetype>(m_depth + (begins ? 1 : -1), 0);
            return;
        }
        if (begins)
            m_event.props.clear();
        else if (m_isInEvent)
            m_feed.events.push_back(takeEvent());
        m_isInEvent = begins;
        m_depth = 0;
    }

    RawEvent takeEvent()
    {
        auto &props = m_event.props;
        return {{std::make_move_iterator(props.begin()), std::make_move_iterator(props.end())}};
    }

    void readFeedProperty(const Property &property)
    {
        if (property.name == u"X-WR-CALNAME") {
            m_feed.calendarName = unescape(property.value);
        } else if (property.name == u"X-WR-TIMEZONE") {
            if (auto zone = timeZone(property.value))
                m_feed.zone = *zone;
        }
    }

    Feed m_feed;
    RawEvent m_event; ///< filled again and again, so that each event is stored at its size
    bool m_isInEvent = false;
    qsizetype m_depth = 0; ///< of the components inside the event
    qsizetype m_stored = 0;
};

} // namespace

const Property *RawEvent::first(QStringView name) const
{
    const auto found = std::find_if(props.begin(), props.end(), [&](const Property &property) {
        return property.name == name;
    });
    return found == props.end() ? nullptr : &*found;
}

std::optional<QString> calendarName(const QString &text)
{
    return parse(text).calendarName;
}

Feed parse(const QString &text)
{
    Lines lines(text);
    FeedReader reader;
    while (const auto line = lines.next()) {
        if (auto read = property(*line))
            reader.read(*std::move(read));
    }
    return reader.take();
}

std::optional<Property> property(QStringView line)
{
    qsizetype end = findOutsideQuotes(line, 0, u':', u';');
    const QStringView name = line.first(end);
    QMap<QString, QString> params;
    while (end < line.size() && line[end] == u';') {
        const qsizetype start = end + 1;
        end = findOutsideQuotes(line, start, u':', u';');
        const QStringView piece = line.sliced(start, end - start);
        const qsizetype equals = piece.indexOf(u'=');
        if (equals >= 0 && params.size() < paramLimit)
            params.insert(piece.first(equals).toString().toUpper(),
                          Text::withoutQuotes(piece.sliced(equals + 1)).toString());
    }
    if (end == line.size())
        return std::nullopt;
    return Property{name.toString().toUpper(), std::move(params), line.sliced(end + 1).toString()};
}

QString unescape(const QString &text)
{
    if (!text.contains(u'\\'))
        return text;
    QString plain;
    plain.reserve(text.size());
    for (auto c = text.begin(); c != text.end(); ++c) {
        if (*c != u'\\')
            plain.append(*c);
        else if (++c == text.end())
            break;
        else
            plain.append(*c == u'n' || *c == u'N' ? u'\n' : *c);
    }
    return plain;
}

std::optional<QString> text(const RawEvent &event, QStringView name)
{
    const Property *property = event.first(name);
    if (!property || property->value.isEmpty())
        return std::nullopt;
    QString plain = unescape(property->value);
    return plain.isEmpty() ? std::nullopt : std::optional(std::move(plain));
}

} // namespace velmo::ICSParser
