import QtQuick
import Velmo.Design
import Velmo.Settings

/// Shows a key combination and, once pressed, takes the next one.
ControlSurface {
    id: recorder

    required property string keys
    required property bool isRecording

    signal started
    signal stopped

    implicitWidth: Math.max(Theme.fieldWidth / 2, label.implicitWidth + 2 * Theme.cardPadding)
    implicitHeight: Theme.controlHeight
    idleColor: isRecording ? Theme.surfaceSelected : Theme.field
    onTriggered: isRecording ? stopped() : started()
    onActiveFocusChanged: if (!activeFocus && isRecording)
        stopped()

    Label {
        id: label
        anchors.centerIn: parent
        text: recorder.keys
        color: recorder.isRecording ? Theme.secondaryText : Theme.text
        font.weight: Font.Medium
        Accessible.ignored: true
    }
}
