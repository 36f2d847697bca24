import QtQuick
import Velmo.Design

/// Names a control that the pointer rests on, below it. Made when it is first wanted.
Loader {
    id: tip

    required property bool shown
    required property string text
    property string shortcut: ""

    active: shown || opacity > 0
    opacity: 0
    visible: opacity > 0
    z: 1

    sourceComponent: Rectangle {
        width: row.width + 2 * Theme.gap
        height: Theme.controlHeight
        radius: Theme.controlRadius
        color: Theme.raised
        border.width: 1
        border.color: Theme.raisedEdge

        Row {
            id: row
            anchors.centerIn: parent
            spacing: 2 * Theme.grid

            Label {
                text: tip.text
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
            Label {
                visible: text.length > 0
                text: tip.shortcut
                color: Theme.secondaryText
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }

        SequentialAnimation {
            running: tip.shown

            PauseAnimation {
                duration: Theme.tipDelay
            }
            NumberAnimation {
                target: tip
                property: "opacity"
                to: 1
                duration: Theme.fadeOut
            }
        }
        NumberAnimation {
            running: !tip.shown
            target: tip
            property: "opacity"
            to: 0
            duration: Theme.fadeOut
        }
    }
}
