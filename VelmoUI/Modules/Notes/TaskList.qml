import QtQuick
import Velmo.Design
import Velmo.Modules.Notes

/// The tasks, a line to add one, and when to be reminded.
Item {
    id: list

    required property NotesPageModel page
    /// Who undoes where the line has nothing to undo.
    required property Item undoKeys
    /// The task whose reminder is being set; empty for the new one.
    property string remembered: ""
    property bool asksDue: false

    signal menuRequested(item: Item, row: string, at: point)

    function askDue(id) {
        remembered = id;
        asksDue = true;
        due.text = "";
        due.forceActiveFocus();
    }
    function submit() {
        const isDone = remembered.length > 0 ? page.setDue(remembered, due.text)
                                             : page.addTask(title.text, due.text);
        if (!isDone)
            return;
        if (remembered.length === 0)
            title.text = "";
        remembered = "";
        due.text = "";
        asksDue = false;
        title.forceActiveFocus();
    }

    TextEntry {
        id: title
        width: parent.width - bell.width - Theme.grid
        name: "Nova tarefa"
        keysWhileEmpty: list.undoKeys
        placeholder: "Nova tarefa — Enter para adicionar"
        onAccepted: {
            list.remembered = "";
            list.submit();
        }
    }
    IconButton {
        id: bell
        anchors.right: parent.right
        name: "Adicionar lembrete"
        symbol: "bell.badge"
        symbolColor: list.asksDue ? Theme.accent : hovered || activeFocus ? Theme.text : Theme.secondaryText
        onTriggered: list.asksDue ? list.asksDue = false : list.askDue("")
    }

    Connections {
        target: list.page
        function onReminderWanted(id) {
            list.askDue(id);
        }
    }

    Label {
        id: heading
        y: Theme.controlHeight + Theme.grid
        width: parent.width
        height: visible ? 4 * Theme.grid : 0
        visible: list.asksDue && list.remembered.length > 0
        text: list.page.reminderTitle(list.remembered)
        color: Theme.secondaryText
        font.pixelSize: Theme.captionSize
        Accessible.ignored: true // the field is named so
    }
    Row {
        id: dueRow
        anchors.top: heading.bottom
        width: parent.width
        height: visible ? Theme.controlHeight : 0
        spacing: Theme.grid
        visible: list.asksDue
        Keys.onEscapePressed: {
            list.asksDue = false;
            title.forceActiveFocus();
        }

        TextEntry {
            id: due
            width: parent.width - soon.width - tomorrow.width - 2 * parent.spacing
            name: heading.text
            placeholder: "18h, amanhã 9h"
            onEdited: if (list.page.dueIssue.length > 0)
                list.page.clearDueIssue()
            onAccepted: list.submit()
        }
        ActionButton {
            id: soon
            name: "Em 1 h"
            onTriggered: {
                due.text = "em 1h";
                list.submit();
            }
        }
        ActionButton {
            id: tomorrow
            name: "Amanhã"
            onTriggered: {
                due.text = "amanhã 9h";
                list.submit();
            }
        }
    }
    Label {
        id: issue
        anchors.top: dueRow.bottom
        width: parent.width
        height: visible ? 4 * Theme.grid : 0
        visible: list.page.dueIssue.length > 0 && list.asksDue
        text: list.page.dueIssue
        color: Theme.error
        font.pixelSize: Theme.captionSize
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    ListView {
        id: tasks
        anchors.top: issue.bottom
        anchors.topMargin: Theme.grid
        anchors.bottom: foot.top
        width: parent.width
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: count > 0
        model: list.page.tasks
        Accessible.role: Accessible.List
        Accessible.name: "Tarefas"

        delegate: TaskLine {
            width: tasks.width
            page: list.page
            onReminded: list.askDue(id)
            onMenuRequested: at => list.menuRequested(this, id, at)
        }
    }
    Label {
        anchors.fill: tasks
        visible: tasks.count === 0 && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: list.page.hasTasks ? "Todas as tarefas estão concluídas." : "Sem tarefas. Adicione uma acima; com 🔔 você recebe um lembrete na hora marcada."
        color: Theme.tertiaryText
        font.pixelSize: Theme.smallSize
    }

    Row {
        id: foot
        x: Theme.grid - Theme.cardPadding // its text stands under the ticks
        anchors.bottom: parent.bottom
        height: list.page.doneText.length > 0 ? Theme.controlHeight : 0
        visible: height > 0

        ActionButton {
            name: list.page.doneText
            idleColor: "transparent"
            textColor: list.page.showsDone ? Theme.text : Theme.secondaryText
            Accessible.checkable: true
            Accessible.checked: list.page.showsDone
            onTriggered: list.page.showsDone = !list.page.showsDone
        }
        ActionButton {
            name: "Limpar concluídas"
            idleColor: "transparent"
            textColor: Theme.secondaryText
            onTriggered: list.page.clearCompleted()
        }
    }
}
