#include "VelmoCore/Mail/IMAP/IMAPResponse.h"

#include "VelmoCore/Mail/IMAP/IMAPText.h"
#include "VelmoCore/Mail/IMAP/IMAPTokenizer.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace velmo::IMAPResponse {

namespace {

using IMAPText::decimal;
using IMAPText::decoded;

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

std::optional<int> monthNumber(QStringView name)
{
    constexpr QStringView names = u"janfebmaraprmayjunjulaugsepoctnovdec";
    const qsizetype at = names.indexOf(name.toString().toLower());
    if (at % 3 != 0)
        return std::nullopt;
    return int(at / 3) + 1;
}

} // namespace

std::optional<IMAPFetch> fetch(const QByteArray &response)
{
    const auto values = IMAPTokenizer(response).values();
    if (values.size() < 4 || values[0].text() != u"*")
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
    constexpr qsizetype head = 80; // of a response that may be the whole of a message
    const QString line =
        decoded(QByteArrayView(response).first(std::min(response.size(), head))).trimmed();
    const auto pieces = QStringView(line).split(u' ', Qt::SkipEmptyParts);
    if (pieces.size() < 3 || pieces[0] != u"*" || pieces[2].toString().toUpper() != keyword)
        return std::nullopt;
    return decimal<std::int64_t>(pieces[1]);
}

std::optional<Listing> list(const QByteArray &response)
{
    const auto values = IMAPTokenizer(response).values();
    if (values.size() < 5 || values[0].text() != u"*" || upperText(values[1]) != u"LIST")
        return std::nullopt;
    auto name = values[4].text();
    if (!values[2].list() || !name)
        return std::nullopt;
    return Listing{texts(values[2]), *std::move(name)};
}

std::optional<std::vector<std::uint32_t>> search(const QByteArray &response)
{
    const QString line = decoded(response).trimmed();
    const auto pieces = QStringView(line).split(u' ', Qt::SkipEmptyParts);
    if (pieces.size() < 2 || pieces[0] != u"*" || pieces[1].toString().toUpper() != u"SEARCH")
        return std::nullopt;
    std::vector<std::uint32_t> found;
    for (qsizetype i = 2; i < pieces.size(); ++i) {
        if (const auto value = decimal<std::uint32_t>(pieces[i]))
            found.push_back(*value);
    }
    return found;
}

std::optional<QSet<QString>> capabilities(const QByteArray &response)
{
    const QString text = decoded(response);
    const QStringView keyword = u"CAPABILITY ";
    const qsizetype at = text.indexOf(keyword, 0, Qt::CaseInsensitive);
    if (at < 0)
        return std::nullopt;
    const qsizetype start = at + keyword.size();
    const qsizetype bracket = text.indexOf(u']', start);
    const QString words = text.sliced(start, (bracket < 0 ? text.size() : bracket) - start);

    QSet<QString> found;
    QString word;
    const auto takeWord = [&] {
        if (!word.isEmpty())
            found.insert(word.toUpper());
        word.clear();
    };
    // A separator is a whole character as a reader counts them: the LF of a CR LF is none.
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, words);
    for (qsizetype from = 0, to; (to = characters.toNextBoundary()) >= 0; from = to) {
        const auto character = QStringView(words).sliced(from, to - from);
        if (character == u" " || character == u"\n")
            takeWord();
        else
            word += character;
    }
    takeWord();
    return found;
}

std::optional<std::uint32_t> code(QStringView name, const QByteArray &response)
{
    const QString text = decoded(response);
    const QString opening = QStringLiteral("[%1 ").arg(name);
    const qsizetype at = text.indexOf(opening, 0, Qt::CaseInsensitive);
    if (at < 0)
        return std::nullopt;
    const auto rest = QStringView(text).sliced(at + opening.size());
    const auto *end = std::find_if_not(rest.begin(), rest.end(),
                                       [](QChar character) { return character.isNumber(); });
    return decimal<std::uint32_t>(rest.first(end - rest.begin()));
}

QString quote(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\\', QLatin1String("\\\\")).replace(u'"', QLatin1String("\\\""));
    return u'"' + escaped + u'"';
}

} // namespace velmo::IMAPResponse
