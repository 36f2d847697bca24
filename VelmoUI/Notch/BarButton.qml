import QtQuick
import Velmo.Design
import Velmo.Notch

/// A button at an end of the module bar.
IconButton {
    id: button

    height: parent.height
    surfaceHeight: Math.min(Theme.controlHeight, height - Theme.ringWidth)
    radius: surfaceHeight / 2
    z: tip.visible ? 1 : 0

    Tip {
        id: tip
        anchors.right: parent.right
        y: parent.height + Theme.grid
        shown: button.hovered
        text: button.name
    }
}
