import QtQuick
import Velmo.Design
import Velmo.Notch

/// Content that belongs to one presentation, from a file that is loaded when it is first wanted. It
/// fades in and rises once the shape is under way, fades out at once, and exists only while it can be
/// seen. It keeps its own size and lies still while the shape moves over it.
FocusScope {
    id: layer

    required property NotchContent content
    required property string file
    required property bool shown
    required property size extent
    /// The middle of the notch in the parent.
    required property real middle

    x: Math.round(middle - width / 2)
    width: extent.width
    height: extent.height
    focus: shown
    opacity: 0
    visible: opacity > 0

    Loader {
        id: loader
        width: layer.width
        height: layer.height
        active: layer.shown || layer.opacity > 0
        focus: true
        Component.onCompleted: setSource(layer.file, {
            "content": layer.content
        })
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
            enabled: Theme.animated
            SequentialAnimation {
                PauseAnimation {
                    duration: Theme.contentDelay
                }
                ParallelAnimation {
                    NumberAnimation {
                        property: "opacity"
                        duration: Theme.fadeIn
                        easing.type: Easing.OutCubic
                    }
                    NumberAnimation {
                        target: loader
                        property: "y"
                        from: Theme.contentRise
                        to: 0
                        duration: Theme.fadeIn
                        easing.type: Easing.OutCubic
                    }
                }
            }
        },
        Transition {
            from: "shown"
            enabled: Theme.animated
            NumberAnimation {
                property: "opacity"
                duration: Theme.fadeOut
            }
        }
    ]
}
