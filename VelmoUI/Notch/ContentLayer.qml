import QtQuick
import Velmo

/// Content that belongs to one presentation: fades in and rises once the shape is under way, fades
/// out at once, and exists only while it can be seen.
Item {
    id: layer

    required property bool shown
    required property NotchContent content
    property alias sourceComponent: loader.sourceComponent
    property alias item: loader.item
    readonly property real pace: content.animated ? content.pace : 0

    opacity: 0
    visible: opacity > 0

    Loader {
        id: loader
        width: layer.width
        height: layer.height
        active: layer.shown || layer.opacity > 0
    }

    states: State {
        name: "shown"
        when: layer.shown
        PropertyChanges {
            layer.opacity: 1
        }
    }

    transitions: [
        Transition {
            to: "shown"
            enabled: layer.content.animated
            SequentialAnimation {
                PauseAnimation {
                    duration: Theme.contentDelay * layer.pace
                }
                ParallelAnimation {
                    NumberAnimation {
                        property: "opacity"
                        duration: Theme.fadeIn * layer.pace
                        easing.type: Easing.OutCubic
                    }
                    NumberAnimation {
                        target: loader
                        property: "y"
                        from: layer.content.reducedMotion ? 0 : Theme.contentRise
                        to: 0
                        duration: Theme.fadeIn * layer.pace
                        easing.type: Easing.OutCubic
                    }
                }
            }
        },
        Transition {
            from: "shown"
            enabled: layer.content.animated
            NumberAnimation {
                property: "opacity"
                duration: Theme.fadeOut * layer.pace
            }
        }
    ]
}
