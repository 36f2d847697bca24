import QtQuick
import Velmo

/// What every control has: a surface for hover and press, keyboard, focus ring and a name.
Item {
    id: control

    /// What a screen reader says.
    required property string name
    property color idleColor: "transparent"
    property int radius: Theme.controlRadius
    readonly property bool hovered: hover.hovered
    readonly property bool pressed: area.pressed

    signal triggered

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onPressAction: control.triggered()
    Keys.onReturnPressed: control.triggered()
    Keys.onEnterPressed: control.triggered()
    Keys.onSpacePressed: control.triggered()

    Rectangle {
        anchors.fill: parent
        radius: control.radius
        color: control.pressed ? Theme.surfacePressed
             : control.hovered ? Theme.surfaceHover : control.idleColor
        border.width: control.activeFocus ? 1.5 : 0
        border.color: Theme.secondaryText

        Behavior on color {
            ColorAnimation {
                duration: Theme.hover
            }
        }
    }

    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }

    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: control.triggered()
    }
}
