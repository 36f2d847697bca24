#include "VelmoSystem/Verbs/AgendaVerbs.h"

#include "VelmoCore/Calendar/EventLine.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Ports/FileViewer.h"

#include <QJsonObject>

#include <algorithm>

namespace velmo {

namespace {

const QString noun = QStringLiteral("agenda");
const QString daysOption = QStringLiteral("days");
const VerbArgument text{.name = QStringLiteral("TEXTO"), .isRepeated = true};
const VerbArgument id{.name = QStringLiteral("ID")};

QJsonValue meetingRecord(const std::optional<MeetingLink> &meeting)
{
    if (!meeting)
        return {};
    return QJsonObject{{QStringLiteral("provider"), VerbTable::caseName(meeting->provider)},
                       {QStringLiteral("url"), meeting->url.toString(QUrl::FullyEncoded)}};
}

QJsonObject record(const CalendarEvent &event, Date now)
{
    const QString when = event.isAllDay ? Words::day(localDateTime(event.start).date())
                                        : Words::dayAndTime(event.start, now);
    return {{QStringLiteral("id"), event.id},
            {QStringLiteral("title"), event.title},
            {QStringLiteral("start"), VerbTable::date(event.start)},
            {QStringLiteral("end"), VerbTable::date(event.end)},
            {QStringLiteral("isAllDay"), event.isAllDay},
            {QStringLiteral("calendarTitle"), event.calendarTitle},
            {QStringLiteral("color"), QJsonObject{{QStringLiteral("r"), event.color.r},
                                                  {QStringLiteral("g"), event.color.g},
                                                  {QStringLiteral("b"), event.color.b}}},
            {QStringLiteral("location"), VerbTable::text(event.location)},
            {QStringLiteral("meeting"), meetingRecord(event.meeting)},
            {QStringLiteral("canEdit"), event.canEdit},
            {QStringLiteral("whenText"), when}};
}

QJsonArray feedRecords(const CalendarService &calendar)
{
    QJsonArray records;
    for (const CalendarSubscription &feed : calendar.subscriptions())
        records.append(QJsonObject{
            {QStringLiteral("id"), uuidText(feed.id)},
            {QStringLiteral("name"), feed.name},
            {QStringLiteral("url"), feed.url.toString(QUrl::FullyEncoded)},
            {QStringLiteral("problem"), VerbTable::text(calendar.subscriptionError(feed.id))}});
    return records;
}

/// Throws `LocalizedError` for a line that is no event.
EventLine eventOf(const QString &line, Date now)
{
    const auto read = EventLines::read(line, now);
    if (const auto *problem = std::get_if<EventLineProblem>(&read))
        throw LocalizedError(EventLines::description(*problem));
    return std::get<EventLine>(read);
}

CalendarService::Finished answer(const VerbReply &reply)
{
    return [reply](const std::optional<QString> &problem) {
        if (problem)
            reply.fail(*problem);
        else
            reply.succeed();
    };
}

void list(CalendarService &calendar, const VerbCall &call, Date now, const VerbReply &reply)
{
    constexpr int usual = 15;
    const int days = VerbTable::number(call, daysOption).value_or(usual);
    const QDate today = localDateTime(now).date();
    const auto startOf = [](const QDate &day) {
        return Date(Seconds(double(day.startOfDay().toSecsSinceEpoch())));
    };
    calendar.events(startOf(today), startOf(today.addDays(days)),
                    [reply, now](const std::vector<CalendarEvent> &events) {
                        QJsonArray records;
                        for (const CalendarEvent &event : events)
                            records.append(record(event, now));
                        reply.list(records);
                    });
}

void feed(CalendarService &calendar, const VerbCall &call, const VerbReply &reply)
{
    const QString action = call.words.value(0);
    const QString address = call.words.value(1);
    if (action == u"list") {
        reply.list(feedRecords(calendar));
    } else if (action == u"add" && !address.isEmpty()) {
        calendar.addSubscription(address, call.text(2), answer(reply));
    } else if (action == u"remove" && !address.isEmpty()) {
        const auto url = CalendarSubscription::normalizedURL(address);
        const auto &feeds = calendar.subscriptions();
        const auto found = std::ranges::find_if(feeds, [&](const CalendarSubscription &one) {
            return one.url == url || one.name == address;
        });
        if (found == feeds.end())
            throw LocalizedError(QStringLiteral("Não há uma agenda “%1”.").arg(address));
        calendar.removeSubscription(Uuid(found->id));
        reply.succeed();
    } else {
        throw LocalizedError(
            QStringLiteral("Use feed add ENDEREÇO [NOME], feed list ou feed remove ENDEREÇO."));
    }
}

void join(const CalendarService &calendar, FileViewer &fileViewer, Date now, const VerbReply &reply)
{
    const CalendarEvent *event = calendar.currentEvent(now);
    if (!event || !event->meeting)
        event = calendar.nextEvent(now);
    if (!event)
        throw LocalizedError(QStringLiteral("Nada marcado para os próximos dias."));
    if (!event->meeting)
        throw LocalizedError(QStringLiteral("“%1” não tem link de reunião.").arg(event->title));
    fileViewer.open(event->meeting->url);
    reply.succeed(event->title);
}

} // namespace

std::vector<VerbSyntax> AgendaVerbs::syntaxes()
{
    return {
        {.noun = noun,
         .summary = QStringLiteral("lista os compromissos dos próximos dias"),
         .options = {{.name = daysOption,
                      .value = QStringLiteral("N"),
                      .summary = QStringLiteral("quantos dias, de hoje em diante; sem ele, 15"),
                      .kind = VerbArgument::Kind::number}},
         .columns = {{QStringLiteral("id"), QStringLiteral("ID")},
                     {QStringLiteral("whenText"), QStringLiteral("Quando")},
                     {QStringLiteral("title"), QStringLiteral("Compromisso")},
                     {QStringLiteral("location"), QStringLiteral("Lugar")},
                     {QStringLiteral("calendarTitle"), QStringLiteral("Agenda")}}},
        {.noun = noun,
         .name = QStringLiteral("add"),
         .summary = QStringLiteral("marca um compromisso, como “almoço amanhã 12h30 1h”"),
         .arguments = {text}},
        {.noun = noun,
         .name = QStringLiteral("change"),
         .summary = QStringLiteral("muda um compromisso para o que o texto diz"),
         .arguments = {id, text}},
        {.noun = noun,
         .name = QStringLiteral("remove"),
         .summary = QStringLiteral("remove um compromisso"),
         .arguments = {id}},
        {.noun = noun,
         .name = QStringLiteral("refresh"),
         .summary = QStringLiteral("busca as agendas por endereço agora")},
        {.noun = noun,
         .name = QStringLiteral("feed"),
         .summary =
             QStringLiteral("agendas por endereço: add ENDEREÇO [NOME], list, remove ENDEREÇO"),
         .arguments = {{.name = QStringLiteral("AÇÃO")},
                       {.name = QStringLiteral("ENDEREÇO"), .isOptional = true},
                       {.name = QStringLiteral("NOME"), .isOptional = true, .isRepeated = true}},
         .columns = {{QStringLiteral("name"), QStringLiteral("Nome")},
                     {QStringLiteral("url"), QStringLiteral("Endereço")},
                     {QStringLiteral("problem"), QStringLiteral("Problema")}}},
        {.noun = QStringLiteral("join"),
         .summary = QStringLiteral("entra na reunião de agora, ou na próxima")},
    };
}

std::vector<Verb> AgendaVerbs::make(CalendarService &calendar, FileViewer &fileViewer,
                                    Scheduler &scheduler)
{
    const auto add = [&](const VerbCall &call, const VerbReply &reply) {
        const EventLine event = eventOf(call.text(0), scheduler.now());
        calendar.create(event.title, event.start, event.duration, answer(reply));
    };
    const auto change = [&](const VerbCall &call, const VerbReply &reply) {
        const EventLine event = eventOf(call.text(1), scheduler.now());
        calendar.update(call.words.value(0), event.title, event.start, event.duration,
                        answer(reply));
    };
    const auto remove = [&](const VerbCall &call, const VerbReply &reply) {
        calendar.remove(call.words.value(0), answer(reply));
    };
    const auto refresh = [&](const VerbCall &, const VerbReply &reply) {
        calendar.reloadSubscriptions();
        reply.succeed();
    };
    return VerbTable::bind(
        syntaxes(),
        {{QStringLiteral("agenda"),
          [&](const VerbCall &call, const VerbReply &reply) {
              list(calendar, call, scheduler.now(), reply);
          }},
         {QStringLiteral("agenda add"), add},
         {QStringLiteral("agenda change"), change},
         {QStringLiteral("agenda remove"), remove},
         {QStringLiteral("agenda refresh"), refresh},
         {QStringLiteral("agenda feed"),
          [&](const VerbCall &call, const VerbReply &reply) { feed(calendar, call, reply); }},
         {QStringLiteral("join"), [&](const VerbCall &, const VerbReply &reply) {
              join(calendar, fileViewer, scheduler.now(), reply);
          }}});
}

void AgendaVerbs::connectChanges(const CalendarService &calendar, const QObject *listener,
                                 const VerbTable::Changed &changed)
{
    QObject::connect(&calendar, &CalendarService::changed, listener,
                     [changed] { changed(noun, QStringLiteral("events")); });
}

QJsonObject AgendaVerbs::status(const CalendarService &calendar, Date now)
{
    const CalendarEvent *next = calendar.nextEvent(now);
    return {{QStringLiteral("next"), next ? QJsonValue(record(*next, now)) : QJsonValue()},
            {QStringLiteral("feeds"), feedRecords(calendar)}};
}

} // namespace velmo
