import QtQuick
import Velmo.Design
import Velmo.Modules.Calendar

/// The days to come, each at the top of a column; the wheel goes on to later ones.
FocusScope {
    id: agenda

    required property CalendarPageModel page
    readonly property int leastRow: Theme.controlHeight + 2 * Theme.grid

    Label {
        anchors.fill: parent
        visible: !agenda.page.hasEvents
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: "Nenhum compromisso nestes dias."
        color: Theme.tertiaryText
    }

    GridView {
        id: grid

        readonly property int perColumn: Math.max(1, Math.floor(height / agenda.leastRow))

        anchors.fill: parent
        visible: agenda.page.hasEvents
        flow: GridView.FlowTopToBottom
        cellHeight: Math.floor(height / perColumn)
        cellWidth: Math.min(width, 200)
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        activeFocusOnTab: count > 0
        model: agenda.page.agenda
        Accessible.role: Accessible.List
        Accessible.name: "Agenda"
        onPerColumnChanged: agenda.page.setRowsPerColumn(perColumn)
        Component.onCompleted: agenda.page.setRowsPerColumn(perColumn)

        SidewaysWheel {
            flickable: grid
        }
        EdgeFades {
            parent: grid
            flickable: grid
        }

        delegate: FocusScope {
            id: cell

            required property int index
            required property string event
            required property string title
            required property string time
            required property string place
            required property color color
            required property bool isHeading
            required property bool isSpace
            required property bool isNow
            required property bool isOver
            required property bool isSelected
            required property string spoken

            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight - Theme.grid
            Accessible.ignored: isSpace
            Accessible.role: isHeading ? Accessible.Heading : Accessible.NoRole
            Accessible.name: isHeading ? spoken : ""

            Label {
                anchors.bottom: parent.bottom
                width: parent.width
                height: Theme.controlHeight
                visible: cell.isHeading
                leftPadding: Theme.grid
                text: cell.title
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            ControlSurface {
                anchors.fill: parent
                visible: !cell.isHeading && !cell.isSpace
                focus: true
                name: cell.spoken
                radius: Theme.controlRadius
                idleColor: cell.isSelected ? Theme.surfaceSelected : Theme.surface
                activeFocusOnTab: false
                opacity: cell.isOver ? 0.6 : 1
                onActiveFocusChanged: if (activeFocus)
                    grid.currentIndex = cell.index
                onTriggered: cell.isSelected ? agenda.page.unchoose() : agenda.page.choose(cell.event)

                Rectangle {
                    id: mark
                    x: Theme.grid
                    y: Theme.grid
                    width: 3
                    height: parent.height - 2 * y
                    radius: 1.5
                    color: cell.color
                }
                Column {
                    x: mark.x + mark.width + 2 * Theme.grid
                    width: parent.width - x - Theme.grid
                    anchors.verticalCenter: parent.verticalCenter

                    Label {
                        width: parent.width
                        text: cell.title
                        font.pixelSize: Theme.smallSize
                        font.weight: Font.Medium
                        Accessible.ignored: true
                    }
                    Label {
                        width: parent.width
                        text: cell.place.length > 0 ? cell.time + " · " + cell.place : cell.time
                        color: cell.isNow ? Theme.accent : Theme.secondaryText
                        font.pixelSize: Theme.captionSize
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
