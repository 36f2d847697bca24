import QtQuick
import Velmo.Design

/// A symbol by its name.
Text {
    required property string name
    property int size: Theme.symbolSize

    text: Symbols.glyph(name)
    color: Theme.text
    font.family: Theme.symbolFace
    font.pixelSize: size
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
