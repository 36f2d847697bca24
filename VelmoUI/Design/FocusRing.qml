import QtQuick
import Velmo

/// Where the keyboard is.
Rectangle {
    required property bool shown

    anchors.fill: parent
    visible: shown
    color: "transparent"
    border.width: Theme.ringWidth
    border.color: Theme.accent
}
