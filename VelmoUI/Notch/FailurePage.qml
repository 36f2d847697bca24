import QtQuick
import Velmo.Design
import Velmo.Notch

/// In place of a page that could not be loaded. The keyboard starts on its button.
FocusScope {
    id: failure

    required property string title
    required property string message

    signal retried

    Accessible.role: Accessible.AlertMessage
    Accessible.name: title

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width, Theme.paneWidth)
        spacing: 2 * Theme.grid

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "exclamationmark.triangle.fill"
            color: Theme.warning
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: failure.title
            font.pixelSize: Theme.titleSize
            font.weight: Font.Medium
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            maximumLineCount: 3
            text: failure.message
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
        ActionButton {
            anchors.horizontalCenter: parent.horizontalCenter
            focus: true
            name: "Tentar novamente"
            onTriggered: failure.retried()
        }
    }
}
