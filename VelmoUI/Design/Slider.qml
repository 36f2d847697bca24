import QtQuick
import QtQuick.Templates as T
import Velmo.Design

/// A number in a range, with its value beside it.
Row {
    id: slider

    /// What a screen reader says.
    required property string name
    property alias from: control.from
    property alias to: control.to
    property alias stepSize: control.stepSize
    property alias value: control.value
    /// The value as the user reads it.
    property string valueText: ""

    /// Also while it is dragged.
    signal moved(real value)

    spacing: Theme.gap
    opacity: enabled ? 1 : 0.4

    T.Slider {
        id: control

        readonly property real knobX: visualPosition * (width - Theme.smallSymbolSize)

        width: Theme.sliderWidth
        height: Theme.controlHeight
        snapMode: T.Slider.SnapAlways
        focusPolicy: Qt.StrongFocus
        Accessible.name: slider.name
        onMoved: slider.moved(value)

        // Left and right of the knob: what is disabled is seen through, and nothing lies under it.
        background: Item {
            y: (control.height - height) / 2
            width: control.width
            height: Theme.barHeight

            Rectangle {
                width: control.knobX + 1
                height: parent.height
                radius: height / 2
                color: Theme.accent
            }
            Rectangle {
                x: control.knobX + Theme.smallSymbolSize - 1
                width: parent.width - x
                height: parent.height
                radius: height / 2
                color: Theme.off
            }
        }
        handle: Rectangle {
            x: control.knobX
            y: (control.height - height) / 2
            width: Theme.smallSymbolSize
            height: width
            radius: width / 2
            color: Theme.knob
            border.width: 1
            border.color: Theme.knobEdge

            FocusRing {
                anchors.margins: -2 * Theme.ringWidth
                radius: width / 2
                shown: control.activeFocus
            }
        }
    }

    Label {
        width: 5 * Theme.gap
        height: Theme.controlHeight
        text: slider.valueText
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }
}
