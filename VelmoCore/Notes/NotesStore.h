#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Notes/Note.h"
#include "VelmoCore/Storage/StateFile.h"

#include <QHash>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// The user's notes and tasks. A burst of changes is saved once, away from the main thread. Main
/// thread only.
class NotesStore : public QObject {
    Q_OBJECT

public:
    struct Snapshot {
        std::vector<Note> notes;
        std::vector<TaskItem> tasks;

        bool operator==(const Snapshot &) const = default;
    };

    /// Loads at once, or when the key comes; never fails. Without a path nothing is kept on disk.
    NotesStore(const std::optional<QString> &path, const DataFiles &files, Scheduler &scheduler);

    /// With a task whose reminder may have changed; one without `due` has none any more.
    std::function<void(const TaskItem &)> onTaskReminderChanged = [](const TaskItem &) {};

    const std::vector<Note> &notes() const { return m_state.notes; }
    const std::vector<TaskItem> &tasks() const { return m_state.tasks; }
    const Note *note(const Uuid &id) const;
    /// Pinned ones first, then the last changed.
    std::vector<Note> sortedNotes() const;
    /// Open ones first, then by due date, then the newest.
    std::vector<TaskItem> sortedTasks() const;
    /// Distinct, sorted.
    std::vector<QString> allTags() const;
    /// The sorted notes that have the tag and hold the text.
    std::vector<Note> notes(const QString &query, const std::optional<QString> &tag) const;

    Note createNote(const QString &text = {});
    /// The same text changes nothing.
    void updateNote(const Uuid &id, const QString &text);
    void togglePin(const Uuid &id);
    void deleteNote(const Uuid &id);
    /// Restores what was deleted.
    void restore(const Note &note);
    /// Removes notes of nothing but white space.
    void discardEmptyNotes();
    /// The note of a calendar event, made if there is none.
    Note meetingNote(const QString &eventID, const QString &title, Date start, Date end);

    /// Nothing for an empty title.
    std::optional<TaskItem> addTask(const QString &title,
                                    const std::optional<Date> &due = std::nullopt);
    void toggleTask(const Uuid &id);
    void setDue(const Uuid &id, const std::optional<Date> &due);
    void deleteTask(const Uuid &id);
    void clearCompletedTasks();
    /// Restores what was deleted.
    void restore(const std::vector<TaskItem> &tasks);
    /// The open tasks that came due while nobody could remind of them; each is given once.
    std::vector<TaskItem> takeMissedReminders();

    /// Emits `flushing`, saves at once and waits for it.
    void flush() { m_file.flush(); }

Q_SIGNALS:
    /// Listeners store the typed text that they still hold before this returns.
    void flushing();
    /// Also when a task becomes overdue.
    void changed();
    /// Notes and tasks of earlier runs were loaded late, once the key came.
    void loaded();

private:
    void adopt(Snapshot kept);
    TaskItem *task(const Uuid &id);
    /// What a search looks at in a text.
    struct Reading {
        QString text;
        QString folded;
        std::vector<QString> tags;
    };

    static Reading readingOf(const QString &text);
    const Reading &read(const Note &note) const;
    void readInBackground();
    void insert(const Note &note);
    /// Gives the open tasks whose time has come, each once.
    std::vector<TaskItem> markReminded();
    void hasChanged();
    void scheduleDue();

    Scheduler &m_scheduler;
    Snapshot m_state;
    StateFile<Snapshot> m_file;
    mutable QHash<Uuid, Reading> m_readings; ///< of notes that were searched, or read at start
    ScheduledTask m_nextDue;
    QThreadPool m_reader; ///< its destructor waits for the thread
};
BOOST_DESCRIBE_STRUCT(NotesStore::Snapshot, (), (notes, tasks))

} // namespace velmo
