import QtQuick
import Velmo

/// The notes, the one that is written in, and the tasks.
FocusScope {
    id: view

    property NotesPageModel page: null
    property bool watched: false

    onWatchedChanged: tell()
    onPageChanged: tell()
    Component.onDestruction: if (page !== null)
        page.setWatched(false)

    function tell() {
        if (page !== null)
            page.setWatched(watched);
    }

    function openMenu(item, row: string, at: point) {
        item.forceActiveFocus();
        page.offerCommands(row);
        menu.opener = item;
        menu.open(item.mapToItem(view, at));
    }

    Loader {
        id: content
        anchors.fill: parent
        active: view.page !== null
        focus: true

        sourceComponent: FocusScope {
            id: sheet

            focus: true
            Keys.onPressed: event => {
                event.accepted = event.matches(StandardKey.Undo) && view.page.undoTitle.length > 0;
                if (event.accepted)
                    view.page.undo();
            }

            function answerRequest() {
                if (view.page.takeRequest())
                    note.write();
            }

            Component.onCompleted: answerRequest()

            Connections {
                target: view.page
                function onRequested() {
                    sheet.answerRequest();
                }
                function onOpened() {
                    note.write();
                }
            }

            NoteList {
                id: notes
                width: Math.round((parent.width - 2 * Theme.gap) * 0.36)
                height: parent.height
                page: view.page
                onWritten: note.write()
                onMenuRequested: (item, row, at) => view.openMenu(item, row, at)
            }
            NoteSheet {
                id: note
                x: notes.width + Theme.gap
                width: tasks.x - x - Theme.gap
                height: parent.height
                focus: true
                page: view.page
                undoKeys: sheet
            }
            TaskList {
                id: tasks
                anchors.right: parent.right
                width: Math.round((parent.width - 2 * Theme.gap) * 0.28)
                height: parent.height
                page: view.page
                undoKeys: sheet
                onMenuRequested: (item, row, at) => view.openMenu(item, row, at)
            }
        }
    }

    ContextMenu {
        id: menu

        property Item opener: null

        model: view.page ? view.page.commands : null
        onChosen: id => view.page.run(id)
        onVisibleChanged: if (!visible)
            opener?.forceActiveFocus()
    }
}
