import QtQuick
import Velmo.Design
import Velmo.Modules.Calendar

/// The days of a month; a press on one shows the agenda from it on.
FocusScope {
    id: glance

    required property CalendarPageModel page
    readonly property int weeks: Math.max(1, days.count / 7)

    Label {
        x: Theme.grid
        height: Theme.controlHeight
        verticalAlignment: Text.AlignVCenter
        text: glance.page.monthTitle
        font.weight: Font.DemiBold
        font.pixelSize: Theme.smallSize
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        anchors.right: parent.right

        IconButton {
            name: "Mês anterior"
            symbol: "chevron.left"
            onTriggered: glance.page.turnMonth(-1)
        }
        IconButton {
            name: "Próximo mês"
            symbol: "chevron.right"
            onTriggered: glance.page.turnMonth(1)
        }
    }

    Row {
        id: names
        y: Theme.controlHeight

        Repeater {
            model: glance.page.weekdays

            delegate: Label {
                required property string modelData

                width: Theme.controlHeight
                horizontalAlignment: Text.AlignHCenter
                text: modelData
                color: Theme.tertiaryText
                font.pixelSize: Theme.captionSize
                Accessible.ignored: true
            }
        }
    }

    GridView {
        id: days
        y: names.y + names.height
        width: parent.width
        height: parent.height - y
        cellWidth: Theme.controlHeight
        cellHeight: height / glance.weeks
        interactive: false
        focus: true
        activeFocusOnTab: true
        model: glance.page.month
        Accessible.role: Accessible.Table
        Accessible.name: glance.page.monthTitle

        delegate: MonthDay {
            required property int index

            width: days.cellWidth
            height: days.cellHeight
            isHovered: index === pointer.hovered
            onChosen: glance.page.showDay(id)
        }

        MouseArea {
            id: pointer

            readonly property int hovered: containsMouse ? days.indexAt(mouseX, mouseY) : -1

            anchors.fill: parent
            hoverEnabled: true
            onClicked: {
                days.currentIndex = hovered;
                (days.currentItem as MonthDay)?.chosen();
            }
        }
    }
}
