import QtQuick
import Velmo.Design
import Velmo.Modules.Notes

/// One task: Space ticks it off, Delete removes it.
ControlSurface {
    id: line

    required property int index
    required property string id
    required property string title
    required property string due
    required property bool isDone
    required property bool isOverdue
    required property string removal
    required property string spoken
    required property NotesPageModel page

    signal reminded
    signal menuRequested(point at)

    implicitHeight: Theme.controlHeight
    activeFocusOnTab: false
    name: spoken
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: isDone
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index
    onTriggered: page.toggleTask(id)
    Keys.onDeletePressed: page.removeTask(id)
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
        if (event.accepted)
            menuRequested(Qt.point(width / 2, height / 2));
    }

    Symbol {
        id: tick
        x: Theme.grid
        height: parent.height
        name: line.isDone ? "checkmark.circle.fill" : "circle"
        size: Theme.smallSymbolSize
        color: line.isDone ? Theme.accent : Theme.secondaryText
    }
    Label {
        anchors.left: tick.right
        anchors.leftMargin: 2 * Theme.grid
        anchors.right: due.left
        anchors.rightMargin: Theme.grid
        height: parent.height
        text: line.title
        color: line.isDone ? Theme.tertiaryText : Theme.text
        font.strikeout: line.isDone
        Accessible.ignored: true
    }
    Label {
        id: due
        anchors.right: buttons.left
        width: Math.min(implicitWidth, line.width / 2)
        height: parent.height
        text: line.due
        color: line.isOverdue ? Theme.warning : Theme.secondaryText
        font.pixelSize: Theme.captionSize
        font.weight: line.isOverdue ? Font.DemiBold : Font.Normal
        Accessible.ignored: true
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton
        onPressed: mouse => line.menuRequested(Qt.point(mouse.x, mouse.y))
    }
    Row {
        id: buttons
        anchors.right: parent.right
        width: visible ? implicitWidth : Theme.grid
        visible: line.hovered || line.activeFocus || bell.activeFocus || remove.activeFocus

        IconButton {
            id: bell
            name: "Adicionar lembrete"
            symbol: "bell.badge"
            onTriggered: line.reminded()
        }
        IconButton {
            id: remove
            name: line.removal
            symbol: "xmark"
            onTriggered: line.page.removeTask(line.id)
        }
    }
}
