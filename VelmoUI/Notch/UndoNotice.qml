import QtQuick
import Velmo.Design
import Velmo.Notch

/// What has just happened, above the page for a moment, and a button that takes it back.
Rectangle {
    id: notice

    required property string title

    signal undone

    width: row.width + 2 * Theme.gap
    height: Theme.controlHeight + 2 * Theme.grid
    radius: Theme.controlRadius
    color: Theme.raised
    border.width: 1
    border.color: Theme.hairline
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 2 * Theme.grid

        Label {
            height: Theme.controlHeight
            text: notice.title
            font.pixelSize: Theme.smallSize
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        ActionButton {
            name: "Desfazer"
            textColor: Theme.accent
            onTriggered: notice.undone()
        }
    }
}
