import QtQuick
import Velmo.Design

/// A line of text in the interface's face.
Text {
    color: Theme.text
    font.family: Theme.face
    font.pixelSize: Theme.bodySize
    elide: Text.ElideRight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
