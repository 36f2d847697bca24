import QtQuick
import Velmo.Design

/// A button with a text.
ControlSurface {
    id: button

    property string label: name
    property color textColor: Theme.text

    idleColor: Theme.field
    implicitWidth: text.implicitWidth + 2 * Theme.cardPadding
    implicitHeight: Theme.controlHeight

    Label {
        id: text
        anchors.centerIn: parent
        text: button.label
        color: button.textColor
        font.pixelSize: Theme.smallSize
        font.weight: Font.Medium
        Accessible.ignored: true
    }
}
