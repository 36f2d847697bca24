import QtQuick
import Velmo.Design

/// What every control has: a surface for hover and press, keyboard, focus ring and a name.
Item {
    id: control

    /// What a screen reader says.
    required property string name
    property color idleColor: "transparent"
    property color hoverColor: isBare ? Theme.surfaceHover : Theme.raise(idleColor, Theme.hoverShare)
    property color pressedColor: isBare ? Theme.surfacePressed : Theme.raise(idleColor, Theme.pressedShare)
    property color edgeColor: "transparent"
    property int radius: Theme.controlRadius
    /// The surface may be lower than what takes the pointer.
    property real surfaceHeight: height
    /// How far around the surface the focus ring stands.
    property real ringMargin: 0
    readonly property bool isBare: idleColor.a === 0
    readonly property bool hovered: hover.hovered
    readonly property bool pressed: area.pressed

    signal triggered

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: control.triggered()
    Keys.onReturnPressed: control.triggered()
    Keys.onEnterPressed: control.triggered()
    Keys.onSpacePressed: control.triggered()

    Rectangle {
        id: surface
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: control.surfaceHeight
        radius: control.radius
        color: control.pressed ? control.pressedColor
             : control.hovered ? control.hoverColor : control.idleColor
        border.width: 1
        border.color: control.edgeColor

        Behavior on color {
            ColorAnimation {
                duration: Theme.hover
            }
        }

        FocusRing {
            anchors.margins: -control.ringMargin
            radius: surface.radius + control.ringMargin
            shown: control.activeFocus
        }
    }

    HoverHandler {
        id: hover
    }

    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: control.triggered()
    }
}
