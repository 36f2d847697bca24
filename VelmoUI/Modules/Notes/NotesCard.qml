import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Notes

/// The next tasks, or the latest notes where there are none; a click shows them all.
ModuleCard {
    id: notes

    required property NotesPageModel card


    SectionTitle {
        id: heading
        y: Theme.grid
        text: notes.title
    }
    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.grid
        name: "Nova nota"
        symbol: "plus"
        onTriggered: notes.card.compose()
    }

    Column {
        id: rows
        readonly property int fitting: Math.floor(height / Theme.controlHeight)

        x: Theme.cardPadding
        y: heading.y + heading.height
        width: parent.width - 2 * x
        // No row is cut.
        height: Math.floor((parent.height - y - Theme.grid) / Theme.controlHeight) * Theme.controlHeight
        clip: true

        Repeater {
            model: notes.card.tasks

            delegate: ControlSurface {
                id: task

                required property int index
                required property string id
                required property string title
                required property string due
                required property bool isOverdue
                required property string spoken

                visible: index < rows.fitting
                width: parent.width
                height: Theme.controlHeight
                name: spoken
                Accessible.role: Accessible.CheckBox
                Accessible.checkable: true
                onTriggered: notes.card.toggleTask(id)

                Symbol {
                    height: parent.height
                    name: "circle"
                    size: Theme.smallSymbolSize
                    color: Theme.secondaryText
                }
                Label {
                    x: Theme.smallSymbolSize + 2 * Theme.grid
                    width: parent.width - x - due.width - Theme.grid
                    height: parent.height
                    text: task.title
                    Accessible.ignored: true
                }
                Label {
                    id: due
                    anchors.right: parent.right
                    height: parent.height
                    text: task.due
                    color: task.isOverdue ? Theme.warning : Theme.secondaryText
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
        }
        Repeater {
            model: notes.card.hasOpenTasks ? null : notes.card.notes

            delegate: Label {
                required property int index
                required property string title

                visible: index < rows.fitting
                width: parent.width
                height: Theme.controlHeight
                text: title
                color: Theme.secondaryText
            }
        }
    }
    Label {
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 2 * x
        visible: !notes.card.hasNotes && !notes.card.hasOpenTasks && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: "Suas notas e tarefas aparecem aqui."
        color: Theme.tertiaryText
    }
}
