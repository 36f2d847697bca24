#include "VelmoCore/Calendar/EventPhrases.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace velmo::EventLines {

namespace {

using WhenText::TimeOfDay;

/// "das 9 e meia da manha as 11 e meia".
constexpr qsizetype longestPhrase = 9; ///< in words

std::optional<TimeOfDay> valid(const std::optional<TimeOfDay> &time)
{
    return time && time->time.isValid() ? time : std::nullopt;
}

/// "das 14h" as well, but not the meal of "cafe da manha".
std::optional<TimeOfDay> timeFrom(const QString &text)
{
    const auto time = valid(WhenText::timeOfDay(text.startsWith(u"das ") ? text.sliced(1) : text));
    return time && time->isPartOfDay && text.startsWith(u"da ") ? std::nullopt : time;
}

/// Numbers alone and metres are no length, nor is the number behind "14h 2 pessoas".
bool namesUnit(const QString &text)
{
    static const QRegularExpression unit(QStringLiteral(R"((?:hora|\d\s*h|\d\s*min)(?!.*\s\d+$))"));
    return unit.match(text).hasMatch();
}

std::optional<Seconds> lengthFrom(const QString &text)
{
    return namesUnit(text) ? WhenText::duration(text) : std::nullopt;
}

/// One end of a range, which may be a bare number.
struct Side {
    QString text;
    std::optional<TimeOfDay> time;
    bool isBare = false;

    explicit Side(const QString &side) : text(side), time(valid(WhenText::timeOfDay(side)))
    {
        if (!time) {
            time = valid(WhenText::timeOfDay(QStringLiteral("as ") + side));
            isBare = time.has_value();
        }
        if (time && time->isPartOfDay)
            time.reset();
    }
};

/// "das 2 as 4 da tarde": the part of the day holds for both ends where that leaves them in order.
void shareLatePart(Side &start, const Side &end)
{
    static const QRegularExpression late(QStringLiteral(" d[ae] (?:tarde|noite)$"));
    static const QRegularExpression early(QStringLiteral(" d[ae] (?:madrugada|manha)$"));
    const QTime later = start.time->time.addSecs(12 * 3600);
    if (late.match(end.text).hasMatch() && !early.match(start.text).hasMatch() &&
        start.time->time < QTime(12, 0) && later < end.time->time)
        start.time->time = later;
}

bool readRange(const QString &text, Phrase &phrase)
{
    static const QRegularExpression opening(QStringLiteral(R"(^(das?|de|entre)\s+)"));
    static const QRegularExpression separator(
        QStringLiteral(R"(\s*-\s*|\s+ate(?:\s+(?:as?|ao|o))?\s+|\s+(?:as?|ao)\s+|\s+e\s+)"));
    const auto opened = opening.match(text);
    const QString sides = text.sliced(opened.capturedLength());
    const QStringView opener = opened.capturedView(1);
    for (const auto &match : separator.globalMatch(sides)) {
        const QStringView between = match.capturedView().trimmed();
        Side start(sides.first(match.capturedStart()));
        const Side end(sides.sliced(match.capturedEnd()));
        if (!start.time || !end.time || (between == u"e") != (opener == u"entre"))
            continue;
        const bool isRange = opener == u"das" || !start.isBare ||
                             (!end.isBare && (opened.hasMatch() || between == u"-"));
        if (!isRange)
            continue;
        shareLatePart(start, end);
        phrase.time = start.time;
        phrase.end = end.time;
        return true;
    }
    return false;
}

/// "14h 30 min": at two for half an hour, or as long as that.
void readTimeAndLength(const QString &text, Phrase &phrase)
{
    static const QRegularExpression parts(QStringLiteral(R"(^(\d{1,2}\s*hs?)\s+(\d+\s*min.*)$)"));
    const auto match = parts.match(text);
    if (!match.hasMatch())
        return;
    phrase.time = timeFrom(match.captured(1));
    phrase.lengthBehind = lengthFrom(match.captured(2));
}

/// Whether the whole text is a phrase.
bool read(const QString &text, QDate today, Phrase &phrase)
{
    phrase.text = text;
    if (readRange(text, phrase))
        return true;
    phrase.delay = namesUnit(text) ? WhenText::delay(text) : std::nullopt;
    phrase.isDay = WhenText::day(text, today).isValid();
    phrase.time = timeFrom(text);
    phrase.length = lengthFrom(text);
    if (!phrase.time && phrase.length)
        readTimeAndLength(text, phrase);
    return phrase.delay || phrase.isDay || phrase.time || phrase.length;
}

} // namespace

std::vector<Phrase> phrases(const QStringList &words, QDate today)
{
    std::vector<Phrase> found;
    for (qsizetype from = 0; from < words.size(); ++from) {
        for (qsizetype count = std::min(longestPhrase, words.size() - from); count > 0; --count) {
            Phrase phrase{from, from + count};
            if (read(words.sliced(from, count).join(u' '), today, phrase)) {
                found.push_back(phrase);
                from += count - 1;
                break;
            }
        }
    }
    return found;
}

} // namespace velmo::EventLines
