#pragma once

#include "VelmoUI/Design/LazyListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PageCommand.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Frame/UndoStack.h"
#include "VelmoUI/Modules/Notes/NoteEditor.h"
#include "VelmoUI/Modules/Notes/NotesServices.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A note in the list.
struct NoteRow {
    QString id;
    QString title;   ///< its first line
    QString summary; ///< "14:32 · what comes next"
    bool isPinned = false;
    bool isSelected = false;
    QString spoken; ///< for screen readers

    bool operator==(const NoteRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(NoteRow, (), (id, title, summary, isPinned, isSelected, spoken))

struct TagRow {
    QString id; ///< the tag
    QString title;
    bool isSelected = false;

    bool operator==(const TagRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(TagRow, (), (id, title, isSelected))

/// An address in the selected note.
struct LinkRow {
    QString id;    ///< the URL
    QString title; ///< "example.org/a"

    bool operator==(const LinkRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(LinkRow, (), (id, title))

struct TaskRow {
    QString id;
    QString title;
    QString due; ///< "hoje, 18:00"; empty without one
    bool isDone = false;
    bool isOverdue = false;
    QString removal; ///< "Remover regar"
    QString spoken;  ///< for screen readers

    bool operator==(const TaskRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(TaskRow, (), (id, title, due, isDone, isOverdue, removal, spoken))

/// The Notes page of one panel, and Home's card of it. What is removed can come back for a while,
/// though the page closes.
class NotesPageModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *notes READ notes CONSTANT)
    Q_PROPERTY(QAbstractItemModel *tags READ tags CONSTANT)
    Q_PROPERTY(bool hasTags READ hasTags NOTIFY changed)
    Q_PROPERTY(bool hasNotes READ hasNotes NOTIFY changed)
    Q_PROPERTY(bool hasFound READ hasFound NOTIFY changed)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selected)
    /// Of the selected note, when it was selected, as it is edited.
    Q_PROPERTY(QString text READ text NOTIFY selected)
    /// Whether it is so long that letters are placed without the fine points of the face.
    Q_PROPERTY(bool isLong READ isLong NOTIFY selected)
    Q_PROPERTY(bool isPinned READ isPinned NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel *links READ links CONSTANT)
    Q_PROPERTY(QAbstractItemModel *tasks READ tasks CONSTANT)
    Q_PROPERTY(bool hasTasks READ hasTasks NOTIFY changed)
    Q_PROPERTY(bool hasOpenTasks READ hasOpenTasks NOTIFY changed)
    Q_PROPERTY(QString doneText READ doneText NOTIFY changed) ///< "3 concluídas"; empty without
    Q_PROPERTY(bool showsDone READ showsDone WRITE setShowsDone NOTIFY changed)
    Q_PROPERTY(QString dueIssue READ dueIssue NOTIFY changed)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY changed) ///< empty if nothing can come back
    /// What can be done with what `offerCommands` was last called for.
    Q_PROPERTY(QAbstractItemModel *commands READ commands CONSTANT)

public:
    /// `panel` outlives the page.
    NotesPageModel(const NotesServices &services, PanelPort &panel);

    /// The page on a new note.
    static Route composing();
    /// Writes a new note, or selects the one that is the route's item.
    void go(const Route &route) override;

    QAbstractItemModel *notes() { return &m_notes; }
    QAbstractItemModel *tags() { return &m_tags; }
    bool hasTags() const { return m_tags.rowCount() > 0; }
    bool hasNotes() const;
    bool hasFound() const { return m_notes.rowCount() > 0; }
    bool hasSelection() const { return m_selected.has_value(); }
    QString text() const { return NoteEditor::arranged(selectedText()); }
    bool isLong() const { return selectedText().size() > NoteEditor::longNote; }
    bool isPinned() const;
    QAbstractItemModel *links() { return &m_links; }
    QAbstractItemModel *tasks() { return &m_tasks; }
    bool hasTasks() const;
    bool hasOpenTasks() const;
    QString doneText() const;
    bool showsDone() const { return m_showsDone; }
    void setShowsDone(bool shows);
    QString dueIssue() const { return m_dueIssue; }
    QString undoTitle() const { return m_undo.title(); }
    QAbstractItemModel *commands() { return &m_commands; }

    /// Opens the page on a new note.
    Q_INVOKABLE void compose();

    Q_INVOKABLE void search(const QString &query);
    Q_INVOKABLE void toggleTag(const QString &tag);
    Q_INVOKABLE void select(const QString &id);
    Q_INVOKABLE void create();
    Q_INVOKABLE void edit(QQuickTextDocument *document, const QColor &accent);
    /// Opens the address at the place in the text, if there is one.
    Q_INVOKABLE bool openLinkAt(int place);
    Q_INVOKABLE void openLink(const QString &url);
    Q_INVOKABLE void togglePin(const QString &id);
    Q_INVOKABLE void togglePinOfSelected();
    Q_INVOKABLE void remove(const QString &id);
    Q_INVOKABLE void removeSelected();

    /// `due` as it was typed, or empty. False if it can't be read; then `dueIssue` says so.
    Q_INVOKABLE bool addTask(const QString &title, const QString &due);
    Q_INVOKABLE bool setDue(const QString &id, const QString &due);
    Q_INVOKABLE void clearDueIssue();
    Q_INVOKABLE void toggleTask(const QString &id);
    Q_INVOKABLE void removeTask(const QString &id);
    /// The title of the field for the task's reminder; of a new task's for an empty id.
    Q_INVOKABLE QString reminderTitle(const QString &id) const;
    Q_INVOKABLE void clearCompleted();

    /// Of a note or a task.
    Q_INVOKABLE void offerCommands(const QString &id);
    /// Does what one of `commands` stands for.
    Q_INVOKABLE void run(const QString &command);
    /// Takes back the last removal that hasn't been.
    Q_INVOKABLE void undo() { m_undo.undo(); }

Q_SIGNALS:
    void changed();
    void selected();
    /// The selected note is to be written in.
    void opened();
    /// The user wants to set when to be reminded of the task.
    void reminderWanted(const QString &id);

private:
    /// Closing the page removes empty notes.
    void watch(bool isWatched) override;

    QString selectedText() const;
    void edited(const QString &text);
    /// False for a text that is neither empty nor a date.
    bool readDue(const QString &text, std::optional<Date> &due);
    void selectFirst();
    void storeChanged();
    void update();
    void updateLinks();
    void updateTasks(Date now);

    const NotesServices m_services;
    PanelPort &m_panel;
    NoteEditor m_editor;
    LazyListModel<Note, NoteRow> m_notes;
    RecordListModel<TagRow> m_tags;
    RecordListModel<LinkRow> m_links;
    RecordListModel<TaskRow> m_tasks;
    QString m_query;
    std::optional<QString> m_tag;
    std::optional<Uuid> m_selected;
    bool m_showsDone = false;
    QString m_dueIssue;
    UndoStack m_undo;
    RecordListModel<PageCommand> m_commands;
    Uuid m_commanded; ///< what `m_commands` are of
    bool m_isTyping = false;
    ScheduledTask m_refresh;
};

} // namespace velmo
