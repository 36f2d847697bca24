import QtQuick
import Velmo.Design

/// Where the keyboard is, for who goes by key.
Rectangle {
    required property bool shown
    /// Also for who goes by pointer.
    property bool always: false

    anchors.fill: parent
    visible: shown && (always || FocusCue.byKeys)
    color: "transparent"
    border.width: Theme.ringWidth
    border.color: Theme.accent
}
