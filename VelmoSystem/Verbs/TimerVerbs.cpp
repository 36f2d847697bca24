#include "VelmoSystem/Verbs/TimerVerbs.h"

#include "VelmoCore/Foundation/DurationText.h"

#include <QJsonObject>

#include <cmath>

namespace velmo {

namespace {

const QString timerNoun = QStringLiteral("timer");
const QString focusNoun = QStringLiteral("focus");

/// How a countdown stands: its fields that timers and the pomodoro have in common.
QJsonObject recordOf(const CountdownTimer &timer, Date now)
{
    const Seconds left(std::ceil(timer.remaining(now).count()));
    const auto *running = std::get_if<CountdownTimer::Running>(&timer.state);
    const auto [state, title] =
        running            ? std::pair(QStringLiteral("running"), QStringLiteral("em andamento"))
        : timer.isPaused() ? std::pair(QStringLiteral("paused"), QStringLiteral("em pausa"))
                           : std::pair(QStringLiteral("finished"), QStringLiteral("concluído"));
    return {{QStringLiteral("state"), state},
            {QStringLiteral("stateTitle"), title},
            {QStringLiteral("duration"), timer.duration.count()},
            {QStringLiteral("remaining"), left.count()},
            {QStringLiteral("remainingText"), TimerCenter::format(left)},
            {QStringLiteral("ends"),
             VerbTable::date(running ? std::optional(running->endDate) : std::nullopt)}};
}

QJsonArray timerRecords(const TimerCenter &center, Date now)
{
    QJsonArray records;
    for (const CountdownTimer &timer : center.timers()) {
        QJsonObject record = recordOf(timer, now);
        record.insert(QStringLiteral("number"), records.size() + 1);
        record.insert(QStringLiteral("name"), timer.label);
        records.append(record);
    }
    return records;
}

/// One record, also when there is no session.
QJsonArray focusRecords(const TimerCenter &center, Date now)
{
    QJsonObject record{{QStringLiteral("state"), QStringLiteral("stopped")},
                       {QStringLiteral("stateTitle"), QStringLiteral("parado")}};
    if (const auto &session = center.pomodoro()) {
        record = recordOf(session->timer, now);
        record.insert(QStringLiteral("phase"), VerbTable::caseName(session->phase));
        record.insert(QStringLiteral("phaseTitle"), Pomodoro::title(session->phase));
        record.insert(QStringLiteral("completed"), session->completedFocus);
    }
    record.insert(QStringLiteral("completedToday"), center.focusSessionsToday());
    return {record};
}

const PomodoroSession &sessionOf(const TimerCenter &center)
{
    if (!center.pomodoro())
        throw LocalizedError(QStringLiteral("Não há foco em andamento."));
    return *center.pomodoro();
}

void startTimer(TimerCenter &center, const VerbCall &call)
{
    const auto duration = durationFromText(call.words.value(0));
    if (!duration)
        throw LocalizedError(QStringLiteral("Digite uma duração, como 1:30, 90 ou 1h20."));
    center.startTimer(*duration, call.text(1).trimmed());
}

/// Goes on with a session that is paused.
void startFocus(TimerCenter &center)
{
    if (!center.pomodoro())
        center.startPomodoro();
    else if (!center.pomodoro()->timer.isRunning())
        center.togglePomodoroPause();
    else
        throw LocalizedError(QStringLiteral("O foco já está em andamento."));
}

void pauseFocus(TimerCenter &center)
{
    if (!sessionOf(center).timer.isRunning())
        throw LocalizedError(QStringLiteral("O foco já está em pausa."));
    center.togglePomodoroPause();
}

void skipPhase(TimerCenter &center)
{
    sessionOf(center);
    center.skipPomodoroPhase();
}

void stopFocus(TimerCenter &center)
{
    sessionOf(center);
    center.stopPomodoro();
}

} // namespace

std::vector<VerbSyntax> TimerVerbs::syntaxes()
{
    return {
        {timerNoun,
         QStringLiteral("list"),
         QStringLiteral("lista os timers"),
         {},
         {},
         {{QStringLiteral("number"), QStringLiteral("N")},
          {QStringLiteral("name"), QStringLiteral("Nome")},
          {QStringLiteral("remainingText"), QStringLiteral("Resta")},
          {QStringLiteral("stateTitle"), QStringLiteral("Estado")}}},
        {timerNoun,
         QStringLiteral("start"),
         QStringLiteral("inicia um timer, como “5m chá” ou “1h20”"),
         {{.name = QStringLiteral("DURAÇÃO")},
          {.name = QStringLiteral("NOME"), .isOptional = true, .isRepeated = true}}},
        {timerNoun,
         QStringLiteral("stop"),
         QStringLiteral("remove o timer"),
         {{.name = QStringLiteral("N"), .kind = VerbArgument::Kind::number}}},
        {focusNoun, QStringLiteral("start"),
         QStringLiteral("inicia o foco, ou continua o que pausou")},
        {focusNoun, QStringLiteral("pause"), QStringLiteral("pausa a etapa")},
        {focusNoun, QStringLiteral("skip"), QStringLiteral("passa à próxima etapa")},
        {focusNoun, QStringLiteral("stop"), QStringLiteral("encerra o foco")},
        {focusNoun,
         QStringLiteral("status"),
         QStringLiteral("escreve como está o foco"),
         {},
         {},
         {{QStringLiteral("phaseTitle"), QStringLiteral("Etapa")},
          {QStringLiteral("remainingText"), QStringLiteral("Resta")},
          {QStringLiteral("stateTitle"), QStringLiteral("Estado")},
          {QStringLiteral("completedToday"), QStringLiteral("Hoje")}}},
    };
}

std::vector<Verb> TimerVerbs::make(TimerCenter &timers, const Scheduler &scheduler)
{
    const auto list = [&timers, &scheduler](const VerbCall &, const VerbReply &reply) {
        reply.list(timerRecords(timers, scheduler.now()));
    };
    const auto start = [&timers](const VerbCall &call, const VerbReply &reply) {
        startTimer(timers, call);
        reply.succeed();
    };
    const auto stop = [&timers](const VerbCall &call, const VerbReply &reply) {
        timers.remove(timers.timers()[VerbTable::place(call, timers.timers().size())].id);
        reply.succeed();
    };
    const auto status = [&timers, &scheduler](const VerbCall &, const VerbReply &reply) {
        reply.list(focusRecords(timers, scheduler.now()));
    };
    const auto plain = [&timers](void (*change)(TimerCenter &)) {
        return [&timers, change](const VerbCall &, const VerbReply &reply) {
            change(timers);
            reply.succeed();
        };
    };
    return VerbTable::bind(syntaxes(), {{QStringLiteral("timer list"), list},
                                        {QStringLiteral("timer start"), start},
                                        {QStringLiteral("timer stop"), stop},
                                        {QStringLiteral("focus start"), plain(startFocus)},
                                        {QStringLiteral("focus pause"), plain(pauseFocus)},
                                        {QStringLiteral("focus skip"), plain(skipPhase)},
                                        {QStringLiteral("focus stop"), plain(stopFocus)},
                                        {QStringLiteral("focus status"), status}});
}

void TimerVerbs::connectChanges(const TimerCenter &timers, const QObject *listener,
                                const VerbTable::Changed &changed)
{
    QObject::connect(
        &timers, &TimerCenter::changed, listener,
        VerbTable::whenOther([&timers] { return timers.timers(); },
                             [changed] { changed(timerNoun, QStringLiteral("items")); }));
    QObject::connect(
        &timers, &TimerCenter::changed, listener,
        VerbTable::whenOther([&timers] { return timers.pomodoro(); },
                             [changed] { changed(focusNoun, QStringLiteral("phase")); }));
}

} // namespace velmo
