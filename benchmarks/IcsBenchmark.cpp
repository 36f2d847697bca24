// A feed of 10,000 events, a fifth of them recurring, from its bytes to what takes place in 15
// days: ours against libical 3, whose rules start at the window where it allows that.
// `bytes_per_second` counts the bytes of the feed.

#include "VelmoCore/Calendar/ICSParser.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <libical/ical.h>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace velmo {
namespace {

constexpr int eventCount = 10'000;

std::string number(int value, int width)
{
    char text[16];
    std::snprintf(text, sizeof text, "%0*d", width, value);
    return text;
}

/// A local day from 2015 on; every event has one of its own choice.
std::string dayOf(int event, int years)
{
    return number(2015 + event / 7 % years, 4) + number(1 + event / 3 % 12, 2) +
           number(1 + event % 28, 2);
}

std::string ruleOf(int event)
{
    switch (event / 5 % 4) {
    case 0:
        return "RRULE:FREQ=DAILY\r\n";
    case 1:
        return "RRULE:FREQ=WEEKLY;BYDAY=MO,WE,FR\r\n";
    case 2:
        return "RRULE:FREQ=MONTHLY;BYDAY=-1FR;COUNT=200\r\n";
    default:
        return "RRULE:FREQ=YEARLY\r\n";
    }
}

std::string eventText(int event)
{
    const bool isRecurring = event % 5 == 0;
    const bool isUtc = event / 20 % 2 == 0;
    const std::string zone = isUtc ? ":" : ";TZID=America/Sao_Paulo:";
    const std::string end = isUtc ? "Z\r\n" : "\r\n";
    const std::string hour = std::string("T").append(number(8 + event / 2 % 10, 2));
    const std::string day = dayOf(event, isRecurring ? 8 : 11);
    const std::string uid =
        std::string("UID:").append(number(event, 8)) + "-4f1b-9c2a@example.org\r\n";
    const std::string texts =
        "DTSTAMP:20240612T101500Z\r\nCREATED:20240110T090000Z\r\nLAST-MODIFIED:20240610T180000Z\r\n"
        "SUMMARY:Reunião de equipe " +
        number(event, 5) +
        "\r\n"
        "LOCATION:Sala 4\\, 2º andar\r\n"
        "DESCRIPTION:Pauta da semana\\, com os números do mês e as\r\n"
        "  pendências da última vez.\\nhttps://example.org/reuniao/" +
        number(event, 8) +
        "\r\n"
        "SEQUENCE:0\r\nSTATUS:CONFIRMED\r\nTRANSP:OPAQUE\r\n";
    const auto times = [&](const std::string &date) {
        return "DTSTART" + zone + date + hour + "0000" + end + "DTEND" + zone + date + hour +
               "3000" + end;
    };
    std::string text = "BEGIN:VEVENT\r\n" + uid + times(day);
    if (isRecurring) {
        text += ruleOf(event);
        for (const char *excluded : {"20240708", "20240710", "20240726"})
            text += "EXDATE" + zone + excluded + hour + "0000" + end;
    }
    text += texts + "END:VEVENT\r\n";
    if (isRecurring && event % 50 == 0)
        text += "BEGIN:VEVENT\r\n" + uid + "RECURRENCE-ID" + zone + "20240711" + hour + "0000" +
                end + times("20240712") + texts + "END:VEVENT\r\n";
    return text;
}

const QByteArray &feed()
{
    static const QByteArray text = [] {
        std::string made =
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Exemplo//PT\r\nX-WR-CALNAME:"
            "Equipe\r\nX-WR-TIMEZONE:America/Sao_Paulo\r\n";
        for (int event = 0; event < eventCount; ++event)
            made += eventText(event);
        return QByteArray::fromStdString(made + "END:VCALENDAR\r\n");
    }();
    return text;
}

constexpr std::time_t windowStart = 1'719'792'000; // 1 July 2024
constexpr std::time_t windowEnd = windowStart + 15 * 86400;

Date dateAt(std::time_t time)
{
    return Date{Seconds(double(time))};
}

struct Found {
    std::string uid, title, location, notes;
    std::time_t start, end;
};

/// The same reading with libical.
class Peer {
public:
    explicit Peer(const char *text)
        : m_root(icalparser_parse_string(text), icalcomponent_free),
          m_saoPaulo(icaltimezone_get_builtin_timezone("America/Sao_Paulo"))
    {
    }

    std::vector<Found> run()
    {
        collectOverrides();
        for (auto *event = icalcomponent_get_first_component(m_root.get(), ICAL_VEVENT_COMPONENT);
             event; event = icalcomponent_get_next_component(m_root.get(), ICAL_VEVENT_COMPONENT)) {
            if (!icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY))
                addMaster(event);
        }
        for (auto &[uid, overrides] : m_overrides) {
            for (auto &[time, event] : overrides)
                add(event, start(event));
        }
        return std::move(m_found);
    }

private:
    icaltimezone *zoneOf(icalproperty *property)
    {
        return icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)
                   ? m_saoPaulo
                   : icaltimezone_get_utc_timezone();
    }

    std::time_t timeOf(icalproperty *property)
    {
        return icaltime_as_timet_with_zone(icalvalue_get_datetime(icalproperty_get_value(property)),
                                           zoneOf(property));
    }

    std::time_t start(icalcomponent *event)
    {
        return timeOf(icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY));
    }

    void collectOverrides()
    {
        for (auto *event = icalcomponent_get_first_component(m_root.get(), ICAL_VEVENT_COMPONENT);
             event; event = icalcomponent_get_next_component(m_root.get(), ICAL_VEVENT_COMPONENT)) {
            if (auto *id = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY))
                m_overrides[icalcomponent_get_uid(event)][timeOf(id)] = event;
        }
    }

    void addMaster(icalcomponent *event)
    {
        auto *rule = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY);
        if (!rule) {
            add(event, start(event));
            return;
        }
        std::set<std::time_t> excluded;
        for (auto *date = icalcomponent_get_first_property(event, ICAL_EXDATE_PROPERTY); date;
             date = icalcomponent_get_next_property(event, ICAL_EXDATE_PROPERTY))
            excluded.insert(timeOf(date));
        const auto known = m_overrides.find(icalcomponent_get_uid(event));
        auto *property = icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
        auto *zone = zoneOf(property);
        const auto recurrence = icalproperty_get_rrule(rule);
        auto *iterator = icalrecur_iterator_new(recurrence, icalproperty_get_dtstart(property));
        if (recurrence.count == 0) {
            const auto from = icaltime_from_timet_with_zone(windowStart - 86400, 0, zone);
            icalrecur_iterator_set_start(iterator, from);
        }
        for (auto next = icalrecur_iterator_next(iterator); !icaltime_is_null_time(next);
             next = icalrecur_iterator_next(iterator)) {
            const std::time_t time = icaltime_as_timet_with_zone(next, zone);
            if (time >= windowEnd)
                break;
            if (time < windowStart - 86400 || excluded.contains(time))
                continue;
            if (known != m_overrides.end() && known->second.contains(time))
                continue;
            add(event, time);
        }
        icalrecur_iterator_free(iterator);
    }

    void add(icalcomponent *event, std::time_t time)
    {
        auto *endProperty = icalcomponent_get_first_property(event, ICAL_DTEND_PROPERTY);
        const std::time_t end = time + timeOf(endProperty) - start(event);
        if (end > windowStart && time < windowEnd)
            m_found.push_back({icalcomponent_get_uid(event), icalcomponent_get_summary(event),
                               icalcomponent_get_location(event),
                               icalcomponent_get_description(event), time, end});
    }

    std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)> m_root;
    icaltimezone *m_saoPaulo;
    std::map<std::string, std::map<std::time_t, icalcomponent *>> m_overrides;
    std::vector<Found> m_found;
};

void report(benchmark::State &state, std::size_t found)
{
    state.SetBytesProcessed(state.iterations() * feed().size());
    state.counters["occurrences"] = double(found);
}

void ourUnrolling(benchmark::State &state)
{
    std::size_t found = 0;
    for (auto _ : state)
        found = ICSParser::occurrences(QString::fromUtf8(feed()), dateAt(windowStart),
                                       dateAt(windowEnd))
                    .size();
    report(state, found);
}
BENCHMARK(ourUnrolling)->Unit(benchmark::kMillisecond);

void libicalUnrolling(benchmark::State &state)
{
    std::size_t found = 0;
    for (auto _ : state)
        found = Peer(feed().constData()).run().size();
    report(state, found);
}
BENCHMARK(libicalUnrolling)->Unit(benchmark::kMillisecond);

void ourParsing(benchmark::State &state)
{
    const QString text = QString::fromUtf8(feed());
    std::size_t found = 0;
    for (auto _ : state)
        found = ICSParser::parse(text).events.size();
    report(state, found);
}
BENCHMARK(ourParsing)->Unit(benchmark::kMillisecond);

void libicalParsing(benchmark::State &state)
{
    for (auto _ : state)
        icalcomponent_free(icalparser_parse_string(feed().constData()));
    report(state, 0);
}
BENCHMARK(libicalParsing)->Unit(benchmark::kMillisecond);

/// A rule whose event began in 1970, over 15 days of the year that is the argument.
void dailySince1970(benchmark::State &state)
{
    const auto from = dateAt((state.range(0) - 1970) * 31'556'952);
    const auto rule = QStringLiteral("FREQ=DAILY;COUNT=30000");
    const QTimeZone zone("America/Sao_Paulo");
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ICSParser::expand(rule, Date{}, zone, from, from + Seconds(15 * 86400.0)));
}
BENCHMARK(dailySince1970)->Arg(1971)->Arg(2026);

} // namespace
} // namespace velmo
