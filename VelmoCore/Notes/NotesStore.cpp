#include "VelmoCore/Notes/NotesStore.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Notes/NoteParsing.h"

#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <set>
#include <tuple>

namespace velmo {

namespace {

constexpr Seconds saveDelay = 0.4s;

} // namespace

NotesStore::NotesStore(const std::optional<QString> &path, const DataFiles &files,
                       Scheduler &scheduler)
    : m_scheduler(scheduler),
      m_file(path, files, scheduler, {QStringLiteral("Notas"), QStringLiteral("notas")},
             [this] { return m_state; })
{
    m_file.onFlush = [this] { Q_EMIT flushing(); };
    m_file.load([this](Snapshot kept) { adopt(std::move(kept)); });
}

const Note *NotesStore::note(const Uuid &id) const
{
    const auto note = std::ranges::find(m_state.notes, id, &Note::id);
    return note == m_state.notes.end() ? nullptr : &*note;
}

std::vector<Note> NotesStore::sortedNotes() const
{
    return notes({}, std::nullopt);
}

std::vector<TaskItem> NotesStore::sortedTasks() const
{
    auto sorted = m_state.tasks;
    std::ranges::stable_sort(sorted, [](const TaskItem &a, const TaskItem &b) {
        if (a.isDone != b.isDone)
            return b.isDone;
        if (a.due.has_value() != b.due.has_value())
            return a.due.has_value();
        return a.due ? *a.due < *b.due : a.created > b.created;
    });
    return sorted;
}

std::vector<QString> NotesStore::allTags() const
{
    std::set<QString> all;
    for (const Note &note : m_state.notes)
        all.insert(read(note).tags.begin(), read(note).tags.end());
    return {all.begin(), all.end()};
}

std::vector<Note> NotesStore::notes(const QString &query, const std::optional<QString> &tag) const
{
    const QString wanted = QLocale().toLower(query.trimmed());
    std::vector<const Note *> found;
    for (const Note &note : m_state.notes) {
        if (!tag && wanted.isEmpty()) {
            found.push_back(&note);
            continue;
        }
        const Reading &reading = read(note);
        const bool hasTag = !tag || std::ranges::find(reading.tags, *tag) != reading.tags.end();
        if (hasTag && reading.folded.contains(wanted))
            found.push_back(&note);
    }
    std::ranges::stable_sort(found, [](const Note *a, const Note *b) {
        return std::tie(a->isPinned, a->updated) > std::tie(b->isPinned, b->updated);
    });
    std::vector<Note> notes;
    notes.reserve(found.size());
    for (const Note *note : found)
        notes.push_back(*note);
    return notes;
}

Note NotesStore::createNote(const QString &text)
{
    const Date now = m_scheduler.now();
    const Note note{.id = makeUuid(), .text = text, .created = now, .updated = now};
    insert(note);
    return note;
}

void NotesStore::updateNote(const Uuid &id, const QString &text)
{
    const auto note = std::ranges::find(m_state.notes, id, &Note::id);
    if (note == m_state.notes.end() || note->text == text)
        return;
    note->text = text;
    note->updated = m_scheduler.now();
    m_readings.remove(id);
    hasChanged();
}

void NotesStore::togglePin(const Uuid &id)
{
    const auto note = std::ranges::find(m_state.notes, id, &Note::id);
    if (note == m_state.notes.end())
        return;
    note->isPinned = !note->isPinned;
    hasChanged();
}

void NotesStore::deleteNote(const Uuid &id)
{
    m_readings.remove(id);
    if (std::erase_if(m_state.notes, [&](const Note &note) { return note.id == id; }) > 0)
        hasChanged();
}

void NotesStore::restore(const Note &note)
{
    if (!this->note(note.id))
        insert(note);
}

void NotesStore::discardEmptyNotes()
{
    const auto isEmpty = [](const Note &note) {
        return std::ranges::all_of(note.text, [](QChar character) { return character.isSpace(); });
    };
    if (std::erase_if(m_state.notes, isEmpty) > 0)
        hasChanged();
}

Note NotesStore::meetingNote(const QString &eventID, const QString &title, Date start, Date end)
{
    const auto existing = std::ranges::find(m_state.notes, eventID, &Note::eventID);
    if (existing != m_state.notes.end())
        return *existing;
    const Date now = m_scheduler.now();
    const Note note{.id = makeUuid(),
                    .text = QStringLiteral("Reunião: %1\n%2 · %3–%4\n\n")
                                .arg(title, Words::longDay(localDateTime(start).date()),
                                     Words::time(start), Words::time(end)),
                    .created = now,
                    .updated = now,
                    .eventID = eventID};
    insert(note);
    return note;
}

std::optional<TaskItem> NotesStore::addTask(const QString &title, const std::optional<Date> &due)
{
    const QString trimmed = title.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    const TaskItem task{
        .id = makeUuid(), .title = trimmed, .due = due, .created = m_scheduler.now()};
    m_state.tasks.insert(m_state.tasks.begin(), task);
    hasChanged();
    if (due)
        onTaskReminderChanged(task);
    return task;
}

void NotesStore::toggleTask(const Uuid &id)
{
    TaskItem *changed = task(id);
    if (!changed)
        return;
    changed->isDone = !changed->isDone;
    changed->completedAt = changed->isDone ? std::optional(m_scheduler.now()) : std::nullopt;
    const TaskItem copy = *changed;
    hasChanged();
    onTaskReminderChanged(copy);
}

void NotesStore::setDue(const Uuid &id, const std::optional<Date> &due)
{
    TaskItem *changed = task(id);
    if (!changed)
        return;
    changed->due = due;
    const TaskItem copy = *changed;
    hasChanged();
    onTaskReminderChanged(copy);
}

void NotesStore::deleteTask(const Uuid &id)
{
    const TaskItem *found = task(id);
    if (!found)
        return;
    TaskItem deleted = *found;
    deleted.due.reset();
    std::erase_if(m_state.tasks, [&](const TaskItem &task) { return task.id == id; });
    hasChanged();
    onTaskReminderChanged(deleted);
}

void NotesStore::clearCompletedTasks()
{
    std::erase_if(m_state.tasks, [](const TaskItem &task) { return task.isDone; });
    hasChanged();
}

void NotesStore::restore(const std::vector<TaskItem> &tasks)
{
    for (const TaskItem &restored : tasks) {
        if (task(restored.id))
            continue;
        m_state.tasks.insert(m_state.tasks.begin(), restored);
        onTaskReminderChanged(restored);
    }
    hasChanged();
}

std::vector<TaskItem> NotesStore::takeMissedReminders()
{
    auto missed = markReminded();
    if (!missed.empty())
        m_file.saveAfter(saveDelay);
    return missed;
}

void NotesStore::adopt(Snapshot kept)
{
    const auto append = [](auto &to, auto &from) {
        to.insert(to.end(), std::make_move_iterator(from.begin()),
                  std::make_move_iterator(from.end()));
    };
    append(m_state.notes, kept.notes);
    append(m_state.tasks, kept.tasks);
    readInBackground();
    scheduleDue();
    Q_EMIT changed();
    Q_EMIT loaded();
}

TaskItem *NotesStore::task(const Uuid &id)
{
    const auto task = std::ranges::find(m_state.tasks, id, &TaskItem::id);
    return task == m_state.tasks.end() ? nullptr : &*task;
}

NotesStore::Reading NotesStore::readingOf(const QString &text)
{
    return {text, QLocale().toLower(text), NoteParsing::tags(text)};
}

const NotesStore::Reading &NotesStore::read(const Note &note) const
{
    auto reading = m_readings.find(note.id);
    if (reading == m_readings.end())
        reading = m_readings.insert(note.id, readingOf(note.text));
    return *reading;
}

void NotesStore::readInBackground()
{
    if (m_state.notes.empty())
        return;
    m_reader.start([notes = m_state.notes, &scheduler = m_scheduler, self = QPointer(this)] {
        QHash<Uuid, Reading> readings;
        for (const Note &note : notes)
            readings.insert(note.id, readingOf(note.text));
        scheduler.post([readings, self] {
            if (!self)
                return;
            for (const Note &note : self->m_state.notes) {
                const auto reading = readings.find(note.id);
                // Not of a text that was changed meanwhile.
                if (reading != readings.end() && reading->text == note.text)
                    self->m_readings.insert(note.id, *reading);
            }
        });
    });
}

void NotesStore::insert(const Note &note)
{
    m_state.notes.insert(m_state.notes.begin(), note);
    hasChanged();
}

std::vector<TaskItem> NotesStore::markReminded()
{
    std::vector<TaskItem> due;
    for (TaskItem &task : m_state.tasks) {
        if (!task.due || task.isDone || *task.due > m_scheduler.now() || task.reminded == task.due)
            continue;
        task.reminded = task.due;
        due.push_back(task);
    }
    return due;
}

void NotesStore::hasChanged()
{
    markReminded();
    m_file.saveAfter(saveDelay);
    scheduleDue();
    Q_EMIT changed();
}

void NotesStore::scheduleDue()
{
    constexpr Seconds leeway = 1ms; // a task is overdue after its date, not at it
    m_nextDue.cancel();
    std::optional<Date> next;
    for (const TaskItem &task : m_state.tasks) {
        if (!task.isDone && task.due >= m_scheduler.now() && (!next || task.due < next))
            next = task.due;
    }
    if (next)
        m_nextDue = m_scheduler.at(*next + leeway, [this] { hasChanged(); });
}

} // namespace velmo
