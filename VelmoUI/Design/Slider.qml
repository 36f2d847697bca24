import QtQuick
import QtQuick.Templates as T
import Velmo

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
        width: Theme.sliderWidth
        height: Theme.controlHeight
        layer.enabled: !enabled // fades as one, or the track shows through the knob
        snapMode: T.Slider.SnapAlways
        focusPolicy: Qt.StrongFocus
        Accessible.name: slider.name
        onMoved: slider.moved(value)

        background: Rectangle {
            y: (control.height - height) / 2
            width: control.width
            height: Theme.barHeight
            radius: height / 2
            color: Theme.off

            Rectangle {
                width: control.visualPosition * parent.width
                height: parent.height
                radius: parent.radius
                color: Theme.accent
            }
        }
        handle: Rectangle {
            x: control.visualPosition * (control.width - width)
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
