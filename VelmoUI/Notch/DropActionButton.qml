import QtQuick
import Velmo.Design
import Velmo.Notch

/// Something to do with what was dropped: symbol and text, read from the left.
ControlSurface {
    id: button

    required property string symbol

    idleColor: Theme.field

    Symbol {
        id: symbol
        x: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        name: button.symbol
        size: Theme.smallSymbolSize
        color: button.hovered || button.activeFocus ? Theme.accent : Theme.secondaryText
    }
    Label {
        anchors.verticalCenter: parent.verticalCenter
        x: symbol.x + symbol.width + 2 * Theme.grid
        width: parent.width - x - Theme.gap
        text: button.name
        font.pixelSize: Theme.smallSize
        font.weight: Font.Medium
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
