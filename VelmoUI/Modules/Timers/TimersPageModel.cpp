#include "VelmoUI/Modules/Timers/TimersPageModel.h"

#include "VelmoCore/Foundation/DurationText.h"
#include "VelmoCore/Foundation/Words.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velmo {

namespace {

constexpr int daysShown = 28;

/// What is left counts until its last moment is over.
QString remainingText(const CountdownTimer &timer, Date now)
{
    return TimerCenter::format(Seconds(std::ceil(timer.remaining(now).count())));
}

QString removalText(const QString &title)
{
    return QStringLiteral("Remover %1").arg(title);
}

TimerRow timerRow(const CountdownTimer &timer, Date now)
{
    const QString left = remainingText(timer, now);
    const QString value = timer.isFinished() ? QStringLiteral("Concluído")
                          : timer.isPaused() ? QStringLiteral("Pausado, %1").arg(left)
                                             : left;
    return {.id = uuidText(timer.id),
            .title = timer.label,
            .value = value,
            .progress = timer.progress(now),
            .isRunning = timer.isRunning(),
            .isFinished = timer.isFinished(),
            .removal = removalText(timer.label),
            .spoken = QStringLiteral("%1, %2").arg(timer.label, value)};
}

} // namespace

TimersPageModel::TimersPageModel(TimerCenter &timers, SettingsStore &settings, Scheduler &scheduler)
    : m_center(timers), m_settings(settings), m_scheduler(scheduler), m_undo(scheduler)
{
    connect(&m_undo, &UndoStack::changed, this, &TimersPageModel::changed);
    connect(&timers, &TimerCenter::changed, this, &TimersPageModel::update);
    connect(&settings, &SettingsStore::settingsChanged, this, &TimersPageModel::changed);
    update();
}

bool TimersPageModel::hasFinished() const
{
    return std::ranges::any_of(m_center.timers(), &CountdownTimer::isFinished);
}

bool TimersPageModel::isPomodoroRunning() const
{
    return hasPomodoro() && m_center.pomodoro()->timer.isRunning();
}

QString TimersPageModel::phase() const
{
    return Pomodoro::title(hasPomodoro() ? m_center.pomodoro()->phase : PomodoroPhase::focus);
}

QString TimersPageModel::phaseSymbol() const
{
    return !hasPomodoro() || m_center.pomodoro()->phase == PomodoroPhase::focus
               ? QStringLiteral("brain.head.profile")
               : QStringLiteral("cup.and.saucer.fill");
}

QString TimersPageModel::pomodoroTime() const
{
    if (hasPomodoro())
        return remainingText(m_center.pomodoro()->timer, m_scheduler.now());
    return TimerCenter::format(
        Pomodoro::duration(PomodoroPhase::focus, m_settings.settings().pomodoro));
}

qreal TimersPageModel::pomodoroProgress() const
{
    return hasPomodoro() ? m_center.pomodoro()->timer.progress(m_scheduler.now()) : 0;
}

int TimersPageModel::cycles() const
{
    return std::max(m_settings.settings().pomodoro.cyclesBeforeLongBreak, 1);
}

int TimersPageModel::cyclesDone() const
{
    if (!hasPomodoro())
        return 0;
    const PomodoroSession &session = *m_center.pomodoro();
    return session.phase == PomodoroPhase::longBreak ? cycles() : session.completedFocus % cycles();
}

QString TimersPageModel::cyclesText() const
{
    return QStringLiteral("%1 de %2 focos").arg(cyclesDone()).arg(cycles());
}

QString TimersPageModel::today() const
{
    const int count = m_center.focusSessionsToday();
    return count == 0 ? QStringLiteral("Hoje: nenhuma sessão")
                      : Words::count(count, u"Hoje: 1 sessão", u"Hoje: %1 sessões");
}

QString TimersPageModel::leadTitle() const
{
    if (!lead())
        return {};
    return lead()->isPaused() ? QStringLiteral("Pausado") : lead()->label;
}

QString TimersPageModel::leadTime() const
{
    return lead() ? remainingText(*lead(), m_scheduler.now()) : pomodoroTime();
}

qreal TimersPageModel::leadProgress() const
{
    return lead() ? lead()->progress(m_scheduler.now()) : 0;
}

QString TimersPageModel::total() const
{
    const QDate first = localDateTime(m_scheduler.now()).date().addDays(1 - daysShown);
    int minutes = 0;
    for (const PomodoroRecord &record : m_center.history()) {
        if (localDateTime(record.date).date() >= first)
            minutes += record.minutes;
    }
    return QStringLiteral("%1 de foco").arg(Words::duration(minutes));
}

void TimersPageModel::watch(bool isWatched)
{
    if (!isWatched)
        m_undo.commitAll();
    update();
}

bool TimersPageModel::start(const QString &text, const QString &label)
{
    const auto length = duration(text);
    if (length)
        m_center.startTimer(*length, label.trimmed());
    return length.has_value();
}

void TimersPageModel::startPreset(const QString &id)
{
    m_center.startTimer(Seconds(id.toDouble()));
}

bool TimersPageModel::addPreset(const QString &text)
{
    const auto length = duration(text);
    if (length)
        m_center.addPreset(*length);
    return length.has_value();
}

void TimersPageModel::removePreset(const QString &id)
{
    m_center.removePreset(Seconds(id.toDouble()));
}

void TimersPageModel::clearIssue()
{
    m_issue.clear();
    Q_EMIT issueChanged();
}

void TimersPageModel::togglePause(const QString &id)
{
    const Uuid uuid = Uuid::fromString(id);
    const auto timer = std::ranges::find(m_center.timers(), uuid, &CountdownTimer::id);
    if (timer == m_center.timers().end())
        return;
    if (timer->isRunning())
        m_center.pause(uuid);
    else
        m_center.resume(uuid);
}

void TimersPageModel::restart(const QString &id)
{
    m_center.restart(Uuid::fromString(id));
}

void TimersPageModel::remove(const QString &id)
{
    offerUndo(m_center.remove(Uuid::fromString(id)));
}

void TimersPageModel::clearFinished()
{
    offerUndo(m_center.clearFinished());
}

void TimersPageModel::startPomodoro()
{
    m_center.startPomodoro();
}

void TimersPageModel::togglePomodoroPause()
{
    m_center.togglePomodoroPause();
}

void TimersPageModel::skipPhase()
{
    m_center.skipPomodoroPhase();
}

void TimersPageModel::stopPomodoro()
{
    m_center.stopPomodoro();
}

void TimersPageModel::clearHistory()
{
    m_center.clearHistory();
}

const CountdownTimer *TimersPageModel::lead() const
{
    if (hasPomodoro())
        return &m_center.pomodoro()->timer;
    const auto open = std::ranges::find(m_center.timers(), false, &CountdownTimer::isFinished);
    return open == m_center.timers().end() ? nullptr : &*open;
}

std::optional<Seconds> TimersPageModel::duration(const QString &text)
{
    const auto duration = durationFromText(text);
    m_issue = duration ? QString() : QStringLiteral("Digite uma duração, como 1:30, 90 ou 1h20.");
    Q_EMIT issueChanged();
    return duration;
}

void TimersPageModel::offerUndo(const TimerCenter::Removed &removed)
{
    if (removed.empty())
        return;
    const auto title = removed.size() == 1 ? QStringLiteral("Desfazer: timer removido")
                                           : QStringLiteral("Desfazer: timers removidos");
    m_undo.offer(title, [this, removed] { m_center.restore(removed); });
}

void TimersPageModel::update()
{
    const Date now = m_scheduler.now();
    updateTimers(now);
    updateDays(now);
    std::vector<PresetRow> presets;
    for (const Seconds seconds : m_center.presets()) {
        const QString title = TimerCenter::format(seconds);
        presets.push_back({QString::number(seconds.count()), title, removalText(title)});
    }
    m_presets.setRecords(presets);
    scheduleTick(now);
    Q_EMIT changed();
}

void TimersPageModel::updateTimers(Date now)
{
    std::vector<TimerRow> rows;
    for (const CountdownTimer &timer : m_center.timers())
        rows.push_back(timerRow(timer, now));
    m_timers.setRecords(rows);
}

void TimersPageModel::updateDays(Date now)
{
    const QDate today = localDateTime(now).date();
    std::map<QDate, int> minutes;
    for (int day = 0; day < daysShown; ++day)
        minutes[today.addDays(-day)] = 0;
    int most = 1;
    for (const PomodoroRecord &record : m_center.history()) {
        const auto day = minutes.find(localDateTime(record.date).date());
        if (day == minutes.end())
            continue;
        day->second += record.minutes;
        most = std::max(most, day->second);
    }
    std::vector<FocusDay> days;
    for (const auto &[date, focus] : minutes)
        days.push_back(
            {.id = date.toString(Qt::ISODate),
             .share = double(focus) / most,
             .isToday = date == today,
             .text = QStringLiteral("%1: %2").arg(Words::day(date), Words::duration(focus))});
    m_days.setRecords(days);
}

/// One tick a second for all, at the first one's full second.
void TimersPageModel::scheduleTick(Date now)
{
    constexpr Seconds leeway = 1ms;
    m_nextSecond.cancel();
    if (!isWatched())
        return;
    std::optional<Seconds> left;
    if (isPomodoroRunning())
        left = m_center.pomodoro()->timer.remaining(now);
    const auto running = std::ranges::find_if(m_center.timers(), &CountdownTimer::isRunning);
    if (!left && running != m_center.timers().end())
        left = running->remaining(now);
    if (!left)
        return;
    const Seconds fraction(left->count() - std::floor(left->count()));
    m_nextSecond = m_scheduler.after(fraction > Seconds(0) ? fraction + leeway : Seconds(1s),
                                     [this] { update(); });
}

} // namespace velmo
