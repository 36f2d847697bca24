import QtQuick
import Velmo.Design

/// A switch.
ControlSurface {
    id: toggle

    property bool checked: false

    signal toggled(bool checked)

    implicitWidth: Theme.switchWidth
    implicitHeight: Theme.controlHeight
    surfaceHeight: Theme.switchHeight
    radius: Theme.switchHeight / 2
    ringMargin: 2 * Theme.ringWidth
    idleColor: checked ? Theme.accent : Theme.off
    pressedColor: idleColor
    hoverColor: idleColor
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onToggleAction: toggle.toggled(!toggle.checked)
    onTriggered: toggle.toggled(!toggle.checked)

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: toggle.checked ? parent.width - width - Theme.ringWidth : Theme.ringWidth
        width: Theme.switchHeight - 2 * Theme.ringWidth
        height: width
        radius: width / 2
        color: toggle.checked ? Theme.window : Theme.knob

        Behavior on x {
            NumberAnimation {
                duration: Theme.glide
                easing.type: Easing.OutCubic
            }
        }
    }
}
