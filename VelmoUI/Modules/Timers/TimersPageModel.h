#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/UndoStack.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A countdown as the page shows it.
struct TimerRow {
    QString id;
    QString title;
    QString value; ///< "4:59", "Pausado, 4:59", "Concluído"
    double progress = 0;
    bool isRunning = false;
    bool isFinished = false;
    QString removal; ///< "Remover chá"
    QString spoken;  ///< for screen readers

    bool operator==(const TimerRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(TimerRow, (),
                      (id, title, value, progress, isRunning, isFinished, removal, spoken))

struct PresetRow {
    QString id; ///< seconds
    QString title;
    QString removal; ///< "Remover 1:00"

    bool operator==(const PresetRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(PresetRow, (), (id, title, removal))

/// The focus of one day as a bar.
struct FocusDay {
    QString id;       ///< ISO 8601
    double share = 0; ///< of the best day, 0 to 1
    bool isToday = false;
    QString text; ///< "12 nov.: 50 min"

    bool operator==(const FocusDay &) const = default;
};
BOOST_DESCRIBE_STRUCT(FocusDay, (), (id, share, isToday, text))

/// The Timers page, and Home's card of it. While it is watched and something counts down, it is
/// made again each second.
class TimersPageModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *timers READ timers CONSTANT)
    Q_PROPERTY(bool hasTimers READ hasTimers NOTIFY changed)
    Q_PROPERTY(bool hasFinished READ hasFinished NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel *presets READ presets CONSTANT)
    Q_PROPERTY(QString issue READ issue NOTIFY issueChanged) ///< with what was typed
    Q_PROPERTY(bool hasPomodoro READ hasPomodoro NOTIFY changed)
    Q_PROPERTY(bool isPomodoroRunning READ isPomodoroRunning NOTIFY changed)
    Q_PROPERTY(QString phase READ phase NOTIFY changed)
    Q_PROPERTY(QString phaseSymbol READ phaseSymbol NOTIFY changed)
    Q_PROPERTY(QString pomodoroTime READ pomodoroTime NOTIFY changed)
    Q_PROPERTY(qreal pomodoroProgress READ pomodoroProgress NOTIFY changed)
    /// Focuses until the long break, and how many of them are done.
    Q_PROPERTY(int cycles READ cycles NOTIFY changed)
    Q_PROPERTY(int cyclesDone READ cyclesDone NOTIFY changed)
    Q_PROPERTY(QString cyclesText READ cyclesText NOTIFY changed) ///< "1 de 4 focos"
    Q_PROPERTY(QString today READ today NOTIFY changed)           ///< "Hoje: 3 sessões"
    /// Of the pomodoro, or of the first countdown that isn't over.
    Q_PROPERTY(bool hasLead READ hasLead NOTIFY changed)
    Q_PROPERTY(QString leadTitle READ leadTitle NOTIFY changed)
    Q_PROPERTY(QString leadTime READ leadTime NOTIFY changed)
    Q_PROPERTY(qreal leadProgress READ leadProgress NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel *days READ days CONSTANT) ///< of the last four weeks
    Q_PROPERTY(QString total READ total NOTIFY changed)     ///< "6 h 40 min de foco"
    Q_PROPERTY(bool hasHistory READ hasHistory NOTIFY changed)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY changed) ///< empty if nothing can be undone

public:
    TimersPageModel(TimerCenter &timers, SettingsStore &settings, Scheduler &scheduler);

    QAbstractItemModel *timers() { return &m_timers; }
    bool hasTimers() const { return m_timers.rowCount() > 0; }
    bool hasFinished() const;
    QAbstractItemModel *presets() { return &m_presets; }
    QString issue() const { return m_issue; }
    bool hasPomodoro() const { return m_center.pomodoro().has_value(); }
    bool isPomodoroRunning() const;
    QString phase() const;
    QString phaseSymbol() const;
    QString pomodoroTime() const;
    qreal pomodoroProgress() const;
    int cycles() const;
    int cyclesDone() const;
    QString cyclesText() const;
    QString today() const;
    bool hasLead() const { return lead() != nullptr; }
    QString leadTitle() const;
    QString leadTime() const;
    qreal leadProgress() const;
    QAbstractItemModel *days() { return &m_days; }
    QString total() const;
    bool hasHistory() const { return !m_center.history().empty(); }
    QString undoTitle() const { return m_undo.title(); }

    /// False for a text that is no duration; then `issue` says so.
    Q_INVOKABLE bool start(const QString &duration, const QString &label);
    Q_INVOKABLE void startPreset(const QString &id);
    Q_INVOKABLE bool addPreset(const QString &duration);
    Q_INVOKABLE void removePreset(const QString &id);
    Q_INVOKABLE void clearIssue();

    Q_INVOKABLE void togglePause(const QString &id);
    Q_INVOKABLE void restart(const QString &id);
    Q_INVOKABLE void remove(const QString &id);
    Q_INVOKABLE void clearFinished();
    Q_INVOKABLE void undo() { m_undo.undo(); }

    Q_INVOKABLE void startPomodoro();
    Q_INVOKABLE void togglePomodoroPause();
    Q_INVOKABLE void skipPhase();
    Q_INVOKABLE void stopPomodoro();
    Q_INVOKABLE void clearHistory();

Q_SIGNALS:
    void changed();
    void issueChanged();

private:
    /// Closing the page ends the undo.
    void watch(bool isWatched) override;
    const CountdownTimer *lead() const;
    std::optional<Seconds> duration(const QString &text);
    void offerUndo(const TimerCenter::Removed &removed);
    void update();
    void updateTimers(Date now);
    void updateDays(Date now);
    void scheduleTick(Date now);

    TimerCenter &m_center;
    SettingsStore &m_settings;
    Scheduler &m_scheduler;
    RecordListModel<TimerRow> m_timers;
    RecordListModel<PresetRow> m_presets;
    RecordListModel<FocusDay> m_days;
    QString m_issue;
    UndoStack m_undo;
    ScheduledTask m_nextSecond;
};

} // namespace velmo
