import QtQuick
import Velmo.Design
import Velmo.Notch

/// The message of the moment: in the row below a cut-out, else in two lines in the middle.
Item {
    id: feedback

    required property NotchContent content
    readonly property real room: width - 2 * Theme.cardPadding - symbol.width - row.spacing

    Accessible.role: Accessible.AlertMessage
    Accessible.name: content.feedbackSpoken

    Row {
        id: row
        y: feedback.content.hasCutout ? feedback.content.notchHeight : 0
        height: parent.height - y
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 2 * Theme.grid

        Symbol {
            id: symbol
            height: parent.height
            name: feedback.content.feedbackSymbol
            size: feedback.content.hasCutout ? Theme.smallSymbolSize : Theme.symbolSize
            color: Theme.feedbackColor(feedback.content.feedbackStyle)
        }

        Grid {
            id: lines

            readonly property real rest: columns === 1 ? feedback.room : feedback.room - title.width - columnSpacing

            anchors.verticalCenter: parent.verticalCenter
            columns: feedback.content.hasCutout ? 2 : 1
            columnSpacing: row.spacing
            verticalItemAlignment: Grid.AlignVCenter

            Label {
                id: title
                width: Math.min(implicitWidth, feedback.room)
                text: feedback.content.feedbackTitle
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            Label {
                width: Math.min(implicitWidth, lines.rest)
                visible: text.length > 0 && lines.rest >= Math.min(implicitWidth, 10 * Theme.gap)
                text: feedback.content.feedbackDetail
                color: Theme.secondaryText
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }
    }
}
