#include "VelmoCore/Calendar/EventLine.h"

#include "VelmoCore/Calendar/EventPhrases.h"
#include "VelmoCore/Foundation/Text.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

using EventLines::Phrase;

constexpr qsizetype longestLine = 500; ///< in UTF-16 units
constexpr Seconds usualLength = 1h;
constexpr Seconds longestApart = 6h; ///< what isn't beside the time and is longer is no length

/// As phrases are made of them: without case, accents and the punctuation around.
QString foldedWord(const QString &word)
{
    static const QRegularExpression around(QStringLiteral(R"(^\(+|[,;.:!?)]+$)"));
    static const QRegularExpression dash(QStringLiteral("[\u2013\u2014]"));
    return Text::folded(word).replace(dash, QStringLiteral("-")).remove(around);
}

/// Chooses among the phrases of a line.
class LineReader {
public:
    LineReader(const QString &line, Date now)
        : m_typed(line.simplified().split(u' ', Qt::SkipEmptyParts)), m_now(now)
    {
        for (const QString &word : m_typed)
            m_words.append(foldedWord(word));
        m_phrases = EventLines::phrases(m_words, localDateTime(now).date());
        m_isTaken.resize(std::size_t(m_words.size()));
    }

    std::variant<EventLine, EventLineProblem> read()
    {
        const Phrase *start = startPhrase();
        const Phrase *day = dayBeside(start);
        if (!start)
            return m_words.isEmpty() ? EventLineProblem::noTitle
                   : day             ? EventLineProblem::noTime
                                     : EventLineProblem::noStart;
        take(*start);
        const auto date = startDate(*start, day);
        const auto length = date ? lengthFrom(*start, *date) : std::nullopt;
        if (!date)
            return EventLineProblem::noStart;
        if (!length)
            return EventLineProblem::endsBeforeStart;
        QString rest = title();
        if (rest.isEmpty())
            return EventLineProblem::noTitle;
        return EventLine{std::move(rest), *date, *length};
    }

private:
    template <class Test>
    const Phrase *first(Test test) const
    {
        const auto found = std::ranges::find_if(m_phrases, test);
        return found == m_phrases.end() ? nullptr : &*found;
    }

    template <class Test>
    const Phrase *directlyBehind(const Phrase &phrase, Test test) const
    {
        return first([&](const Phrase &other) { return other.from == phrase.to && test(other); });
    }

    QString wordBefore(qsizetype word) const { return m_words.value(word - 1); }

    /// "por 2h" and "de 2h" are no times, nor is "a noite 2h" one.
    bool isCalledLength(const Phrase &phrase) const
    {
        const QString before = wordBefore(phrase.from);
        return phrase.length && (before == u"por" || before == u"durante" || before == u"de" ||
                                 (before == u"noite" && phrase.time->time < QTime(6, 0)));
    }

    const Phrase *startPhrase() const
    {
        if (const Phrase *range =
                first([](const Phrase &phrase) { return phrase.end.has_value(); }))
            return range;
        if (const Phrase *clear =
                first([](const Phrase &phrase) { return phrase.isClock() && !phrase.length; }))
            return clear;
        if (const Phrase *time = timeOfTwo())
            return time;
        if (const Phrase *delay =
                first([](const Phrase &phrase) { return phrase.delay.has_value(); }))
            return delay;
        return first([&](const Phrase &phrase) { return phrase.isPartOfDay() && stands(phrase); });
    }

    /// Of phrases that may be a time or a length.
    const Phrase *timeOfTwo() const
    {
        const auto test = [&](const Phrase &phrase) {
            return phrase.isClock() && !isCalledLength(phrase);
        };
        const Phrase *one = first(test);
        const Phrase *other =
            first([&](const Phrase &phrase) { return &phrase > one && test(phrase); });
        const bool isOther = other && other->from > one->to && one->length < other->length &&
                             one->length <= longestApart;
        return isOther ? other : one;
    }

    /// "noite" alone is a word of the title, but for "amanha cedo".
    bool stands(const Phrase &part) const
    {
        return part.to - part.from > 1 ||
               first([&](const Phrase &day) { return day.isDay && day.to == part.from; });
    }

    const Phrase *dayBeside(const Phrase *start) const
    {
        const Phrase *last = nullptr;
        for (const Phrase &phrase : m_phrases) {
            if (!phrase.isDay)
                continue;
            last = &phrase;
            if (start && (phrase.to == start->from || phrase.from == start->to))
                break;
        }
        return last;
    }

    std::optional<Date> startDate(const Phrase &start, const Phrase *day)
    {
        std::optional<Date> date;
        if (start.delay) {
            date = m_now + *start.delay;
        } else {
            if (day)
                take(*day);
            date = WhenText::moment(day ? day->text : QString(), timeIn(start, day), m_now);
        }
        return date ? std::optional<Date>(std::chrono::floor<std::chrono::minutes>(*date)) : date;
    }

    /// "sexta a noite, as 8" is 20:00.
    WhenText::TimeOfDay timeIn(const Phrase &start, const Phrase *day)
    {
        const auto isPart = [](const Phrase &phrase) { return phrase.isPartOfDay(); };
        const Phrase *part = start.isClock() && day ? directlyBehind(*day, isPart) : nullptr;
        if (!part && start.isClock())
            part = directlyBehind(start, isPart);
        if (!part)
            return *start.time;
        take(*part);
        const QString late = start.text + QStringLiteral(" da ") + part->text.section(u' ', -1);
        return WhenText::timeOfDay(late).value_or(*start.time);
    }

    /// Nothing for an end ahead of the start, unless the night is between them.
    std::optional<Seconds> lengthFrom(const Phrase &start, Date date)
    {
        if (start.end) {
            const QDateTime from = localDateTime(date);
            QDateTime to(from.date().addDays(start.end->isNextDay ? 1 : 0), start.end->time);
            const bool isOverNight = from.time() >= QTime(12, 0) && to.time() <= QTime(12, 0);
            if (to <= from && isOverNight)
                to = QDateTime(from.date().addDays(1), start.end->time);
            return to > from ? std::optional(Seconds(double(from.secsTo(to)))) : std::nullopt;
        }
        if (start.lengthBehind)
            return start.lengthBehind;
        const auto isLength = [&](const Phrase &phrase) {
            return phrase.length && &phrase != &start;
        };
        const Phrase *length = directlyBehind(start, isLength);
        if (!length)
            length = first([&](const Phrase &phrase) { return isLength(phrase) && !phrase.time; });
        if (!length)
            length = first([&](const Phrase &phrase) {
                return isLength(phrase) && phrase.length <= longestApart;
            });
        if (!length)
            return usualLength;
        take(*length);
        return length->length;
    }

    /// With the small words ahead that lead to it.
    void take(const Phrase &phrase)
    {
        constexpr std::array<QStringView, 10> leading{u"de", u"da",   u"do",  u"no",  u"na",
                                                      u"em", u"para", u"pra", u"por", u"durante"};
        qsizetype from = phrase.from;
        if (std::ranges::find(leading, wordBefore(from)) != leading.end())
            --from;
        if (wordBefore(from) == u"duracao")
            from -= wordBefore(from - 1) == u"com" ? 2 : 1;
        for (qsizetype word = from; word < phrase.to; ++word)
            m_isTaken[std::size_t(word)] = true;
    }

    /// What is left, without the punctuation that stood around what was taken.
    QString title() const
    {
        static const QRegularExpression doubled(
            QStringLiteral(R"(([-–—|])(?:\s+[-–—|])+(?=\s|$))"));
        static const QRegularExpression outer(QStringLiteral(R"(^[\s,;:|–—-]+|[\s,;:|–—-]+$)"));
        QStringList left;
        for (qsizetype word = 0; word < m_typed.size(); ++word) {
            if (!m_isTaken[std::size_t(word)])
                left.append(m_typed[word]);
        }
        return left.join(u' ').replace(doubled, QStringLiteral("\\1")).remove(outer);
    }

    QStringList m_typed;
    QStringList m_words; ///< folded
    Date m_now;
    std::vector<Phrase> m_phrases;
    std::vector<bool> m_isTaken; ///< of each word
};

} // namespace

std::variant<EventLine, EventLineProblem> EventLines::read(const QString &line, Date now)
{
    if (line.size() > longestLine)
        return EventLineProblem::tooLong;
    return LineReader(line, now).read();
}

QString EventLines::description(EventLineProblem problem)
{
    switch (problem) {
    case EventLineProblem::noTitle:
        return QStringLiteral("Escreva o que é o compromisso.");
    case EventLineProblem::noStart:
        return QStringLiteral("Diga quando, como em “amanhã 14h”.");
    case EventLineProblem::noTime:
        return QStringLiteral("Diga a hora, como em “14h” ou “14h-15h”.");
    case EventLineProblem::endsBeforeStart:
        return QStringLiteral("O fim vem antes do início.");
    case EventLineProblem::tooLong:
        return QStringLiteral("O texto é longo demais para um compromisso.");
    }
    return {};
}

} // namespace velmo
