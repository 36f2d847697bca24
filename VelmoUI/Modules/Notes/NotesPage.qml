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

    Loader {
        id: content
        anchors.fill: parent
        active: view.page !== null
        focus: true

        sourceComponent: FocusScope {
            id: sheet

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
            }

            NoteList {
                id: notes
                width: Math.round((parent.width - 2 * Theme.gap) * 0.36)
                height: parent.height
                page: view.page
                onWritten: note.write()
            }
            NoteSheet {
                id: note
                x: notes.width + Theme.gap
                width: tasks.x - x - Theme.gap
                height: parent.height
                focus: true
                page: view.page
            }
            TaskList {
                id: tasks
                anchors.right: parent.right
                width: Math.round((parent.width - 2 * Theme.gap) * 0.28)
                height: parent.height
                page: view.page
            }
        }
    }
}
                undoKeys: sheet
                undoKeys: sheet
