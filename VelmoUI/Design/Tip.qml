import QtQuick
import Velmo

/// Names a control that the pointer rests on, below it.
Rectangle {
    id: tip

    required property bool shown
    required property string text
    property string shortcut: ""

    width: row.width + 2 * Theme.gap
    height: Theme.controlHeight
    radius: Theme.controlRadius
    color: Theme.raised
    border.width: 1
    border.color: Theme.hairline
    opacity: 0
    visible: opacity > 0
    z: 1

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

    states: State {
        name: "shown"
        when: tip.shown
        PropertyChanges {
            tip.opacity: 1
        }
    }

    transitions: [
        Transition {
            to: "shown"
            SequentialAnimation {
                PauseAnimation {
                    duration: Theme.tipDelay
                }
                NumberAnimation {
                    property: "opacity"
                    duration: Theme.fadeOut
                }
            }
        },
        Transition {
            from: "shown"
            NumberAnimation {
                property: "opacity"
                duration: Theme.fadeOut
            }
        }
    ]
}
