import QtQuick
import Velmo

/// The message of the moment, in the row below the notch.
Item {
    id: feedback

    required property NotchContent content
    readonly property real room: width - 8 * Theme.grid - symbol.width - row.spacing

    Accessible.role: Accessible.AlertMessage
    Accessible.name: content.feedbackSpoken

    Row {
        id: row
        y: feedback.content.notchHeight
        height: parent.height - y
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 2 * Theme.grid

        Symbol {
            id: symbol
            height: parent.height
            name: feedback.content.feedbackSymbol
            size: Theme.smallSymbolSize
            color: Theme.styles[feedback.content.feedbackStyle]
        }

        Label {
            id: title
            height: parent.height
            width: Math.min(implicitWidth, feedback.room)
            text: feedback.content.feedbackTitle
            font.weight: Font.Medium
            Accessible.ignored: true
        }

        Label {
            readonly property real rest: feedback.room - title.width - row.spacing

            height: parent.height
            width: Math.min(implicitWidth, rest)
            visible: text.length > 0 && rest >= Math.min(implicitWidth, 8 * Theme.gap)
            text: feedback.content.feedbackDetail
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
    }
}
