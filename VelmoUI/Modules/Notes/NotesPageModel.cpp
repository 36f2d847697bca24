#include "VelmoUI/Modules/Notes/NotesPageModel.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Notes/DueText.h"
#include "VelmoCore/Notes/NoteParsing.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoUI/Modules/Notes/NoteCommands.h"

#include <QScopedValueRollback>
#include <QTextDocument>

#include <algorithm>

namespace velmo {

namespace {

/// The list follows what is typed a moment after the last key.
constexpr Seconds refreshDelay = 0.2s;
constexpr qsizetype previewLength = 120;

/// Short enough to stand in a row of others.
QString elided(const QString &address)
{
    constexpr qsizetype most = 28;
    return address.size() <= most ? address : address.first(most - 1) + u'…';
}

/// What follows the first line, in one line.
QString preview(const QString &text)
{
    const QString start = text.trimmed().left(4 * previewLength);
    const qsizetype end = start.indexOf(u'\n');
    return end < 0 ? QString() : start.sliced(end).simplified().left(previewLength);
}

NoteRow noteRow(const Note &note, Date now, bool isSelected)
{
    const QString title = NoteParsing::title(note.text);
    const QString shown =
        title.isEmpty() ? QStringLiteral("Nota vazia") : title.left(previewLength);
    const QString time = Words::timeOrDayAndTime(note.updated, now);
    const QString next = preview(note.text);
    return {.id = uuidText(note.id),
            .title = shown,
            .summary = next.isEmpty() ? time : QStringLiteral("%1 · %2").arg(time, next),
            .isPinned = note.isPinned,
            .isSelected = isSelected,
            .spoken = note.isPinned ? QStringLiteral("%1, fixada").arg(shown) : shown};
}

TaskRow taskRow(const TaskItem &task, Date now)
{
    const QString due = task.due ? Words::dayAndTime(*task.due, now) : QString();
    const bool isOverdue = task.isOverdue(now);
    QString spoken = task.title;
    if (task.isDone)
        spoken += QStringLiteral(", concluída");
    else if (isOverdue)
        spoken += QStringLiteral(", atrasada, %1").arg(due);
    else if (task.due)
        spoken += QStringLiteral(", %1").arg(due);
    return {.id = uuidText(task.id),
            .title = task.title,
            .due = due,
            .isDone = task.isDone,
            .isOverdue = isOverdue,
            .removal = QStringLiteral("Remover %1").arg(task.title),
            .spoken = spoken};
}

/// Nothing if it is gone.
const TaskItem *taskOf(const NotesStore &store, const Uuid &id)
{
    const auto found = std::ranges::find(store.tasks(), id, &TaskItem::id);
    return found == store.tasks().end() ? nullptr : &*found;
}

} // namespace

NotesPageModel::NotesPageModel(const NotesServices &services, PanelPort &panel)
    : m_services(services), m_panel(panel),
      m_editor(services.scheduler, [this](const QString &text) { edited(text); }),
      m_notes([this](const Note &note) {
          return noteRow(note, m_services.scheduler.now(), note.id == m_selected);
      }),
      m_undo(services.scheduler)
{
    connect(&m_undo, &UndoStack::changed, this, &NotesPageModel::changed);
    connect(&services.notes, &NotesStore::changed, this, &NotesPageModel::storeChanged);
    connect(&services.notes, &NotesStore::flushing, &m_editor, &NoteEditor::flush);
    connect(&services.notes, &NotesStore::loaded, this, [this] {
        if (!m_selected)
            selectFirst();
        update();
    });
    selectFirst();
    update();
}

bool NotesPageModel::hasNotes() const
{
    return !m_services.notes.notes().empty();
}

QString NotesPageModel::selectedText() const
{
    const Note *note = m_selected ? m_services.notes.note(*m_selected) : nullptr;
    return note ? note->text : QString();
}

bool NotesPageModel::isPinned() const
{
    const Note *note = m_selected ? m_services.notes.note(*m_selected) : nullptr;
    return note && note->isPinned;
}

bool NotesPageModel::hasTasks() const
{
    return !m_services.notes.tasks().empty();
}

bool NotesPageModel::hasOpenTasks() const
{
    return std::ranges::any_of(m_services.notes.tasks(),
                               [](const TaskItem &task) { return !task.isDone; });
}

QString NotesPageModel::doneText() const
{
    const auto count = std::ranges::count(m_services.notes.tasks(), true, &TaskItem::isDone);
    return count == 0 ? QString() : Words::count(count, u"1 concluída", u"%1 concluídas");
}

void NotesPageModel::setShowsDone(bool shows)
{
    m_showsDone = shows;
    update();
}

void NotesPageModel::watch(bool isWatched)
{
    if (isWatched) {
        update();
        return;
    }
    m_editor.flush();
    m_services.notes.discardEmptyNotes();
}

Route NotesPageModel::composing()
{
    return {.module = QStringLiteral("notes"), .verb = QStringLiteral("compose")};
}

void NotesPageModel::go(const Route &route)
{
    if (route.verb == composing().verb)
        create();
    else if (const auto id = uuidFromText(route.item); id && m_services.notes.note(*id))
        select(route.item);
    else
        return;
    Q_EMIT opened();
}

void NotesPageModel::compose()
{
    m_panel.go(composing());
}

void NotesPageModel::search(const QString &query)
{
    m_query = query;
    update();
}

void NotesPageModel::toggleTag(const QString &tag)
{
    m_tag = m_tag == tag ? std::nullopt : std::optional(tag);
    update();
}

void NotesPageModel::select(const QString &id)
{
    m_editor.flush();
    m_selected = uuidFromText(id);
    Q_EMIT selected();
    update();
}

void NotesPageModel::create()
{
    m_query.clear();
    m_tag.reset();
    select(uuidText(m_services.notes.createNote().id));
}

void NotesPageModel::edit(QQuickTextDocument *document, const QColor &accent)
{
    m_editor.attach(document->textDocument(), accent);
}

bool NotesPageModel::openLinkAt(int place)
{
    const QString text = selectedText();
    const qsizetype start = QStringView(text).left(place).lastIndexOf(u'\n') + 1;
    const QString line = text.mid(start, text.indexOf(u'\n', place) - start);
    for (const NoteParsing::Link &link : NoteParsing::linksWithPlaces(line)) {
        if (place - start < link.start || place - start >= link.start + link.length)
            continue;
        m_services.fileViewer.open(link.url);
        return true;
    }
    return false;
}

void NotesPageModel::openLink(const QString &url)
{
    m_services.fileViewer.open(QUrl(url));
}

void NotesPageModel::togglePin(const QString &id)
{
    m_services.notes.togglePin(Uuid::fromString(id));
}

void NotesPageModel::togglePinOfSelected()
{
    if (m_selected)
        m_services.notes.togglePin(*m_selected);
}

void NotesPageModel::remove(const QString &id)
{
    const Note *found = m_services.notes.note(Uuid::fromString(id));
    if (!found)
        return;
    const Note note = *found;
    if (m_selected == note.id) {
        m_selected.reset();
        Q_EMIT selected();
    }
    m_services.notes.deleteNote(note.id);
    if (!note.text.trimmed().isEmpty())
        m_undo.offer(QStringLiteral("Desfazer: nota apagada"), [this, note] {
            m_services.notes.restore(note);
            select(uuidText(note.id));
        });
}

void NotesPageModel::removeSelected()
{
    if (m_selected)
        remove(uuidText(*m_selected));
}

bool NotesPageModel::addTask(const QString &title, const QString &dueText)
{
    std::optional<Date> due;
    return readDue(dueText, due) && m_services.notes.addTask(title, due);
}

bool NotesPageModel::setDue(const QString &id, const QString &dueText)
{
    std::optional<Date> due;
    if (!readDue(dueText, due))
        return false;
    m_services.notes.setDue(Uuid::fromString(id), due);
    return true;
}

void NotesPageModel::clearDueIssue()
{
    m_dueIssue.clear();
    Q_EMIT changed();
}

void NotesPageModel::toggleTask(const QString &id)
{
    m_services.notes.toggleTask(Uuid::fromString(id));
}

void NotesPageModel::removeTask(const QString &id)
{
    const TaskItem *found = taskOf(m_services.notes, Uuid::fromString(id));
    if (!found)
        return;
    const TaskItem task = *found;
    m_services.notes.deleteTask(task.id);
    m_undo.offer(QStringLiteral("Desfazer: tarefa apagada"),
                 [this, task] { m_services.notes.restore(std::vector{task}); });
}

QString NotesPageModel::reminderTitle(const QString &id) const
{
    const TaskItem *task = taskOf(m_services.notes, Uuid::fromString(id));
    return task ? QStringLiteral("Lembrete: %1").arg(task->title)
                : QStringLiteral("Quando lembrar");
}

void NotesPageModel::clearCompleted()
{
    std::vector<TaskItem> done;
    std::ranges::copy_if(m_services.notes.tasks(), std::back_inserter(done), &TaskItem::isDone);
    m_services.notes.clearCompletedTasks();
    m_undo.offer(QStringLiteral("Desfazer: tarefas apagadas"),
                 [this, done] { m_services.notes.restore(done); });
}

void NotesPageModel::offerCommands(const QString &id)
{
    m_commanded = Uuid::fromString(id);
    const Note *note = m_services.notes.note(m_commanded);
    const TaskItem *task = taskOf(m_services.notes, m_commanded);
    m_commands.setRecords(note   ? NoteCommands::of(*note)
                          : task ? NoteCommands::of(*task)
                                 : std::vector<PageCommand>());
}

void NotesPageModel::run(const QString &command)
{
    const QString id = uuidText(m_commanded);
    const Note *note = m_services.notes.note(m_commanded);
    const TaskItem *task = taskOf(m_services.notes, m_commanded);
    if (!note && !task)
        return;
    if (command == NoteCommands::open) {
        select(id);
        Q_EMIT opened();
    } else if (command == NoteCommands::pin) {
        togglePin(id);
    } else if (command == NoteCommands::toggle) {
        toggleTask(id);
    } else if (command == NoteCommands::remind) {
        Q_EMIT reminderWanted(id);
    } else if (command == NoteCommands::copy) {
        m_services.pasteboard.writeText(note ? note->text : task->title);
    } else if (command == NoteCommands::remove) {
        note ? remove(id) : removeTask(id);
    }
}

void NotesPageModel::edited(const QString &text)
{
    if (!m_selected) {
        if (text.isEmpty())
            return;
        m_selected = m_services.notes.createNote().id; // typing into the empty page starts a note
    }
    const QScopedValueRollback typing(m_isTyping, true);
    m_services.notes.updateNote(*m_selected, text);
}

bool NotesPageModel::readDue(const QString &text, std::optional<Date> &due)
{
    due = dueFromText(text, m_services.scheduler.now());
    const bool isRead = due || text.trimmed().isEmpty();
    m_dueIssue =
        isRead ? QString() : QStringLiteral("Digite quando, como 18h, amanhã 9h ou 25/12 9:30.");
    Q_EMIT changed();
    return isRead;
}

void NotesPageModel::selectFirst()
{
    const auto notes = m_services.notes.sortedNotes();
    if (notes.empty())
        return;
    m_selected = notes.front().id;
    Q_EMIT selected();
}

void NotesPageModel::storeChanged()
{
    if (m_isTyping)
        m_refresh = m_services.scheduler.after(refreshDelay, [this] { update(); });
    else
        update();
}

void NotesPageModel::update()
{
    m_refresh.cancel();
    const Date now = m_services.scheduler.now();
    m_notes.setRecords(m_services.notes.notes(m_query, m_tag));
    std::vector<TagRow> tags;
    for (const QString &tag : m_services.notes.allTags())
        tags.push_back({tag, u'#' + tag, tag == m_tag});
    m_tags.setRecords(tags);
    updateLinks();
    updateTasks(now);
    Q_EMIT changed();
}

void NotesPageModel::updateLinks()
{
    constexpr std::size_t most = 20;
    std::vector<LinkRow> links;
    for (const QUrl &url : NoteParsing::links(selectedText().left(NoteEditor::longNote))) {
        const QString address = QString::fromUtf8(url.toEncoded());
        const QString path = url.path() == u'/' ? QString() : url.path();
        if (links.size() < most && std::ranges::find(links, address, &LinkRow::id) == links.end())
            links.push_back({address, elided(url.host() + path)});
    }
    m_links.setRecords(links);
}

void NotesPageModel::updateTasks(Date now)
{
    std::vector<TaskRow> tasks;
    for (const TaskItem &task : m_services.notes.sortedTasks()) {
        if (!task.isDone || m_showsDone)
            tasks.push_back(taskRow(task, now));
    }
    m_tasks.setRecords(tasks);
}

} // namespace velmo
