import QtQuick
import Velmo

/// A button with a text.
ControlSurface {
    id: button

    property color textColor: Theme.text

    idleColor: Theme.surface
    implicitWidth: label.implicitWidth + 2 * Theme.cardPadding
    implicitHeight: Theme.controlHeight

    Label {
        id: label
        anchors.centerIn: parent
        text: button.name
        color: button.textColor
        font.pixelSize: Theme.smallSize
        font.weight: Font.Medium
        Accessible.ignored: true
    }
}
