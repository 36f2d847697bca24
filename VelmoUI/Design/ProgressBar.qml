import QtQuick
import Velmo.Design

/// How far something is, as a bar.
Rectangle {
    id: bar

    required property real progress ///< 0 to 1
    property color filling: Theme.accent

    implicitHeight: Theme.barHeight
    radius: height / 2
    color: Theme.surfaceSelected

    Rectangle {
        width: Math.max(height, parent.width * Math.min(1, bar.progress))
        height: parent.height
        radius: parent.radius
        visible: bar.progress > 0
        color: bar.filling

        Behavior on width {
            NumberAnimation {
                duration: Theme.glide
            }
        }
    }
}
