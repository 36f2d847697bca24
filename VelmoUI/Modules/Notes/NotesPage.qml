import QtQuick
import Velmo.Design
import Velmo.Modules.Notes

/// The notes, the one that is written in, and the tasks.
FocusScope {
    id: view

    required property NotesPageModel page

    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Undo) && view.page.undoTitle.length > 0;
        if (event.accepted)
            view.page.undo();
    }

    function openMenu(item, row: string, at: point) {
        item.forceActiveFocus();
        page.offerCommands(row);
        menu.opener = item;
        menu.open(item.mapToItem(view, at));
    }

    Connections {
        target: view.page
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
        undoKeys: view
    }
    TaskList {
        id: tasks
        anchors.right: parent.right
        width: Math.round((parent.width - 2 * Theme.gap) * 0.28)
        height: parent.height
        page: view.page
        undoKeys: view
        onMenuRequested: (item, row, at) => view.openMenu(item, row, at)
    }

    ContextMenu {
        id: menu

        property Item opener: null

        model: view.page.commands
        onChosen: id => view.page.run(id)
        onVisibleChanged: if (!visible)
            opener?.forceActiveFocus()
    }
}
