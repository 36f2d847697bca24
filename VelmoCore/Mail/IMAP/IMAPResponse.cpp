#include "VelmoCore/Mail/IMAP/IMAPResponse.h"

#include "VelmoCore/Mail/IMAP/IMAPText.h"
#include "VelmoCore/Mail/IMAP/IMAPTokenizer.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace velmo::IMAPResponse {

namespace {

using IMAPText::decimal;
using IMAPText::decoded;

constexpr qsizetype head = 80; ///< bytes that hold the words of a short response

QString upperText(const IMAPValue &value)
{
    return value.text().value_or(QString()).toUpper();
}

template <std::integral Number>
std::optional<Number> number(const IMAPValue &value)
{
    const auto text = value.text();
    return text ? decimal<Number>(*text) : std::nullopt;
}

/// The texts in a list; none for what is no list.
std::vector<QString> texts(const IMAPValue &value)
{
    std::vector<QString> texts;
    if (const auto *list = value.list()) {
        for (const IMAPValue &element : *list) {
            if (auto text = element.text())
                texts.push_back(*std::move(text));
        }
    }
    return texts;
}

void readItem(IMAPFetch &fetch, QStringView key, const IMAPValue &value)
{
    if (key == u"UID") {
        fetch.uid = number<std::uint32_t>(value);
    } else if (key == u"FLAGS") {
        fetch.flags = texts(value);
    } else if (key == u"INTERNALDATE") {
        fetch.internalDate = parseInternalDate(value.text().value_or(QString()));
    } else if (key == u"X-GM-THRID") {
        fetch.gmailThreadID = number<std::uint64_t>(value);
    } else if (key.startsWith(u"BODY[") || key.startsWith(u"RFC822")) {
        if (const auto *string = std::get_if<IMAPValue::String>(&value.content))
            fetch.body = string->bytes;
    }
}

std::optional<IMAPFetch> readFetch(const std::vector<IMAPValue> &values)
{
    if (values.size() < 4)
        return std::nullopt;
    const auto sequence = number<std::int64_t>(values[1]);
    const auto *items = values[3].list();
    if (!sequence || upperText(values[2]) != u"FETCH" || !items)
        return std::nullopt;
    IMAPFetch fetch{.sequence = *sequence};
    for (std::size_t i = 1; i < items->size(); i += 2)
        readItem(fetch, upperText((*items)[i - 1]), (*items)[i]);
    return fetch;
}

std::optional<Listing> readListing(const std::vector<IMAPValue> &values)
{
    if (values.size() < 5 || upperText(values[1]) != u"LIST" || !values[2].list())
        return std::nullopt;
    auto name = values[4].text();
    return name ? std::optional(Listing{texts(values[2]), *std::move(name)}) : std::nullopt;
}

QStringList words(QByteArrayView line)
{
    return decoded(line).trimmed().split(u' ', Qt::SkipEmptyParts);
}

std::optional<Count> readCount(const QByteArray &response)
{
    const QStringList line = words(QByteArrayView(response).first(std::min(response.size(), head)));
    const auto number = line.size() < 3 ? std::nullopt : decimal<std::int64_t>(line[1]);
    return number ? std::optional(Count{*number, line[2].toUpper()}) : std::nullopt;
}

Search readSearch(const QByteArray &response)
{
    Search search;
    for (const QString &word : words(response).mid(2)) {
        if (const auto value = decimal<std::uint32_t>(word))
            search.numbers.push_back(*value);
    }
    return search;
}

std::optional<QSet<QString>> readCapabilities(const QString &line)
{
    // The LF of a CR LF separates nothing.
    static const QRegularExpression separator(QStringLiteral(" |(?<!\\r)\\n"));
    const QStringView keyword = u"CAPABILITY ";
    const qsizetype at = line.indexOf(keyword, 0, Qt::CaseInsensitive);
    if (at < 0)
        return std::nullopt;
    const QString rest = line.sliced(at + keyword.size()).section(u']', 0, 0);
    const QStringList words = rest.toUpper().split(separator, Qt::SkipEmptyParts);
    return QSet<QString>(words.begin(), words.end());
}

Status readStatus(const QByteArray &response)
{
    static const QRegularExpression code(QStringLiteral(R"(\[([^\[\] ]+) (\p{N}*))"));
    const QString line = decoded(response);
    Status status{{}, readCapabilities(line)};
    for (auto codes = code.globalMatch(line); codes.hasNext();) {
        const QRegularExpressionMatch match = codes.next();
        status.codes.push_back({match.captured(1), decimal<std::uint32_t>(match.capturedView(2))});
    }
    return status;
}

std::optional<int> monthNumber(QStringView name)
{
    constexpr QStringView names = u"janfebmaraprmayjunjulaugsepoctnovdec";
    const qsizetype at = names.indexOf(name.toString().toLower());
    if (at % 3 != 0)
        return std::nullopt;
    return int(at / 3) + 1;
}

template <typename Alternative>
std::optional<Alternative> readAs(const QByteArray &response)
{
    Response all = read(response);
    auto *wanted = std::get_if<Alternative>(&all);
    return wanted ? std::optional(std::move(*wanted)) : std::nullopt;
}

} // namespace

Response read(const QByteArray &response)
{
    const auto values = IMAPTokenizer(response).values();
    if (values.size() < 2 || values[0].text() != u"*")
        return readStatus(response);
    if (auto fetch = readFetch(values))
        return *std::move(fetch);
    if (auto listing = readListing(values))
        return *std::move(listing);
    if (upperText(values[1]) == u"SEARCH")
        return readSearch(response);
    if (auto count = readCount(response))
        return *std::move(count);
    return readStatus(response);
}

std::optional<IMAPFetch> fetch(const QByteArray &response)
{
    return readAs<IMAPFetch>(response);
}

std::optional<Date> parseInternalDate(QStringView text)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        QStringLiteral(" *(\\d\\d?)-([A-Za-z]{3})-(\\d{4}) (\\d\\d?):(\\d\\d?):(\\d\\d?) "
                       "([+-])(\\d\\d)(\\d\\d) *")));
    const auto match = form.match(text.toString());
    const auto month = monthNumber(match.capturedView(2));
    if (!match.hasMatch() || !month)
        return std::nullopt;
    const auto part = [&](int index) { return match.capturedView(index).toInt(); };
    const QDate day(part(3), *month, part(1));
    const QTime time(part(4), part(5), part(6));
    const QTime offset(part(8), part(9));
    if (!day.isValid() || !time.isValid() || !offset.isValid())
        return std::nullopt;
    const Seconds east = std::chrono::milliseconds(offset.msecsSinceStartOfDay());
    const Date local{Seconds(double(QDateTime(day, time, Qt::UTC).toSecsSinceEpoch()))};
    return match.capturedView(7) == u"-" ? local + east : local - east;
}

std::optional<std::int64_t> count(const QByteArray &response, QStringView keyword)
{
    const auto count = readAs<Count>(response);
    return count && count->keyword == keyword ? std::optional(count->number) : std::nullopt;
}

std::optional<Listing> list(const QByteArray &response)
{
    return readAs<Listing>(response);
}

std::optional<std::vector<std::uint32_t>> search(const QByteArray &response)
{
    const auto search = readAs<Search>(response);
    return search ? std::optional(search->numbers) : std::nullopt;
}

std::optional<QSet<QString>> capabilities(const QByteArray &response)
{
    const auto status = readAs<Status>(response);
    return status ? status->capabilities : std::nullopt;
}

std::optional<std::uint32_t> code(QStringView name, const QByteArray &response)
{
    const auto status = readAs<Status>(response);
    if (!status)
        return std::nullopt;
    for (const Status::Code &code : status->codes) {
        if (name.compare(code.name, Qt::CaseInsensitive) == 0)
            return code.number;
    }
    return std::nullopt;
}

QString quote(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\\', QLatin1String("\\\\")).replace(u'"', QLatin1String("\\\""));
    return u'"' + escaped + u'"';
}

} // namespace velmo::IMAPResponse
