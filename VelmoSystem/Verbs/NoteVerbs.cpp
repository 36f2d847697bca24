#include "VelmoSystem/Verbs/NoteVerbs.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Notes/DueText.h"
#include "VelmoCore/Notes/NoteParsing.h"

#include <QJsonObject>

#include <algorithm>
#include <tuple>

namespace velmo {

namespace {

const QString noteNoun = QStringLiteral("note");
const QString taskNoun = QStringLiteral("task");
const QString dueOption = QStringLiteral("due");
const QString allOption = QStringLiteral("all");
const VerbArgument text{.name = QStringLiteral("TEXTO"), .isRepeated = true};

QJsonArray noteRecords(const NotesStore &store)
{
    QJsonArray records;
    for (const Note &note : store.sortedNotes())
        records.append(QJsonObject{{QStringLiteral("number"), records.size() + 1},
                                   {QStringLiteral("title"), NoteParsing::title(note.text)},
                                   {QStringLiteral("text"), note.text},
                                   {QStringLiteral("updated"), VerbTable::date(note.updated)},
                                   {QStringLiteral("created"), VerbTable::date(note.created)},
                                   {QStringLiteral("isPinned"), note.isPinned}});
    return records;
}

/// Done ones come last, so that an open task has one number in both lists.
QJsonArray taskRecords(const NotesStore &store, bool showsDone, Date now)
{
    QJsonArray records;
    for (const TaskItem &task : store.sortedTasks()) {
        if (task.isDone && !showsDone)
            continue;
        const QString state = task.isDone           ? QStringLiteral("concluída")
                              : task.isOverdue(now) ? QStringLiteral("atrasada")
                                                    : QStringLiteral("aberta");
        records.append(
            QJsonObject{{QStringLiteral("number"), records.size() + 1},
                        {QStringLiteral("title"), task.title},
                        {QStringLiteral("due"), VerbTable::date(task.due)},
                        {QStringLiteral("isDone"), task.isDone},
                        {QStringLiteral("isOverdue"), task.isOverdue(now)},
                        {QStringLiteral("stateTitle"), state},
                        {QStringLiteral("created"), VerbTable::date(task.created)},
                        {QStringLiteral("completed"), VerbTable::date(task.completedAt)}});
    }
    return records;
}

void addTask(NotesStore &store, const VerbCall &call, Date now, const VerbReply &reply)
{
    std::optional<Date> due;
    if (const auto written = call.options.find(dueOption); written != call.options.end()) {
        due = dueFromText(written->second, now);
        if (!due)
            throw LocalizedError(
                QStringLiteral("Digite quando, como 18h, amanhã 9h ou 25/12 9:30."));
    }
    if (!store.addTask(call.text(0), due))
        throw LocalizedError(QStringLiteral("O texto está em branco."));
    reply.succeed(due ? QStringLiteral("Lembrete: %1").arg(Words::dateAndTime(*due)) : QString());
}

void finishTask(NotesStore &store, const VerbCall &call)
{
    const auto tasks = store.sortedTasks();
    const TaskItem &task = tasks[VerbTable::place(call, tasks.size())];
    if (task.isDone)
        throw LocalizedError(QStringLiteral("“%1” já está concluída.").arg(task.title));
    store.toggleTask(task.id);
}

} // namespace

std::vector<VerbSyntax> NoteVerbs::syntaxes()
{
    return {
        {noteNoun,
         QStringLiteral("list"),
         QStringLiteral("lista as notas"),
         {},
         {},
         {{QStringLiteral("number"), QStringLiteral("N")},
          {QStringLiteral("title"), QStringLiteral("Título")},
          {QStringLiteral("updated"), QStringLiteral("Alterada")}}},
        {noteNoun, QStringLiteral("add"), QStringLiteral("cria uma nota"), {text}},
        {taskNoun,
         QStringLiteral("list"),
         QStringLiteral("lista as tarefas abertas"),
         {},
         {{allOption, {}, QStringLiteral("também as concluídas"), {}}},
         {{QStringLiteral("number"), QStringLiteral("N")},
          {QStringLiteral("title"), QStringLiteral("Tarefa")},
          {QStringLiteral("due"), QStringLiteral("Lembrete")},
          {QStringLiteral("stateTitle"), QStringLiteral("Estado")}}},
        {taskNoun,
         QStringLiteral("add"),
         QStringLiteral("cria uma tarefa"),
         {text},
         {{dueOption,
           QStringLiteral("QUANDO"),
           QStringLiteral("lembra nessa hora, como 18h, “amanhã 9h” ou “25/12 9:30”"),
           {}}}},
        {taskNoun,
         QStringLiteral("done"),
         QStringLiteral("conclui a tarefa"),
         {{.name = QStringLiteral("N"), .kind = VerbArgument::Kind::number}}},
    };
}

std::vector<Verb> NoteVerbs::make(NotesStore &store, const Scheduler &scheduler)
{
    const auto listNotes = [&store](const VerbCall &, const VerbReply &reply) {
        reply.list(noteRecords(store));
    };
    const auto addNote = [&store](const VerbCall &call, const VerbReply &reply) {
        if (call.text(0).trimmed().isEmpty())
            throw LocalizedError(QStringLiteral("O texto está em branco."));
        store.createNote(call.text(0));
        reply.succeed();
    };
    const auto listTasks = [&store, &scheduler](const VerbCall &call, const VerbReply &reply) {
        reply.list(taskRecords(store, call.options.contains(allOption), scheduler.now()));
    };
    const auto add = [&store, &scheduler](const VerbCall &call, const VerbReply &reply) {
        addTask(store, call, scheduler.now(), reply);
    };
    const auto done = [&store](const VerbCall &call, const VerbReply &reply) {
        finishTask(store, call);
        reply.succeed();
    };
    return VerbTable::bind(syntaxes(), {{QStringLiteral("note list"), listNotes},
                                        {QStringLiteral("note add"), addNote},
                                        {QStringLiteral("task list"), listTasks},
                                        {QStringLiteral("task add"), add},
                                        {QStringLiteral("task done"), done}});
}

void NoteVerbs::connectChanges(const NotesStore &store, const QObject *listener,
                               const VerbTable::Changed &changed)
{
    // Each change of a note shows in its date.
    const auto notes = [&store] {
        std::vector<std::tuple<Uuid, Date, bool>> states;
        for (const Note &note : store.notes())
            states.emplace_back(note.id, note.updated, note.isPinned);
        return states;
    };
    QObject::connect(&store, &NotesStore::changed, listener, VerbTable::whenOther(notes, [changed] {
        changed(noteNoun, QStringLiteral("items"));
    }));
    QObject::connect(
        &store, &NotesStore::changed, listener,
        VerbTable::whenOther([&store] { return store.tasks(); },
                             [changed] { changed(taskNoun, QStringLiteral("items")); }));
}

} // namespace velmo
